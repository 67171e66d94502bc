#include "packaging/vxtv_manual.h"

#include "virtual_tv/calls/contract_calls.h"
#include "virtual_tv/commands/app.h"
#include "virtual_tv/factory/profile_shelf.h"

namespace vxpages {

namespace {

constexpr const char* kAbout =
    "vxtv makes virtual televisions on this machine and runs programs in them: each sees the television's "
    "own\n"
    "folders and services, and nothing of the machine's. A television is a folder; copy it, keep it, "
    "destroy\n"
    "it.";

Section statusSection() {
    return {"Exit status",
            {{std::to_string(vxtv::kExitOk), "done"},
             {std::to_string(vxtv::kExitDiffers), "compare found a difference"},
             {std::to_string(vxtv::kExitFailed), "not done; the sentence on standard error says why"},
             {"any other", "that of the command, of run and shell"}}};
}

/// The values that a command lists for the television on the line.
CliChoice asked(const char* command, const char* member) {
    CliChoice choice;
    choice.asked = command;
    choice.member = member;
    return choice;
}

Choices choicesOfValues() {
    CliChoice calls;
    for (const auto& call : vxtv::detail::kContractCalls) {
        calls.words.emplace_back(call.name);
    }
    CliChoice profiles;
    profiles.words = vxtv::ProfileShelf::ofThisProgram().names();
    profiles.files = true;
    const CliChoice settings = asked("settings", "key");
    return {{"CALL", calls},
            {"--profile", profiles},
            {"KEY", settings},
            {"--key", settings},
            {"NAME", asked("services", "name")},
            {"ID", asked("app list", "id")}};
}

}  // namespace

Manual vxtvManual() {
    vxtv::Action none;
    const auto app = vxtv::makeApp(none);
    // "vxtv 1.0.0"
    const std::string version = app->version();
    return {treeOf(*app, choicesOfValues()),
            version.substr(version.find(' ') + 1),
            kAbout,
            {statusSection()},
            "vxclone"};
}

}  // namespace vxpages
