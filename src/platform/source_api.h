#pragma once

// The television's input sources and their icons.

#include <map>
#include <memory>
#include <string>
#include <utility>

/// One input source. An icon type of 0 marks a source that takes custom icons.
struct CSourceItem {
    std::string name;
    int id;
    int iconType;
};

class CSourceAPI {
 public:
    /// The one object, the service's own; never null.
    static CSourceAPI* Get();

    /// Hands out the sources, keyed and ordered by an int. Result: true on success, with `*list` not null.
    bool GetSourceList(std::shared_ptr<std::multimap<int, CSourceItem>>* list);

    /// Gives a source its custom icons. Result: true on success.
    bool SetCustomIconPath(int id, const std::string& iconPath,
                           std::pair<std::string, std::string> appIconPaths, int iconType);
};
