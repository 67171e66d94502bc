#include <fcntl.h>
#include <fmt/format.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <memory>

#include "virtual_tv/base/own_file.h"
#include "virtual_tv/commands/command.h"
#include "virtual_tv/commands/output.h"
#include "virtual_tv/television/television.h"

namespace vxtv {

namespace {

struct LogOptions {
    std::string folder;
    bool follow = false;
};

tl::unexpected<Error> cannot(const char* what, const std::filesystem::path& path) {
    return failure(ErrorCode::Io,
                   fmt::format("{} cannot be {}: {}", path.string(), what, std::strerror(errno)));
}

/// Writes the complete lines between the last read position and the end of the file.
class LinePrinter {
 public:
    void copy(int file) {
        struct stat status {};
        if (fstat(file, &status) == 0 && status.st_size < lseek(file, 0, SEEK_CUR)) {
            lseek(file, 0, SEEK_SET);  // it was emptied
        }
        std::array<char, 64 * 1024> piece{};
        for (ssize_t count = 0; (count = read(file, piece.data(), piece.size())) > 0;) {
            pending_.append(piece.data(), static_cast<std::size_t>(count));
            printWholeLines();
        }
    }

 private:
    void printWholeLines() {
        const std::size_t end = pending_.rfind('\n') + 1;
        if (end != 0) {
            vxcommon::writeContent(std::string_view(pending_).substr(0, end), true);
            pending_.erase(0, end);
        }
    }

    std::string pending_;
};

Result<void> waitForChange(int watcher, const std::filesystem::path& path) {
    alignas(inotify_event) std::array<char, 4096> events{};
    if (read(watcher, events.data(), events.size()) < 0 && errno != EINTR) {
        return cannot("followed", path);
    }
    return {};
}

Result<void> showLog(const std::filesystem::path& path, bool follow) {
    // The first message creates the file, but somebody may follow the log before.
    const auto file = openOwnFile(path, O_RDONLY | (follow ? O_CREAT : 0));
    if (!file) {
        const bool empty = !follow && file.error().kind == ReadTrouble::Kind::Missing;
        return empty ? Result<void>() : ownFileError(path, "read", file.error());
    }
    const Descriptor watcher(inotify_init1(IN_CLOEXEC));
    if (follow && inotify_add_watch(watcher.get(), path.c_str(), IN_MODIFY) < 0) {
        return cannot("followed", path);
    }
    LinePrinter printer;
    printer.copy(file->get());
    Result<void> waited;
    while (follow && waited && flushOutput()) {
        waited = waitForChange(watcher.get(), path);
        printer.copy(file->get());
    }
    return waited;
}

int run(const LogOptions& options) {
    const Result<void> shown =
        Television::open(options.folder).and_then([&options](const Television& television) {
            return showLog(television.folder().dlog(), options.follow);
        });
    return shown ? finishOutput() : complain(shown.error());
}

}  // namespace

void addLogCommand(CLI::App& app, Action& chosen) {
    auto* const verb = app.add_subcommand("log", "Show the television's log");
    const auto options = std::make_shared<LogOptions>();
    verb->add_option("DIR", options->folder, "The television")->required();
    verb->add_flag("--follow,-f", options->follow, "Go on showing new lines until interrupted");
    verb->callback([options, &chosen] { chosen = [options] { return run(*options); }; });
}

}  // namespace vxtv
