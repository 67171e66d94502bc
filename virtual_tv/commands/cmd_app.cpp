#include <fmt/format.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <system_error>

#include "common/terminal_table.h"
#include "virtual_tv/applications/application_run.h"
#include "virtual_tv/applications/applications.h"
#include "virtual_tv/commands/command.h"
#include "virtual_tv/commands/output.h"
#include "virtual_tv/session/application_session.h"
#include "virtual_tv/television/television.h"

namespace vxtv {

namespace {

namespace fs = std::filesystem;

struct AppOptions {
    std::string television;
    std::string application;
    std::string folder;
    bool json = false;
};

/// A row of the list of applications.
struct Row {
    ApplicationManifest manifest;
    std::optional<pid_t> process;
    std::uintmax_t dataSize = 0;
};

Result<Folder> folderOf(const AppOptions& options) {
    return Television::open(options.television).map([](const Television& television) {
        return television.folder();
    });
}

std::uintmax_t sizeOf(const fs::path& data) {
    std::uintmax_t size = 0;
    std::error_code ignored;
    for (fs::recursive_directory_iterator entry(data, ignored), end; !ignored && entry != end;
         entry.increment(ignored)) {
        std::error_code gone;
        if (fs::is_regular_file(entry->symlink_status(gone))) {
            const std::uintmax_t bytes = entry->file_size(gone);
            size += gone ? 0 : bytes;
        }
    }
    return size;
}

void printTable(const std::vector<Row>& rows) {
    vxcommon::TerminalTable table({"ID", "TITLE", "PROCESS", "AUTOSTART", "DATA BYTES"});
    for (const Row& row : rows) {
        table.addRow({{row.manifest.id},
                      {row.manifest.title},
                      {row.process ? std::to_string(*row.process) : "-"},
                      {row.manifest.autostart ? "yes" : "no"},
                      {std::to_string(row.dataSize)}});
    }
    print(rows.empty() ? vxcommon::Printable("no applications\n") : table.render(outputScreen()));
}

void printRows(const std::vector<Row>& rows) {
    auto document = nlohmann::ordered_json::array();
    for (const Row& row : rows) {
        document.push_back({{"id", row.manifest.id},
                            {"title", row.manifest.title},
                            {"process", row.process ? nlohmann::ordered_json(*row.process) : nullptr},
                            {"autostart", row.manifest.autostart},
                            {"dataBytes", row.dataSize}});
    }
    printJson(document);
}

int list(const AppOptions& options) {
    const auto folder = folderOf(options);
    if (!folder) {
        return complain(folder.error());
    }
    const Applications applications(*folder);
    const auto ids = applications.ids();
    if (!ids) {
        return complain(ids.error());
    }
    int status = kExitOk;
    std::vector<Row> rows;
    for (const std::string& id : *ids) {
        // An unusable application must not hide the others.
        if (const auto manifest = applications.find(id)) {
            rows.push_back({*manifest, runningProcess(*folder, id), sizeOf(applications.dataOf(id))});
        } else {
            status = complain(manifest.error());
        }
    }
    options.json ? printRows(rows) : printTable(rows);
    const int written = finishOutput();
    return written != kExitOk ? written : status;
}

int install(const AppOptions& options) {
    const auto manifest = folderOf(options).and_then(
        [&options](const Folder& folder) { return Applications(folder).install(options.folder); });
    if (!manifest) {
        return complain(manifest.error());
    }
    say(fmt::format("gave the television {} the application {}", options.television, manifest->id));
    return finishOutput();
}

int start(const AppOptions& options) {
    const auto folder = folderOf(options);
    if (!folder) {
        return complain(folder.error());
    }
    const auto before = runningProcess(*folder, options.application);
    const auto process =
        Applications(*folder).find(options.application).and_then([&](const ApplicationManifest&) {
            return before ? Result<pid_t>(*before)
                          : startInOwnSession(options.television, options.application);
        });
    if (!process) {
        return complain(process.error());
    }
    say(fmt::format("{} {} as process {}", options.application, before ? "runs already" : "runs", *process));
    return finishOutput();
}

int stop(const AppOptions& options) {
    const auto stopped = folderOf(options).and_then([&options](const Folder& folder) {
        return Applications(folder).find(options.application).and_then([&](const ApplicationManifest&) {
            return stopApplication(folder, options.application);
        });
    });
    if (!stopped) {
        return complain(stopped.error());
    }
    say(fmt::format("{} has ended", options.application));
    return finishOutput();
}

using Run = int (*)(const AppOptions&);

CLI::App* addVerb(CLI::App& app, const std::shared_ptr<AppOptions>& options, Action& chosen, const char* name,
                  const char* help, Run run) {
    auto* const verb = app.add_subcommand(name, help);
    verb->add_option("DIR", options->television, "The television")->required();
    verb->callback([options, run, &chosen] { chosen = [options, run] { return run(*options); }; });
    return verb;
}

}  // namespace

void addAppCommand(CLI::App& app, Action& chosen) {
    auto* const verb = app.add_subcommand("app", "List, install, start and stop a television's applications");
    const auto options = std::make_shared<AppOptions>();
    verb->require_subcommand(1);
    addVerb(*verb, options, chosen, "list", "Show the applications and which of them run", list)
        ->add_flag("--json", options->json, "For programs");
    addVerb(*verb, options, chosen, "install", "Give the television an application", install)
        ->add_option("FOLDER", options->folder, "The application's folder, with its app.json")
        ->required();
    addVerb(*verb, options, chosen, "start", "Start an application in a session of its own", start)
        ->add_option("ID", options->application, "The application")
        ->required();
    addVerb(*verb, options, chosen, "stop", "End an application, wherever it runs", stop)
        ->add_option("ID", options->application, "The application")
        ->required();
    verb->footer("An application that is started here runs until it ends or is stopped.");
}

}  // namespace vxtv
