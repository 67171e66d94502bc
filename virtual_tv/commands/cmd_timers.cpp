#include <memory>

#include "common/terminal_table.h"
#include "virtual_tv/commands/command.h"
#include "virtual_tv/commands/output.h"
#include "virtual_tv/services/timer_store.h"
#include "virtual_tv/television/television.h"

namespace vxtv {

namespace {

struct TimersOptions {
    std::string folder;
    bool json = false;
};

void printTable(const std::vector<Timer>& timers) {
    vxcommon::TerminalTable table({"ID", "KIND", "START", "MINUTES", "REPEAT", "CHANNEL", "TITLE"});
    for (const Timer& timer : timers) {
        table.addRow({{std::to_string(timer.id)},
                      {timer.kind},
                      {timer.start},
                      {std::to_string(timer.minutes)},
                      {timer.repeat},
                      {timer.channel != 0 ? std::to_string(timer.channel) : "last"},
                      {timer.title}});
    }
    print(table.render(outputScreen()));
}

int list(const TimersOptions& options) {
    const auto timers = Television::open(options.folder).and_then([](const Television& television) {
        return TimerStore(television.database()).list();
    });
    if (!timers) {
        return complain(timers.error());
    }
    if (options.json) {
        printJson(timersToJson(*timers));
    } else {
        printTable(*timers);
    }
    return finishOutput();
}

}  // namespace

void addTimersCommand(CLI::App& app, Action& chosen) {
    auto* const verb = app.add_subcommand("timers", "List recordings and wake-ups");
    const auto options = std::make_shared<TimersOptions>();
    verb->add_option("DIR", options->folder, "The television")->required();
    verb->add_flag("--json", options->json, "For programs: the timers as their backup file holds them");
    verb->callback([options, &chosen] { chosen = [options] { return list(*options); }; });
}

}  // namespace vxtv
