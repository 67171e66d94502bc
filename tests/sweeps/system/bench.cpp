#include "tests/sweeps/system/bench.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <thread>

#include "tests/support/machine/file_tree.h"
#include "tests/support/machine/tool_paths.h"
#include "tests/sweeps/sweep.h"

namespace vxtest {

namespace {

namespace fs = std::filesystem;

constexpr const char* kData = "opt/usr/apps/org.vorta.vxhotel-cloning/data";
/// Long enough for a busy machine. Only a hanging run takes so long.
constexpr std::chrono::seconds kLongest{120};

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : ",") + word;
    }
    return text;
}

std::vector<std::string> namesIn(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) {
        names.push_back(entry.path().filename());
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<CountedCall> readLog(const fs::path& log) {
    std::vector<CountedCall> calls;
    std::ifstream stream(log);
    for (std::string line; std::getline(stream, line);) {
        CountedCall call;
        std::string number;
        std::istringstream words(line);
        words >> number >> call.name;
        std::getline(words >> std::ws, call.paths);
        calls.push_back(std::move(call));
    }
    return calls;
}

}  // namespace

std::string BreakPoint::text() const {
    return how + " at call " + std::to_string(nth) + (fromThenOn ? " and later" : "") + " of " +
           (calls.empty() ? "all" : calls);
}

Bench::Bench(const fs::path& television, const fs::path& stick) {
    fs::copy(television, place_ / "tv", fs::copy_options::recursive | fs::copy_options::copy_symlinks);
    fs::copy(stick, place_ / "stick", fs::copy_options::recursive);
}

Finished Bench::inside(const std::vector<std::string>& command) const {
    Program program;
    program.timeLimit = kLongest;
    program.command = {vxtvProgram(), "run", television(), "--quiet", "--stick", stick(), "--"};
    program.command.insert(program.command.end(), command.begin(), command.end());
    return run(program);
}

Finished Bench::vxclone(const std::vector<std::string>& arguments) const {
    std::vector<std::string> command = {vxcloneProgram()};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return inside(command);
}

BrokenRun Bench::broken(const std::vector<std::string>& arguments, const BreakPoint& point) const {
    const fs::path log = television() / "broken-calls";
    std::vector<std::string> command = {toolFolder() / "vx-break-call", "--log=" + log.string(),
                                        "--how=" + point.how, "--nth=" + std::to_string(point.nth)};
    if (!point.calls.empty()) {
        command.push_back("--calls=" + point.calls);
    }
    if (!point.below.empty()) {
        command.push_back("--below=" + joined(point.below));
    }
    if (point.fromThenOn) {
        command.emplace_back("--from-then-on");
    }
    command.insert(command.end(), {"--", vxcloneProgram()});
    command.insert(command.end(), arguments.begin(), arguments.end());
    BrokenRun result{inside(command), readLog(log)};
    fs::remove(log);
    return result;
}

std::string Bench::differenceTo(const fs::path& other) const {
    const Finished compared = run({{vxtvProgram(), "compare", television(), other}, {}, {}, {}, kLongest});
    return compared.status == 0 ? "" : "differs: " + compared.output + compared.errors;
}

std::vector<std::string> Bench::namesOnStick() const {
    return namesIn(stick());
}

std::vector<std::string> Bench::namesOfData() const {
    return namesIn(television() / kData);
}

std::string Bench::recordedPhase() const {
    const fs::path record = television() / kData / "run.json";
    return fs::exists(record) ? nlohmann::json::parse(readFile(record)).value("phase", "") : "";
}

std::vector<std::string> filesThatMatter(const Bench& bench) {
    const std::string television = bench.television();
    return {"/media/usb",
            "/opt",
            television + "/opt",
            television + "/secure",
            television + "/tv.db",
            television + "/tv.db-wal",
            television + "/tv.db-shm"};
}

void inParallel(std::size_t count, const std::function<void(std::size_t)>& visit) {
    const std::size_t workers = isLongForm() ? 4 : 2;
    std::atomic<std::size_t> next = 0;
    std::vector<std::jthread> threads;
    for (std::size_t worker = 0; worker < workers; ++worker) {
        threads.emplace_back([&] {
            for (std::size_t mine = next++; mine < count; mine = next++) {
                visit(mine);
            }
        });
    }
}

std::vector<std::size_t> spread(std::size_t count, std::size_t most) {
    std::vector<std::size_t> numbers;
    const std::size_t wanted = std::min(count, most);
    if (wanted == 1) {
        return {(count + 1) / 2};
    }
    for (std::size_t index = 0; index < wanted; ++index) {
        numbers.push_back(1 + index * (count - 1) / (wanted - 1));
    }
    return numbers;
}

std::size_t mostPoints(std::size_t shortForm) {
    const char* const given = std::getenv("VX_SWEEP_MOST");
    constexpr std::size_t kAll = 1'000'000;
    const std::size_t longForm = given != nullptr ? std::stoul(given) : kAll;
    return isLongForm() ? longForm : shortForm;
}

}  // namespace vxtest
