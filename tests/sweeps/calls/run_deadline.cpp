#include "run_deadline.h"

#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace vxtest {

namespace {

constexpr unsigned kSeconds = 60;

std::array<char, 256> sentence;

void sayThatItHangs(int) {
    [[maybe_unused]] const auto written = write(STDERR_FILENO, sentence.data(), std::strlen(sentence.data()));
    std::abort();
}

}  // namespace

RunDeadline::RunDeadline(const std::string& point) {
    std::snprintf(sentence.data(), sentence.size(), "the run does not end: %s\n", point.c_str());
    std::signal(SIGALRM, sayThatItHangs);
    alarm(kSeconds);
}

RunDeadline::~RunDeadline() {
    alarm(0);
}

}  // namespace vxtest
