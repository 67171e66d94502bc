// Runs a program and breaks one of its system calls. vx-break-call --help explains it.

#include <CLI/CLI.hpp>
#include <cerrno>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "tests/sweeps/system/break_call/tracer.h"

namespace {

constexpr int kCannotTrace = 126;

const std::map<std::string, int> kErrors = {
    {"EACCES", EACCES}, {"EINTR", EINTR},   {"EIO", EIO},       {"EMFILE", EMFILE},
    {"ENOENT", ENOENT}, {"ENOLCK", ENOLCK}, {"ENOMEM", ENOMEM}, {"ENOSPC", ENOSPC},
    {"EPERM", EPERM},   {"EPIPE", EPIPE},   {"EROFS", EROFS},
};

const std::map<std::string, vxtest::Breakage> kOthers = {
    {"count", vxtest::Breakage::None},
    {"interrupt", vxtest::Breakage::Interrupt},
    {"kill", vxtest::Breakage::Kill},
    {"short", vxtest::Breakage::Short},
};

}  // namespace

int main(int count, char** arguments) {
    vxtest::BreakOrder order;
    std::string how = "count";
    std::vector<std::string> calls;
    std::vector<std::string> command;
    CLI::App app("Runs a program and breaks one of its system calls.", "vx-break-call");
    app.positionals_at_end();  // what follows the program belongs to it
    app.add_option("--how", how, "count, interrupt, kill, short, or the error that the call is to fail with");
    app.add_option("--calls", calls, "The calls that count, separated by commas; else all")->delimiter(',');
    app.add_option("--below", order.below, "Count only calls that name a file there")->delimiter(',');
    app.add_option("--nth", order.nth, "Which of them is broken, from 1");
    app.add_flag("--from-then-on", order.fromThenOn, "All that follow are broken, too");
    app.add_option("--log", order.log, "Gets a line for each call that was broken, or counted")->required();
    app.add_option("command", command, "The program and its arguments")->required();
    CLI11_PARSE(app, count, arguments);

    order.calls.insert(calls.begin(), calls.end());
    if (const auto other = kOthers.find(how); other != kOthers.end()) {
        order.breakage = other->second;
    } else if (const auto error = kErrors.find(how); error != kErrors.end()) {
        order.breakage = vxtest::Breakage::Error;
        order.error = error->second;
    } else {
        std::cerr << "vx-break-call: no way to break a call is named " << how << "; see --help\n";
        return kCannotTrace;
    }
    std::vector<char*> words;
    for (std::string& word : command) {
        words.push_back(word.data());
    }
    words.push_back(nullptr);
    const auto status = vxtest::Tracer(order).run(words.data());
    if (!status) {
        std::cerr << "vx-break-call: this machine does not let a program be traced\n";
    }
    return status.value_or(kCannotTrace);
}
