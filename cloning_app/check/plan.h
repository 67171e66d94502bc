#pragma once

#include <string>
#include <vector>

#include "cloning_app/check/completeness.h"
#include "cloning_app/report/result_table.h"

namespace vxclone {

/// The categories that the library is told to load, and those that are left out, with the reason.
struct Plan {
    std::vector<VXClone> list;
    std::vector<Row> leftOut = {};
    bool everything = false;  ///< the user did not choose categories
    std::vector<std::string> untouched =
        {};  ///< keys that the package lacks, although their category is loaded

    bool holds(VXClone category) const;
};

/// Removes categories from the plan that the package does not hold completely, so that this television keeps
/// its own data. Otherwise the library would overwrite it with nothing, or partly. Lacking keys of settings
/// are added to `untouched`. `lacks` is what the package lacks.
void leaveOutLacking(Plan& plan, const std::vector<Lack>& lacks, const Holdings& holdings);

/// Adds to the rows of loaded categories what the package lacks of them.
void sayLacking(std::vector<Row>& rows, const std::vector<Lack>& lacks, const Holdings& holdings);

}  // namespace vxclone
