#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "tests/documents/plan.h"

namespace vxtest {

/// The place where the commands of a document run.
struct Workplace {
    std::string folder;
    std::string searchPath;
    std::chrono::seconds timeLimit = std::chrono::minutes(4);  ///< for the whole document
};

/// Runs the steps of a document one after the other in one shell, and compares the output.
///
/// Result: the mistakes in the document, each a sentence with the place; those of the plan come first. A plan
/// with problems is not run.
std::vector<std::string> problemsOf(const Plan& plan, const Workplace& workplace);

}  // namespace vxtest
