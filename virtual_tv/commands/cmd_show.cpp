#include <fmt/chrono.h>
#include <fmt/format.h>

#include <ctime>
#include <limits>
#include <memory>
#include <system_error>

#include "common/terminal_table.h"
#include "virtual_tv/base/private_file.h"
#include "virtual_tv/commands/command.h"
#include "virtual_tv/commands/output.h"
#include "virtual_tv/show/gathering.h"
#include "virtual_tv/show/html_page.h"
#include "virtual_tv/show/terminal_page.h"

namespace vxtv {

namespace {

namespace fs = std::filesystem;

struct ShowOptions {
    std::string folder;
    std::string html;
    bool all = false;
    bool force = false;
};

/// Checks before the work whether the page may be written there. A file that is not regular, such as a
/// device, is refused.
Result<void> checkPlace(const fs::path& file, bool force) {
    std::error_code ignored;
    const fs::file_status there = fs::symlink_status(file, ignored);
    if (fs::exists(there) && !fs::is_regular_file(there)) {
        return failure(ErrorCode::AlreadyExists,
                       fmt::format("{} is no plain file; choose another name", file.string()));
    }
    if (fs::exists(there) && !force) {
        return failure(ErrorCode::AlreadyExists,
                       fmt::format("{} already exists; choose another name, or add --force", file.string()));
    }
    return {};
}

Result<void> writePage(const ShowOptions& options, const show::Page& page) {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    const std::string document = show::htmlPage(page, fmt::format("{:%Y-%m-%d %H:%M}", local));
    return writePrivateFile(options.html, document, options.force ? Existing::Replace : Existing::Refuse);
}

Result<show::Page> gather(const ShowOptions& options) {
    return Television::open(options.folder).and_then([&options](const Television& television) {
        return show::gatherPage(television,
                                options.all ? std::numeric_limits<std::size_t>::max() : show::kFirstChannels);
    });
}

int showAsFile(const ShowOptions& options) {
    const auto written =
        checkPlace(options.html, options.force)
            .and_then([&options] { return gather(options); })
            .and_then([&options](const show::Page& page) { return writePage(options, page); });
    if (!written) {
        return complain(written.error());
    }
    say(fmt::format("wrote {}; open it in a browser", options.html));
    return finishOutput();
}

int showOnTerminal(const ShowOptions& options) {
    const Result<show::Page> page = gather(options);
    if (!page) {
        return complain(page.error());
    }
    print(show::terminalPage(*page, outputScreen()));
    return finishOutput();
}

}  // namespace

void addShowCommand(CLI::App& app, Action& chosen) {
    auto* const verb = app.add_subcommand("show", "Show all of a television on one page");
    const auto options = std::make_shared<ShowOptions>();
    verb->add_option("DIR", options->folder, "The television")->required();
    verb->add_flag("--all", options->all, "Show every channel, not only the first ones");
    auto* const html = verb->add_option("--html", options->html,
                                        "Write the page for a browser into this file, pictures included")
                           ->type_name("FILE");
    verb->add_flag("--force", options->force, "Replace the file when it is there")->needs(html);
    verb->footer("The page holds all values, PINs included, and only you may read the file.");
    verb->callback([options, html, &chosen] {
        const auto show = html->count() != 0 ? showAsFile : showOnTerminal;
        chosen = [options, show] { return show(*options); };
    });
}

}  // namespace vxtv
