#include "virtual_tv/applications/application_launch.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <string_view>
#include <vector>

#include "platform/dlog.h"
#include "virtual_tv/applications/application_home.h"
#include "virtual_tv/applications/application_run.h"
#include "virtual_tv/applications/applications.h"
#include "virtual_tv/base/descriptor.h"
#include "virtual_tv/base/shipped_files.h"
#include "virtual_tv/calls/dlog_file.h"

namespace vxtv {

namespace {

constexpr int kReportDescriptor = 3;
constexpr const char* kNoBundle = "";

tl::unexpected<Error> cannotStart(const std::string& id, std::string_view why) {
    return failure(ErrorCode::CannotRun, fmt::format("the application {} cannot be started: {}", id, why));
}

std::vector<std::string> ownEnvironment() {
    std::vector<std::string> entries;
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
        entries.emplace_back(*entry);
    }
    return entries;
}

/// An environment with some variables changed. An empty value removes a variable.
class Environment {
 public:
    Environment(const std::vector<std::string>& entries,
                const std::vector<std::pair<std::string, std::string>>& values) {
        for (const std::string& entry : entries) {
            const std::string_view name = std::string_view(entry).substr(0, entry.find('='));
            const bool isReplaced = std::any_of(values.begin(), values.end(),
                                                [name](const auto& value) { return value.first == name; });
            if (!isReplaced) {
                texts_.push_back(entry);
            }
        }
        for (const auto& [name, value] : values) {
            if (!value.empty()) {
                texts_.push_back(name + "=" + value);
            }
        }
        for (std::string& text : texts_) {
            pointers_.push_back(text.data());
        }
        pointers_.push_back(nullptr);
    }
    char** get() { return pointers_.data(); }

 private:
    std::vector<std::string> texts_;
    std::vector<char*> pointers_;
};

/// The settings for spawning the host: no terminal, no descriptor except the one for the report, no blocked
/// signal.
class SpawnSettings {
 public:
    explicit SpawnSettings(int report) {
        posix_spawn_file_actions_init(&actions_);
        posix_spawnattr_init(&attributes_);
        posix_spawn_file_actions_adddup2(&actions_, report, kReportDescriptor);
        for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
            posix_spawn_file_actions_addopen(&actions_, standard, "/dev/null", O_RDWR, 0);
        }
        posix_spawn_file_actions_addclosefrom_np(&actions_, kReportDescriptor + 1);
        sigset_t none;
        sigemptyset(&none);
        posix_spawnattr_setsigmask(&attributes_, &none);
        sigset_t all;
        sigfillset(&all);
        posix_spawnattr_setsigdefault(&attributes_, &all);
        posix_spawnattr_setflags(
            &attributes_,
            static_cast<short>(POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID));
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    ~SpawnSettings() {
        posix_spawn_file_actions_destroy(&actions_);
        posix_spawnattr_destroy(&attributes_);
    }

    posix_spawn_file_actions_t actions_{};
    posix_spawnattr_t attributes_{};
};

/// Starts a host in this process's session. Result: a descriptor from which its report can be read.
Result<Descriptor> startHostHere(const Folder& folder, const std::string& id, const std::string& bundle) {
    std::array<int, 2> pipe{};
    if (pipe2(pipe.data(), O_CLOEXEC) != 0) {
        return cannotStart(id, reason());
    }
    Descriptor report(pipe[0]);
    HomeRequest request{
        .application = id, .bundle = bundle, .environment = ownEnvironment(), .report = Descriptor(pipe[1])};
    return startHost(folder, request).map([&report] { return std::move(report); });
}

/// Starts a host in the television's home, or in this session if there is no home.
Result<Descriptor> startHostAnywhere(const Folder& folder, const std::string& id, const std::string& bundle) {
    if (auto report = launchAtHome(folder, id, bundle)) {
        return std::move(*report);
    }
    return startHostHere(folder, id, bundle);
}

Result<void> startAt(StartPlace place, const Folder& folder, const std::string& id) {
    if (place == StartPlace::Here) {
        return startHostHere(folder, id, kNoBundle).map([](const Descriptor&) {});
    }
    return launchAtHome(folder, id, kNoBundle) ? Result<void>()
                                               : cannotStart(id, "the home of the applications is gone");
}

}  // namespace

