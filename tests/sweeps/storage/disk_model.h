#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/support/machine/file_tree.h"

namespace vxtest {

/// The possible states of a disk after a power cut.
///
/// Data is safe after its file was flushed. An entry of a folder (created, moved, removed) is safe after that
/// folder was flushed. Every other change may be there or not, independently of earlier ones. A change of
/// several names, a move or an exchange, is there completely or not at all.
class DiskModel {
 public:
    /// A file or a folder, whatever it is called.
    using Node = std::uint64_t;

    explicit DiskModel(Node root) : root_(root) { folders_.insert(root); }
    /// A disk on which the content of the folder is safe.
    static DiskModel of(const std::filesystem::path& folder);

    void makeFile(Node folder, const std::string& name, Node file);
    void makeFolder(Node folder, const std::string& name, Node made);
    void write(Node file, std::uint64_t begin, std::string data);
    void move(Node folder, const std::string& from, const std::string& to);
    void exchange(Node folder, const std::string& one, const std::string& other);
    void remove(Node folder, const std::string& name);
    /// A file with its data, or a folder with its entries.
    void flush(Node node);
    void flushAll();

    /// A change that was not flushed.
    enum class Kind { Data, Entry };
    using Survives = std::function<bool(Kind kind)>;
    /// The disk after a power cut now. `survives` is called once for each change that was not flushed, in
    /// order.
    FileTree after(const Survives& survives) const;
    /// The number of changes that were not flushed.
    std::size_t unsure() const;

 private:
    struct Change {
        Node node = 0;  ///< the file or folder that it is a change of
        Kind kind = Kind::Data;
        std::uint64_t begin = 0;
        std::string data = {};
        std::map<std::string, std::optional<Node>> entries = {};
        bool sure = false;
    };
    using Entries = std::map<std::string, Node>;

    std::optional<Node> nodeAt(Node folder, const std::string& name) const;
    void changeEntries(Node folder, std::map<std::string, std::optional<Node>> entries);
    void add(const std::filesystem::path& folder, Node node);

    Node root_;
    std::set<Node> folders_;
    std::map<Node, Entries> now_;
    std::vector<Change> changes_;
};

}  // namespace vxtest
