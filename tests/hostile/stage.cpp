#include "tests/hostile/stage.h"

#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <stdexcept>

#include "cloning_app/package/layout.h"
#include "cloning_app/television/category.h"
#include "cloning_app/television/library_engine.h"
#include "cloning_app/verbs/restore.h"
#include "tests/support/machine/tool_paths.h"
#include "tests/unit/cloning_app/recording_view.h"

namespace vxtest {

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

constexpr const char* kData = "usr/apps/org.vorta.vxhotel-cloning/data";
constexpr const char* kReadyMark = "/tmp/securestorage-ready";
constexpr std::chrono::seconds kLongest{90};

/// The platform calls of a run that only looks. Every other call of a refused package is a change.
const std::set<std::string> kLookingCalls = {"message_port_register_local_port",
                                             "ss_init_credential",
                                             "ss_read",
                                             "system_info_get_custom_bool",
                                             "system_info_get_custom_int",
                                             "system_info_get_value_int",
                                             "system_info_get_value_string",
                                             "tvtimer_init",
                                             "vconf_get_bool",
                                             "vconf_get_int",
                                             "vconf_get_str",
                                             "vx_get_bootlogo_path",
                                             "vx_get_homemenu_path",
                                             "vx_get_mbrlogo_path"};

void require(bool good, const std::string& what) {
    if (!good) {
        throw std::runtime_error("the stage cannot be set: " + what);
    }
}

Outcome outcomeOf(const vxclone::Result<vxclone::Report>& result) {
    if (!result) {
        return {vxclone::exitStatusOf(result.error().code), std::string(vxclone::nameOf(result.error().code)),
                result.error().sentence, ""};
    }
    std::string sentences;
    for (const std::string& sentence : result->closing) {
        sentences += sentence + "\n";
    }
    return {result->exitStatus, "", sentences, result->digest};
}

/// The last line of `--json` contains the result.
Outcome outcomeOf(const Finished& finished) {
    std::istringstream lines(finished.output);
    std::string last;
    for (std::string line; std::getline(lines, line);) {
        last = line;
    }
    const json end = json::parse(last, nullptr, false);
    if (!end.is_object() || finished.timedOut) {
        return {finished.status, "no-json", finished.output + finished.errors, ""};
    }
    std::string message = end.value("message", "");
    for (const std::string& sentence : end.value("messages", std::vector<std::string>())) {
        message += sentence + "\n";
    }
    return {finished.status, end.value("code", ""), message, end.value("digest", "")};
}

}  // namespace

Target::Target(fs::path folder, fs::path opt) : folder_(std::move(folder)), opt_(std::move(opt)) {}

fs::path Target::cloneRoot() const {
    return opt_ / kData / "Clone";
}

FileTree Target::state() const {
    FileTree state = snapshot(opt_);
    const std::string packages = (fs::path(kData) / "Clone/").string();
    std::erase_if(state, [&packages](const auto& entry) { return entry.first.find(packages) == 0; });
    for (const char* const record : {"run.json", "run.lock"}) {
        state.erase((fs::path(kData) / record).string());
    }
    for (const char* const kept : {"secure", "usr"}) {
        for (const auto& [name, content] : snapshot(folder_ / kept)) {
            state[std::string(kept) + ":" + name] = content;
        }
    }
    for (const char* const kept : {"tv.db", "tv.db-wal"}) {
        state[kept] = fs::exists(folder_ / kept) ? readFile(folder_ / kept) : "";
    }
    return state;
}

void Target::makeReady() {
    fs::remove_all(cloneRoot());
    fs::create_directories(cloneRoot());
    changingCalls();
}

std::vector<std::string> Target::changingCalls() {
    std::ifstream log(folder_ / "log/calls.jsonl");
    log.seekg(callsRead_);
    std::vector<std::string> changing;
    for (std::string line; std::getline(log, line);) {
        callsRead_ += static_cast<std::streamoff>(line.size()) + 1;
        const std::string call = json::parse(line).at("call");
        if (kLookingCalls.count(call) == 0) {
            changing.push_back(call);
        }
    }
    return changing;
}

Stage& Stage::instance() {
    static Stage stage;
    return stage;
}

Stage::Stage() : here_(place_ / "here", "/opt"), there_(place_ / "there", place_ / "there/opt") {
    for (const char* const television : {"source", "here", "there"}) {
        const char* const profile = std::string_view(television) == "source" ? "room-101" : "room-102";
        const Finished made = vxtv({"create", place_ / television, "--profile", profile});
        require(made.status == 0, made.errors);
    }
    writeFile(bait() / "secret.txt", "BAIT");
    fs::create_directories(stick());
    makePackages();
    prepareThisProcess();
    layPackage();
    for (const Outcome& dry : {restoreHere({}, true), restoreThere({"--dry-run", "--quick"})}) {
        require(dry.status == 0, "the good package is refused: " + dry.message);
    }
    goodDigest_ = restoreHere({}, true).digest;
}

void Stage::makePackages() {
    fs::create_directories(place_ / "packages");
    for (const auto& [television, package] : {std::pair("source", good_), std::pair("there", other_)}) {
        const Finished backup = vxcloneIn((place_ / television).string(), {"backup", "/media/usb/clone"});
        require(backup.status == 0, backup.output + backup.errors);
        fs::rename(stick() / "clone", package);
    }
}

/// From now on this process's platform is that of the television `here`.
void Stage::prepareThisProcess() {
    require(setenv("VXTV_TELEVISION", here_.folder().c_str(), 1) == 0, "no environment");
    fs::copy(here_.folder() / "opt", "/opt", fs::copy_options::recursive);
    fs::create_directories(here_.cloneRoot());
    writeFile(kReadyMark, "");
}

void Stage::layPackage(const fs::path& package) const {
    fs::remove_all(stick());
    fs::create_directory(stick());
    fs::copy(package, this->package(), fs::copy_options::recursive);
}

Outcome Stage::restoreHere(const std::string& expect, bool dryRun) const {
    vxclone::LibraryEngine engine;
    RecordingView view;
    const vxclone::StopFlag stop;
    const vxclone::CloneContext context{engine, view, stop, vxclone::kCloneRoot};
    vxclone::RestoreOptions options;
    options.list = vxclone::allCategories();
    options.everything = true;
    options.expect = expect;
    options.dryRun = dryRun;
    options.quick = dryRun;
    return outcomeOf(vxclone::runRestore(context, package(), options));
}

Outcome Stage::restoreThere(const std::vector<std::string>& arguments) const {
    std::vector<std::string> all = {"restore", "/media/usb/clone", "--json"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return outcomeOf(vxclone(all));
}

Finished Stage::vxclone(const std::vector<std::string>& arguments) const {
    return vxcloneIn(there_.folder().string(), arguments);
}

Finished Stage::inTelevision(const std::vector<std::string>& command) const {
    return runIn(there_.folder().string(), command);
}

Finished Stage::vxcloneIn(const std::string& television, const std::vector<std::string>& arguments) const {
    std::vector<std::string> command = {vxcloneProgram().string()};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return runIn(television, command);
}

Finished Stage::runIn(const std::string& television, const std::vector<std::string>& command) const {
    Program program;
    program.command = {vxtvProgram().string(), "run", television, "--quiet", "--stick",
                       stick().string(),       "--"};
    program.command.insert(program.command.end(), command.begin(), command.end());
    program.timeLimit = kLongest;
    return run(program);
}

Finished Stage::vxtv(const std::vector<std::string>& arguments) const {
    Program program;
    program.command = arguments;
    program.command.insert(program.command.begin(), vxtvProgram().string());
    return run(program);
}

}  // namespace vxtest