Result<void> startHost(const Folder& folder, const HomeRequest& request) {
    const std::string host = shippedProgram(kApplicationHost).string();
    if (host.empty()) {
        return cannotStart(request.application,
                           fmt::format("{} is missing; install vxtv again", kApplicationHost));
    }
    // In the child, dup2 makes the copy. It would do nothing for equal numbers, so this one has another
    // number.
    const Descriptor reporting(fcntl(request.report.get(), F_DUPFD_CLOEXEC, kReportDescriptor + 1));
    std::string way = nameOf(HostWay::Detached);
    std::string television = folder.root().string();
    std::string application = request.application;
    std::string descriptor = std::to_string(kReportDescriptor);
    std::string program = host;
    const std::array<char*, 6> arguments = {program.data(),    television.data(), application.data(),
                                            descriptor.data(), way.data(),        nullptr};
    Environment environment(request.environment,
                            {{kTelevisionVariable, television}, {kLaunchBundleVariable, request.bundle}});
    const SpawnSettings settings(reporting.get());
    pid_t child = -1;
    const int error = posix_spawn(&child, host.c_str(), &settings.actions_, &settings.attributes_,
                                  arguments.data(), environment.get());
    if (error != 0) {
        return cannotStart(request.application, reason(error));
    }
    // The child exits at once, so the host is orphaned. If this program ignores SIGCHLD, the child is
    // collected already.
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) continue;
    return {};
}

const char* nameOf(HostWay way) {
    return way == HostWay::Detached ? "detached" : "attached";
}

Result<pid_t> readHostReport(int descriptor) {
    std::string text;
    std::array<char, 512> part{};
    ssize_t count = 0;
    do {
        count = read(descriptor, part.data(), part.size());
        text.append(part.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    } while ((count > 0 && text.find('\0') == std::string::npos) || (count < 0 && errno == EINTR));
    const std::size_t length = text.find('\0');
    text.resize(length != std::string::npos ? length : 0);
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || number < 0) {
        return failure(ErrorCode::CannotRun,
                       "the application's host was killed before it could start it; try again");
    }
    if (number > 0) {
        return static_cast<pid_t>(number);
    }
    int code = 0;
    const char* const last = text.data() + text.size();
    const auto [sentence, wrong] = std::from_chars(std::min(end + 1, last), last, code);
    return failure(wrong == std::errc() ? static_cast<ErrorCode>(code) : ErrorCode::CannotRun,
                   std::string(std::min(sentence + 1, last), last));
}

void writeHostReport(int descriptor, const Result<pid_t>& report) {
    // A NUL marks the end, because other processes may keep the pipe open.
    const std::string text = report ? fmt::format("{}{}", *report, '\0')
                                    : fmt::format("0 {} {}{}", static_cast<int>(report.error().code),
                                                  report.error().sentence, '\0');
    // If the launcher does not wait for the report, a failed write does not matter.
    [[maybe_unused]] const ssize_t written = write(descriptor, text.data(), text.size());
}

Result<pid_t> launchApplication(const Folder& folder, const std::string& id, const std::string& bundle) {
    return Applications(folder).find(id).and_then([&](const ApplicationManifest&) -> Result<pid_t> {
        if (const auto process = runningProcess(folder, id)) {
            return *process;
        }
        return startHostAnywhere(folder, id, bundle).and_then([](const Descriptor& report) {
            return readHostReport(report.get());
        });
    });
}

void startAutostartApplications(const Folder& folder, StartPlace place) {
    const Applications applications(folder);
    DlogFile log(folder.dlog());
    for (const std::string& id : applications.ids().value_or(std::vector<std::string>())) {
        const auto manifest = applications.find(id);
        const bool isWanted = !manifest || manifest->autostart;
        const Result<void> started = !manifest ? tl::make_unexpected(manifest.error())
                                     : isWanted && !runningProcess(folder, id) ? startAt(place, folder, id)
                                                                               : Result<void>();
        if (!started) {
            log.append(DLOG_ERROR, id, started.error().sentence);
        }
    }
}

}  // namespace vxtv
