#pragma once

#include <chrono>
#include <iostream>
#include <string>
#include <utility>

#include "tests/support/machine/long_form.h"

namespace vxtest {

/// Counts the points of a sweep. The destructor prints one line with their number: `sweep NAME: N points,
/// NOTE, S s`.
class SweepPoints {
 public:
    explicit SweepPoints(std::string name) : name_(std::move(name)) {}
    SweepPoints(const SweepPoints&) = delete;
    SweepPoints& operator=(const SweepPoints&) = delete;
    ~SweepPoints() {
        using Seconds = std::chrono::duration<double>;
        std::cout << "sweep " << name_ << ": " << count_ << " points, " << note_
                  << (note_.empty() ? "" : ", ") << Seconds(std::chrono::steady_clock::now() - begin_).count()
                  << " s\n";
    }

    /// One more point was tried.
    void tried() { ++count_; }
    int count() const { return count_; }
    /// Further text for the line, such as the kind of the points.
    void note(std::string text) { note_ = std::move(text); }

 private:
    std::string name_;
    std::string note_;
    int count_ = 0;
    std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

}  // namespace vxtest
