#include "virtual_tv/calls/call_log.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "virtual_tv/base/own_file.h"
#include "virtual_tv/calls/line_file.h"

namespace vxtv {

namespace {

using OrderedJson = nlohmann::ordered_json;

std::optional<CallRecord> recordIn(const std::string& line) {
    try {
        const OrderedJson object = OrderedJson::parse(line);
        CallRecord record;
        record.timeUs = object.at("time").get<std::int64_t>();
        record.process = object.at("process").get<int>();
        record.thread = object.at("thread").get<int>();
        record.call = object.at("call").get<std::string>();
        record.arguments = object.at("arguments");
        record.result = object.at("result");
        if (const auto fault = object.find("fault"); fault != object.end()) {
            record.fault = fault->get<std::int64_t>();
        }
        return record;
    } catch (const OrderedJson::exception&) {
        return std::nullopt;
    }
}

constexpr const char* kRead = "read";

/// Reads the lines of an open file one after the other.
class Lines {
 public:
    explicit Lines(const Descriptor& file) : file_(file) {}

    /// Result: whether there was another line; `failed` distinguishes an error from the end.
    bool next(std::string& line) {
        for (std::size_t end = 0; (end = pending_.find('\n', searched_)) == std::string::npos;) {
            searched_ = pending_.size();
            if (!readMore()) {
                line = std::exchange(pending_, {});
                searched_ = 0;
                return !line.empty();
            }
        }
        const std::size_t end = pending_.find('\n', searched_);
        line = pending_.substr(0, end);
        pending_.erase(0, end + 1);
        searched_ = 0;
        return true;
    }
    bool failed() const { return failed_; }

 private:
    bool readMore() {
        constexpr std::size_t kPiece = 64U << 10U;
        std::array<char, kPiece> piece{};
        ssize_t count = 0;
        do {
            count = ::read(file_.get(), piece.data(), piece.size());
        } while (count < 0 && errno == EINTR);
        failed_ = count < 0;
        pending_.append(piece.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        return count > 0;
    }

    const Descriptor& file_;
    std::string pending_;
    std::size_t searched_ = 0;
    bool failed_ = false;
};

}  // namespace

vxcommon::JsonText toJsonText(const CallRecord& record) {
    OrderedJson object = {{"time", record.timeUs},         {"process", record.process},
                          {"thread", record.thread},       {"call", record.call},
                          {"arguments", record.arguments}, {"result", record.result}};
    if (record.fault) {
        object["fault"] = *record.fault;
    }
    return vxcommon::JsonText(object);
}

CallLog::CallLog(const std::filesystem::path& file) : path_(file), file_(file) {}

bool CallLog::append(CallRecord record) {
    record.timeUs = monotonicMicroseconds();
    record.process = getpid();
    record.thread = static_cast<int>(syscall(SYS_gettid));
    return file_.append(toJsonText(record).text() + '\n');
}

Result<int> CallLog::read(const std::function<void(const CallRecord&)>& visit) const {
    const auto file = openOwnFile(path_, O_RDONLY);
    if (!file && file.error().kind == ReadTrouble::Kind::Missing) {
        return 0;
    }
    if (!file) {
        return ownFileError(path_, kRead, file.error());
    }
    int unreadable = 0;
    Lines lines(*file);
    for (std::string line; lines.next(line);) {
        if (const std::optional<CallRecord> record = recordIn(line)) {
            visit(*record);
        } else {
            ++unreadable;
        }
    }
    return lines.failed()
               ? Result<int>(ownFileError(path_, kRead, {ReadTrouble::Kind::CannotBeRead, reason()}))
               : Result<int>(unreadable);
}

Result<void> CallLog::clear() {
    const auto emptied = openOwnFile(path_, O_WRONLY | O_TRUNC);
    if (!emptied && emptied.error().kind != ReadTrouble::Kind::Missing) {
        return ownFileError(path_, "emptied", emptied.error());
    }
    return {};
}

}  // namespace vxtv
