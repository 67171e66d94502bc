#include <fmt/format.h>
#include <unistd.h>

#include <memory>

#include "common/terminal_table.h"
#include "virtual_tv/commands/command.h"
#include "virtual_tv/commands/output.h"
#include "virtual_tv/television/television.h"

namespace vxtv {

namespace {

using Json = nlohmann::ordered_json;

struct CallsOptions {
    std::string folder;
    bool clear = false;
    bool json = false;
};

std::string compact(const Json& value) {
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

/// A text without quotation marks, if it is still distinguishable from the next word.
std::string word(const Json& value) {
    const bool isPlain = value.is_string() && !value.get_ref<const std::string&>().empty() &&
                         value.get_ref<const std::string&>().find_first_of(" \"") == std::string::npos;
    return isPlain ? value.get<std::string>() : compact(value);
}

/// "NAME=VALUE" for each member, separated by blanks.
std::string words(const Json& object) {
    std::string text;
    for (const auto& [name, value] : object.items()) {
        text += fmt::format("{}{}={}", text.empty() ? "" : " ", name, word(value));
    }
    return text;
}

std::vector<vxcommon::Cell> rowOf(const CallRecord& record) {
    constexpr std::int64_t kUsPerSecond = 1000000;
    constexpr std::int64_t kUsPerMs = 1000;
    const std::string process = std::to_string(record.process);
    return {{fmt::format("{}.{:03}", record.timeUs / kUsPerSecond, record.timeUs % kUsPerSecond / kUsPerMs)},
            {record.thread == record.process ? process : fmt::format("{}/{}", process, record.thread)},
            {record.fault ? std::to_string(*record.fault) : "", vxcommon::Colour::Bad},
            {fmt::format("{}{}{} -> {}", record.call, record.arguments.empty() ? "" : " ",
                         words(record.arguments),
                         record.result.is_object() ? words(record.result) : word(record.result))}};
}

int show(const CallLog& log, bool json) {
    vxcommon::TerminalTable table({"TIME", "PROCESS", "FAULT", "CALL -> RESULT"});
    std::size_t count = 0;
    const Result<int> unreadable = log.read([&](const CallRecord& record) {
        ++count;
        if (json) {
            vxcommon::standardOutput().line(toJsonText(record));
        } else {
            table.addRow(rowOf(record));
        }
    });
    if (!unreadable) {
        return complain(unreadable.error());
    }
    if (!json) {
        print(count != 0 ? table.render(vxcommon::screenAt(STDOUT_FILENO))
                         : vxcommon::Printable("no calls\n"));
    }
    if (*unreadable != 0) {
        const bool one = *unreadable == 1;
        vxcommon::standardError().line(vxcommon::printable(
            fmt::format("vxtv: {} line{} of the call log could not be read and {} left out", *unreadable,
                        one ? "" : "s", one ? "is" : "are")));
    }
    return finishOutput();
}

int run(const CallsOptions& options) {
    const Result<Television> television = Television::open(options.folder);
    if (!television) {
        return complain(television.error());
    }
    if (!options.clear) {
        return show(television->calls(), options.json);
    }
    const Result<void> cleared = television->calls().clear();
    return cleared ? kExitOk : complain(cleared.error());
}

}  // namespace

void addCallsCommand(CLI::App& app, Action& chosen) {
    auto* const verb = app.add_subcommand("calls", "List the platform calls that were made");
    const auto options = std::make_shared<CallsOptions>();
    verb->add_option("DIR", options->folder, "The television")->required();
    auto* const json = verb->add_flag("--json", options->json, "For programs: one object a line");
    verb->add_flag("--clear", options->clear, "Forget them instead")->excludes(json);
    verb->callback([options, &chosen] { chosen = [options] { return run(*options); }; });
}

}  // namespace vxtv
