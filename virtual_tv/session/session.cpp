#include "virtual_tv/session/session.h"

#include <fmt/core.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <system_error>

#include "virtual_tv/applications/application_launch.h"
#include "virtual_tv/applications/application_run.h"
#include "virtual_tv/base/live_file.h"
#include "virtual_tv/base/own_file.h"
#include "virtual_tv/process/program.h"
#include "virtual_tv/session/home_keeper.h"
#include "virtual_tv/session/mounts.h"
#include "virtual_tv/session/real_paths.h"
#include "virtual_tv/store/database.h"
#include "virtual_tv/store/folder.h"
#include "virtual_tv/store/secure_storage.h"
#include "virtual_tv/television/announcement.h"
#include "virtual_tv/television/television.h"

namespace vxtv {

namespace {

namespace fs = std::filesystem;

Result<Folder> findTelevision(const fs::path& path) {
    const auto folder = absoluteFolder(path);
    return Database::identify(Folder(folder).database()).and_then([&]() -> Result<Folder> {
        std::error_code error;
        const auto real = fs::canonical(folder, error);
        if (!error) return checkOwnFolders(Folder(real)).map([&] { return Folder(real); });
        return failure(ErrorCode::Io,
                       fmt::format("the television '{}' cannot be entered: {}; see that you may read it",
                                   folder.string(), error.message()));
    });
}

/// Returns to the same directory as before, if it is still visible at its path.
void returnTo(const fs::path& directory) {
    struct stat before {};
    struct stat now {};
    const bool isSeen = stat(".", &before) == 0 && stat(directory.c_str(), &now) == 0 &&
                        before.st_dev == now.st_dev && before.st_ino == now.st_ino;
    if (isSeen && chdir(directory.c_str()) == 0) return;
    if (chdir("/") != 0) _exit(1);
}

/// Makes /proc show the processes of the session instead of the machine's. Some containers forbid this, and
/// the session works without it.
void showOwnProcesses() {
    mount("proc", "/proc", "proc", MS_NOSUID | MS_NODEV | MS_NOEXEC, nullptr);
}

}  // namespace

Session::Session(Folder folder, std::vector<Stick> sticks, Isolation isolation, const SessionWish& wish,
                 SessionLock lock)
    : folder_(std::move(folder)),
      record_(folder_),
      sticks_(std::move(sticks)),
      isolation_(isolation),
      interactive_(wish.interactive),
      warn_(wish.warn ? wish.warn : [](const Error&) {}),
      lock_(std::move(lock)),
      bus_(folder_),
      home_({folder_.run(), folder_.homeLock(), folder_.homeAddress(), "the home of the applications"}) {}

Session::~Session() {
    lock_.release([&] {
        // The applications use the bus, so they are ended first.
        home_.end();
        bus_.endBus();
        removeStaleMarks(folder_);
        record_.removeAll();
        lowerReadyMark(placeOf(folder_, kSecureStorageReady));
    });
}

Result<Session> Session::open(const SessionWish& wish) {
    // All checks of the user's input come before the lock, so a refused session changes nothing.
    auto folder = findTelevision(wish.television);
    VX_RETURN_IF_FAILED(folder);
    auto sticks = parseSticks(wish.sticks);
    VX_RETURN_IF_FAILED(sticks);
    const auto isolation = chooseIsolation(wish.isolation);
    VX_RETURN_IF_FAILED(isolation);
    auto lock = SessionLock::acquire(*folder, [&] {
        // The home of a killed session may still be ending.
        waitForEndOfLiveFile(folder->homeAddress());
        removeStaleMarks(*folder);
        EntryRecord(*folder).removeAll();
    });
    VX_RETURN_IF_FAILED(lock);
    Session session(std::move(*folder), std::move(*sticks), *isolation, wish, std::move(*lock));
    const auto mark = placeOf(session.folder_, kSecureStorageReady);
    std::error_code ignored;
    // The television's own /tmp may hold a mark that somebody else made. Without a storage it would be wrong.
    if (!session.markStorage(mark)) fs::remove(mark, ignored);
    // Without a bus or a home a command still works, so these failures are only warnings.
    if (const auto taken = session.bus_.take(); !taken) session.warn_(taken.error());
    if (*isolation == Isolation::RealPaths) {
        // With the machine's own paths, only this session sees the television. So it makes no home that would
        // outlive it.
        session.home_.join();
    } else if (const auto shared = session.shareHome(); !shared) {
        session.warn_(shared.error());
    }
    return session;
}

/// The home sees what every session sees, but no sticks and no working directory, because these belong to one
/// command.
Result<void> Session::shareHome() {
    const auto binds = prepareBinds(folder_, {}, {{ownTree(), true}, {folder_.root(), true}}, record_);
    if (!binds) return {};  // `run` will fail for the same reason and report it
    const HomePlan plan{folder_, isolation_, [&binds] {
                            auto done = doBinds(*binds);
                            if (done) showOwnProcesses();
                            return done;
                        }};
    return home_.take([&plan](ServiceStart start) { return startHome(plan, std::move(start)); }).map([this] {
        startAutostartApplications(folder_, StartPlace::Home);
    });
}

/// The mark exists exactly as long as the storage is ready.
bool Session::markStorage(const fs::path& mark) const {
    auto up = SecureStorage(folder_).checkUp();
    if (up) {
        up = raiseReadyMark(mark);
    } else {
        lowerReadyMark(mark);
    }
    if (!up) warn_(up.error());
    return up.has_value();
}

Result<Outcome> Session::run(const std::vector<std::string>& command) const {
    Job job{.command = command,
            .environment = {{kTelevisionVariable, folder_.root().string()}},
            .isolation = isolation_,
            .prepare = {},
            .interactive = interactive_};
    if (isolation_ == Isolation::RealPaths) {
        return runOnRealPaths(std::move(job));
    }
    const auto binds = prepareBinds(folder_, sticks_, needsOf(command.front()), record_);
    VX_RETURN_IF_FAILED(binds);
    std::error_code deleted;
    job.prepare = [this, &binds, directory = fs::current_path(deleted)]() -> Result<void> {
        auto done = doBinds(*binds);
        if (done) {
            showOwnProcesses();
            returnTo(directory);
            // Without a home, the applications live in this session.
            if (!home_) startAutostartApplications(folder_, StartPlace::Here);
        }
        return done;
    };
    return supervise(job);
}

Result<Outcome> Session::runOnRealPaths(Job job) const {
    const auto paths = RealPaths::take(folder_, sticks_, record_);
    VX_RETURN_IF_FAILED(paths);
    // Without namespaces, programs look for the mark in the machine's /tmp.
    markStorage(kSecureStorageReady);
    job.prepare = [this] {
        startAutostartApplications(folder_, home_ ? StartPlace::Home : StartPlace::Here);
        return Result<void>();
    };
    auto outcome = supervise(job);
    lowerReadyMark(kSecureStorageReady);
    return outcome;
}

std::vector<Need> Session::needsOf(const std::string& program) const {
    std::vector<Need> needs = {{ownTree(), true}, {folder_.root(), true}};
    std::error_code error;
    const auto directory = fs::current_path(error);
    if (!error) needs.push_back({directory, false});
    const auto file = findProgram(program);
    if (!file) return needs;
    for (const auto& name : bothNames(*file)) {
        const auto inside = pathInFolder(name);
        // A program of the television's own is visible anyway; showing the machine's folder would hide it.
        const bool isTelevisions = !inside.empty() && fs::exists(folder_.root() / inside, error);
        if (!isTelevisions) needs.push_back({name.parent_path(), false});
    }
    return needs;
}

}  // namespace vxtv
