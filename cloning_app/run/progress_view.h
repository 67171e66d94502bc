#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "cloning_app/run/result_table.h"

namespace vxclone {

/// What a run that reached its end has to say.
struct Report {
    Direction direction;
    std::vector<Row> rows;  ///< none where no category was cloned
    int exitStatus;
    std::vector<std::string> closing;  ///< sentences for the end, one a line
    std::vector<Check> checks = {};    ///< what was judged of the package as a whole
};

/// Shows a run while it goes on and says how it ended. One thread at a time.
class ProgressView {
 public:
    virtual ~ProgressView() = default;
    /// The percentage, which never falls.
    virtual void percent(int value) = 0;
    /// A category's outcome, as soon as it is known.
    virtual void category(const Row& row) = 0;
    /// Some time has passed: something that moves may move.
    virtual void tick() = 0;
    /// A sentence that does not end the run.
    virtual void notice(const std::string& sentence) = 0;
    /// The end: exactly one of the two is called, last.
    virtual void done(const Report& report) = 0;
    virtual void failed(const Error& error) = 0;
};

enum class ViewKind {
    Terminal,  ///< one live line, rewritten in place
    Plain,     ///< a line for each step
    Json       ///< a JSON object for each step, on `out` alone
};

/// The streams must outlive the view; sentences about failures go to `err`. `coloured` is for the table.
std::unique_ptr<ProgressView> makeProgressView(ViewKind kind, Direction direction, std::ostream& out,
                                               std::ostream& err, bool coloured);

}  // namespace vxclone
