#pragma once

#include <string>
#include <vector>

#include "cloning_app/check/completeness.h"
#include "cloning_app/report/result_table.h"

namespace vxclone {

/// What the library is told to load, and what is left out of that and why.
struct Plan {
    std::vector<VXClone> list;
    std::vector<Row> leftOut = {};
    bool everything = false;  ///< nobody chose
    std::vector<std::string> untouched =
        {};  ///< keys that the package lacks, although their category is loaded

    bool holds(VXClone category) const;
};

/// Leaves out of the plan whatever the package holds nothing or not all of, so that this television keeps its
/// own: the library would write nothing over it, or half of it. Of the settings the keys that are lacking
/// become `untouched`. `lacks` is what the package lacks.
void leaveOutLacking(Plan& plan, const std::vector<Lack>& lacks, const Holdings& holdings);

/// Says in the rows of what was loaded that the package does not hold all of it.
void sayLacking(std::vector<Row>& rows, const std::vector<Lack>& lacks, const Holdings& holdings);

}  // namespace vxclone
