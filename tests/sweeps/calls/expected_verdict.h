#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/sweeps/calls/call_rules.h"

namespace vxtest {

/// What a run must report, known from the calls that it made and the answers that it got: the rules of
/// call_rules.h, call by call. Not for several threads at once.
class ExpectedVerdict {
 public:
    /// `stale` is what the result list holds before the run.
    ExpectedVerdict(Direction direction, std::string stale);

    /// The run made the call. Status: what was answered instead of the work.
    void called(const std::string& call, const std::string& arguments, std::optional<int> status);
    /// The category cannot succeed, for what a call gave is of no use to it.
    void fail(const std::string& category) { failed_.insert(category); }
    /// The list, when it is read next, holds this.
    void listBecomes(std::string content);
    /// The setting does not travel, and nobody reports it.
    void lose(const std::string& setting) { lostSettings_.insert(setting); }

    std::string results() const;
    int progress() const { return progress_; }
    const std::set<std::string>& lostSettings() const { return lostSettings_; }
    /// The settings whose reading succeeded without giving a value.
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
