#include "cloning_app/support/support_bundle.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "cloning_app/base/stamp.h"
#include "cloning_app/base/tree_walk.h"
#include "cloning_app/package/identity.h"
#include "cloning_app/record/run_record.h"
#include "cloning_app/record/status.h"
#include "cloning_app/television/settings_store.h"

namespace vxclone {

namespace {

constexpr const char* kFolder = "vxclone-support/";
/// Of a longer log, only the end is included.
constexpr off_t kMostLogBytes = off_t{4} << 20U;

std::string versionsText() {
    utsname system{};
    uname(&system);
    return fmt::format("vxclone {}\n{} {} {} {}\nmade {}\n", version(), system.sysname, system.release,
                       system.version, system.machine, timeText(secondsNow()));
}

std::string televisionText() {
    const Identity identity = televisionIdentity();
    return fmt::format("model: {}\nproduct tag: {}\ntuner type: {}\n", identity.model.value_or("unknown"),
                       identity.productTag.value_or("unknown"),
                       identity.tuner ? std::to_string(*identity.tuner) : "unknown");
}

std::string resultsText() {
    const auto percent = store::readInt(kProgressKey);
    return fmt::format("{} {}\n{}\n{}\n", kProgressKey, percent ? std::to_string(*percent) : "(refused)",
                       kResultKey, store::readString(kResultKey).value_or("(refused)"));
}

std::string runText(const std::filesystem::path& folder) {
    const auto status = readStatus(folder);
    if (!status) {
        return status.error().sentence + "\n";
    }
    std::string text = fmt::format("{}\n", fmt::join(sentencesOf(*status), "\n"));
    return status->last ? text + recordText(status->last->record) : text;
}

Result<std::string> logText(const std::string& path) {
    const Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    const off_t size = file.valid() ? lseek(file.get(), 0, SEEK_END) : -1;
    if (size < 0) {
        return tl::make_unexpected(readError(Place::Television, path, errno));
    }
    std::string text(static_cast<std::size_t>(std::min(size, kMostLogBytes)), '\0');
    const ssize_t got = pread(file.get(), text.data(), text.size(), size - static_cast<off_t>(text.size()));
    if (got < 0) {
        return tl::make_unexpected(readError(Place::Television, path, errno));
    }
    text.resize(static_cast<std::size_t>(got));
    return text;
}

}  // namespace

Result<std::vector<ArchiveEntry>> bundleFiles(const BundleSources& sources, const Redactor& redactor) {
    std::vector<ArchiveEntry> files = {{"versions.txt", versionsText()},
                                       {"television.txt", televisionText()},
                                       {"results.txt", resultsText()},
                                       {"last-run.txt", runText(sources.recordFolder)}};
    if (!sources.log.empty()) {
        auto log = logText(sources.log);
        VX_RETURN_IF_FAILED(log);
        files.push_back({"log.txt", *std::move(log)});
    }
    for (ArchiveEntry& file : files) {
        file.name = kFolder + file.name;
        file.content = redactor.clean(std::move(file.content));
    }
    return files;
}

}  // namespace vxclone
