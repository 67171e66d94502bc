#include <fmt/format.h>

#include <memory>

#include "common/terminal_table.h"
#include "virtual_tv/calls/contract_calls.h"
#include "virtual_tv/commands/command.h"
#include "virtual_tv/commands/output.h"
#include "virtual_tv/television/television.h"

namespace vxtv {

namespace {

struct FaultOptions {
    std::string folder;
    Fault fault;
    bool json = false;
};

/// A setting that the television does not have is probably mistyped, and the fault would never take effect.
Result<void> checkSetting(const Television& television, const Fault& fault) {
    if (!fault.key || fault.key->empty() || fault.call.rfind("vconf_", 0) != 0) {
        return {};
    }
    return lookUpSetting(television, *fault.key).map([](const Setting&) {});
}

Result<std::int64_t> add(const Television& television, const Fault& fault) {
    return checkSetting(television, fault).and_then([&] { return television.faults().add(fault); });
}

std::vector<std::string> namesOfCalls() {
    std::vector<std::string> names;
    for (const auto& call : detail::kContractCalls) {
        names.emplace_back(call.name);
    }
    return names;
}

int add(const FaultOptions& options) {
    const auto id = Television::open(options.folder).and_then([&options](const Television& television) {
        return add(television, options.fault);
    });
    if (!id) {
        const bool unknown = id.error().code == ErrorCode::UnknownCall;
        return complain(unknown ? asking(id.error(), options.fault.call, namesOfCalls()) : id.error());
    }
    const std::string key = options.fault.key ? " of " + *options.fault.key : "";
    say(fmt::format("added fault {} on {}{}", *id, options.fault.call, key));
    return finishOutput();
}

int clear(const FaultOptions& options) {
    const auto count = Television::open(options.folder).and_then([](const Television& television) {
        return television.faults().clear();
    });
    if (!count) {
        return complain(count.error());
    }
    say(fmt::format("removed {} fault{}", *count, *count == 1 ? "" : "s"));
    return finishOutput();
}

std::string orDash(const std::optional<int>& value) {
    return value ? std::to_string(*value) : "-";
}

void printTable(const std::vector<Fault>& faults) {
    vxcommon::TerminalTable table({"ID", "CALL", "KEY", "ACTS ON", "STATUS", "DELAY MS", "SEEN"});
    for (const Fault& fault : faults) {
        table.addRow({{std::to_string(fault.id)},
                      {fault.call},
                      {fault.key.value_or("-")},
                      {fmt::format("call {}{}", fault.nth, fault.fromThenOn ? " and later" : "")},
                      {orDash(fault.status)},
                      {orDash(fault.delayMs)},
                      {std::to_string(fault.seen)}});
    }
    print(faults.empty() ? vxcommon::Printable("no faults\n") : table.render(outputScreen()));
}

template <class Value>
nlohmann::ordered_json valueOrNull(const std::optional<Value>& value) {
    return value ? nlohmann::ordered_json(*value) : nlohmann::ordered_json(nullptr);
}

int list(const FaultOptions& options) {
    const auto faults = Television::open(options.folder).and_then([](const Television& television) {
        return television.faults().list();
    });
    if (!faults) {
        return complain(faults.error());
    }
    if (!options.json) {
        printTable(*faults);
        return finishOutput();
    }
    auto document = nlohmann::ordered_json::array();
    for (const Fault& fault : *faults) {
        document.push_back({{"id", fault.id},
                            {"call", fault.call},
                            {"key", valueOrNull(fault.key)},
                            {"nth", fault.nth},
                            {"fromThenOn", fault.fromThenOn},
                            {"status", valueOrNull(fault.status)},
                            {"delayMs", valueOrNull(fault.delayMs)},
                            {"seen", fault.seen}});
    }
    printJson(document);
    return finishOutput();
}

std::string callNames() {
    std::string text = "Calls:";
    for (const auto& call : detail::kContractCalls) {
        text += fmt::format("\n  {}{}", call.name, call.kind == CallKind::NeverFails ? "  (delay only)" : "");
    }
    return text;
}

void addAdd(CLI::App& fault, const std::shared_ptr<FaultOptions>& options, Action& chosen) {
    auto* const verb = fault.add_subcommand("add", "Make a platform call fail, or late");
    verb->add_option("CALL", options->fault.call, "The call, such as vconf_set_int")->required();
    verb->add_option("--key", options->fault.key,
                     "Only for calls with this first argument, such as a setting's key")
        ->option_text("KEY");
    verb->add_option("--nth", options->fault.nth, "Act on this call, counted from now (default 1)")
        ->option_text("N");
    verb->add_flag("--from-then-on", options->fault.fromThenOn, "Act on every later call, too");
    verb->add_option(
            "--status", options->fault.status,
            "What the call returns instead of doing its work (a bool call: whether it is not 0; a call "
            "that returns a pointer: null, whatever the status)")
        ->option_text("S");
    verb->add_option("--delay", options->fault.delayMs, "How long the call waits first")->option_text("MS");
    verb->footer(callNames());
    verb->callback([options, &chosen] { chosen = [options] { return add(*options); }; });
}

}  // namespace

void addFaultCommand(CLI::App& app, Action& chosen) {
    auto* const verb = app.add_subcommand("fault", "Plan how platform calls fail");
    const auto options = std::make_shared<FaultOptions>();
    verb->add_option("DIR", options->folder, "The television")->required();
    verb->require_subcommand(1);
    addAdd(*verb, options, chosen);
    auto* const listing = verb->add_subcommand("list", "Show the plan and how often each call was seen");
    listing->add_flag("--json", options->json, "For programs");
    listing->callback([options, &chosen] { chosen = [options] { return list(*options); }; });
    verb->add_subcommand("clear", "Remove all faults")->callback([options, &chosen] {
        chosen = [options] { return clear(*options); };
    });
    verb->footer("The calls are listed by: vxtv fault DIR add --help");
}

}  // namespace vxtv
