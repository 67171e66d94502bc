#include "cloning_app/television/kept_run_keys.h"

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <functional>
#include <optional>
#include <string>

#include "cloning_app/base/small_file.h"
#include "cloning_app/base/tree_walk.h"
#include "cloning_app/television/settings_store.h"

namespace vxclone {

namespace {

constexpr const char* kNotes = "run.keys";
/// Far more than any result list.
constexpr std::size_t kMostNoteBytes = std::size_t{1} << 20U;
/// A setting that is refused once is tried again.
constexpr int kAttempts = 2;

tl::unexpected<Error> cannotKeep(const char* key) {
    return failure(ErrorCode::SettingsRefused,
                   std::string("the television's settings store refuses ") + key +
                       ", which has to be afterwards as it was; restart the television and try again");
}

/// The percentage, where there is one, on the first line; below it the result list as it is.
std::string noteText(const RunKeys& keys) {
    return (keys.percent ? std::to_string(*keys.percent) : "") + "\n" + keys.results;
}

RunKeys keysIn(const std::string& note) {
    const std::size_t end = note.find('\n');
    RunKeys keys{{}, end == std::string::npos ? "" : note.substr(end + 1)};
    int percent = 0;
    if (std::from_chars(note.data(), note.data() + note.size(), percent).ec == std::errc()) {
        keys.percent = percent;
    }
    return keys;
}

Result<std::optional<RunKeys>> readNotes(const Tree& data) {
    const auto notes = readSmallFile(data, kNotes, kMostNoteBytes);
    VX_RETURN_IF_FAILED(notes);
    return *notes ? std::optional(keysIn(**notes)) : std::nullopt;
}

std::optional<std::string> readResults() {
    std::optional<std::string> results;
    for (int attempt = 0; attempt < kAttempts && !results; ++attempt) {
        results = store::readString(kResultKey);
    }
    return results;
}

template <class Value>
bool holdsOrTakes(const Value& wanted, const std::function<std::optional<Value>()>& read,
                  const std::function<bool()>& write) {
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        if (read() == wanted) {
            return true;
        }
        static_cast<void>(write());
    }
    return read() == wanted;
}

}  // namespace

Result<void> keepRunKeys(const std::filesystem::path& dataFolder) {
    const auto folder = openOnTelevision(dataFolder);
    VX_RETURN_IF_FAILED(folder);
    const auto results = readResults();
    if (!results) {
        return cannotKeep(kResultKey);
    }
    const Tree data{folder->get(), dataFolder.string(), Place::Television};
    return replaceSmallFile(data, kNotes, noteText({store::readInt(kProgressKey), *results}),
                            Flushed::Content);
}

Result<void> putRunKeysBack(const std::filesystem::path& dataFolder) {
    const auto folder = openOnTelevision(dataFolder);
    VX_RETURN_IF_FAILED(folder);
    removeTree(folder->get(), newFileOf(kNotes));
    const auto noted = readNotes({folder->get(), dataFolder.string(), Place::Television});
    if (!noted || !*noted) {
        return noted ? Result<void>() : tl::make_unexpected(noted.error());
    }
    const auto& [percent, results] = **noted;
    if (!holdsOrTakes<std::string>(
            results, [] { return store::readString(kResultKey); },
            [&results = results] { return store::writeString(kResultKey, results); })) {
        return cannotKeep(kResultKey);
    }
    if (percent && !holdsOrTakes<int>(
                       *percent, [] { return store::readInt(kProgressKey); },
                       [&percent = *percent] { return store::writeInt(kProgressKey, percent); })) {
        return cannotKeep(kProgressKey);
    }
    const int reason = removeTree(folder->get(), kNotes);
    return reason == 0 ? Result<void>()
                       : tl::make_unexpected(
                             writeError(Place::Television, dataFolder.string() + "/" + kNotes, reason));
}

std::optional<RunKeys> notedRunKeys(const std::filesystem::path& dataFolder) {
    const auto folder = openOnTelevision(dataFolder);
    const auto noted = folder ? readNotes({folder->get(), dataFolder.string(), Place::Television})
                              : Result<std::optional<RunKeys>>(std::nullopt);
    return noted.value_or(std::nullopt);
}

}  // namespace vxclone
