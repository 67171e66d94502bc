#include "virtual_tv/television/call_log.h"

#include <fmt/format.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>

#include "virtual_tv/television/clock.h"

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

tl::unexpected<Error> ioError(const std::filesystem::path& file, const char* what) {
    return failure(ErrorCode::Io,
                   fmt::format("{} cannot be {}: {}", file.string(), what, std::strerror(errno)));
}

}  // namespace

std::string toJsonLine(const CallRecord& record) {
    OrderedJson object = {{"time", record.timeUs},         {"process", record.process},
                          {"thread", record.thread},       {"call", record.call},
                          {"arguments", record.arguments}, {"result", record.result}};
    if (record.fault) {
        object["fault"] = *record.fault;
    }
    return object.dump(-1, ' ', false, OrderedJson::error_handler_t::replace);
}

CallLog::CallLog(const std::filesystem::path& file) : path_(file), file_(file) {}

bool CallLog::append(CallRecord record) {
    record.timeUs = monotonicMicroseconds();
    record.process = getpid();
    record.thread = static_cast<int>(syscall(SYS_gettid));
    return file_.append(toJsonLine(record) + '\n');
}

Result<int> CallLog::read(const std::function<void(const CallRecord&)>& visit) const {
    std::error_code error;
    if (!std::filesystem::exists(path_, error) && !error) {
        return 0;
    }
    std::ifstream file(path_);
    if (!file) {
        return ioError(path_, "read");
    }
    int unreadable = 0;
    for (std::string line; std::getline(file, line);) {
        if (const std::optional<CallRecord> record = recordIn(line)) {
            visit(*record);
        } else {
            ++unreadable;
        }
    }
    return file.bad() ? Result<int>(ioError(path_, "read")) : Result<int>(unreadable);
}

Result<void> CallLog::clear() {
    if (truncate(path_.c_str(), 0) != 0 && errno != ENOENT) {
        return ioError(path_, "emptied");
    }
    return {};
}

}  // namespace vxtv
