#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/sweeps/calls/call_rules.h"

namespace vxtest {

/// The expected report of a run, computed from its calls and their results with the rules of call_rules.h.
/// Threads: one at a time.
class ExpectedVerdict {
 public:
    /// `stale` is the content of the result list before the run.
    ExpectedVerdict(Direction direction, std::string stale);

    /// The run made the call. `status` is the result if it did not do its work.
    void called(const std::string& call, const std::string& arguments, std::optional<int> status);
    /// The category cannot succeed, because it cannot use the value that a call returned.
    void fail(const std::string& category) { failed_.insert(category); }
    /// The next read of the list returns this.
    void listBecomes(std::string content);
    /// The setting is not saved, and nobody reports this.
    void lose(const std::string& setting) { lostSettings_.insert(setting); }

    std::string results() const;
    int progress() const { return progress_; }
    const std::set<std::string>& lostSettings() const { return lostSettings_; }
    /// The settings that were read successfully but had no value.
    const std::set<std::string>& emptySettings() const { return emptySettings_; }
    /// The calls that have no rule.
    const std::vector<std::string>& unknown() const { return unknown_; }

 private:
    void apply(const CallRule& rule, const std::string& arguments, int status);
    void follow(const std::string& call, const std::string& arguments, bool done);
    std::vector<std::string> entries() const;

    Direction direction_;
    std::string before_;          ///< what stands before the entries
    std::size_t firstEntry_ = 0;  ///< the first that stands after it
    std::size_t reports_ = 0;     ///< how often the list was read
    std::set<std::size_t> lostReports_;
    std::set<std::string> failed_;
    std::set<std::string> missing_;
    std::set<std::string> lostSettings_;
    std::set<std::string> emptySettings_;
    int applications_ = 2;
    int exchange_ = -1;
    bool portRegistered_ = false;
    std::set<int> failedExchanges_;
    std::map<int, int> unseenPorts_;
    int progress_ = -1;
    int progressWrites_ = 0;
    std::vector<std::string> unknown_;
};

}  // namespace vxtest
