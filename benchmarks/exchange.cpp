// An exchange with a cooperating application, in a virtual television: this runs inside a session.
//
//     bench_exchange running APPLICATION ROUNDS    the median of whole exchanges, in milliseconds
//     bench_exchange answering ROUNDS              the same with an application that answers at once
//     bench_exchange appearing                     from a port's appearance to the request, in milliseconds

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "VXClonePaths.h"
#include "VxMessagePortAPI.h"
#include "platform/message_port.h"

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr const char* kLateApplication = "org.benchmark.late";
// Not a multiple of the library's pause between two checks, and not always the worst case.
constexpr std::chrono::milliseconds kAppearsAfter(1110);

int exchangesWith(const char* application, int rounds) {
    // The caller of the library must create it.
    std::filesystem::create_directories(kCloneDirectory);
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        const auto begin = Clock::now();
        if (!VxMessagePortAPI::Backup(application)) {
            std::fprintf(stderr, "bench_exchange: exchange %d with %s failed\n", round, application);
            return 1;
        }
        times.push_back(Milliseconds(Clock::now() - begin).count());
    }
    std::sort(times.begin(), times.end());
    std::printf("%.3f\n", times.at(times.size() / 2));
    return 0;
}

std::promise<Clock::time_point> asked;

void answerAtOnce(int port, const char* application, const char* portName, bool, bundle*, void*) {
    bundle* const reply = bundle_create();
    bundle_add_str(reply, "response_clone", "success");
    message_port_send_message_with_local_port(application, portName, reply, port);
    bundle_free(reply);
}

void answerAndTell(int port, const char* application, const char* portName, bool trusted, bundle* message,
                   void* data) {
    answerAtOnce(port, application, portName, trusted, message, data);
    asked.set_value(Clock::now());
}

/// The application: its port appears late, and it says how long the request took to find it.
int beLate() {
    std::this_thread::sleep_for(kAppearsAfter);
    if (message_port_register_local_port("VxCloneMessagePort", answerAndTell, nullptr) < 0) {
        return 1;
    }
    const auto appeared = Clock::now();
    std::printf("%.1f\n", Milliseconds(asked.get_future().get() - appeared).count());
    return 0;
}

int beAnswering() {
    if (message_port_register_local_port("VxCloneMessagePort", answerAtOnce, nullptr) < 0) {
        return 1;
    }
    while (true) {
        pause();
    }
}

/// A separate program, because a process has only one application id.
pid_t startApplication(const char* self, const char* mode) {
    const pid_t application = fork();
    if (application == 0) {
        setenv("VXTV_APP_ID", kLateApplication, 1);
        execl("/proc/self/exe", self, mode, nullptr);
        _exit(127);
    }
    return application;
}

int exchangesWithAnAnsweringOne(const char* self, int rounds) {
    const pid_t application = startApplication(self, "answer");
    const int status = exchangesWith(kLateApplication, rounds);
    kill(application, SIGKILL);
    waitpid(application, nullptr, 0);
    return status;
}

int exchangeWithALateOne(const char* self) {
    const pid_t application = startApplication(self, "late");
    const bool good = VxMessagePortAPI::Backup(kLateApplication);
    int status = 0;
    return application > 0 && waitpid(application, &status, 0) == application && status == 0 && good ? 0 : 1;
}

}  // namespace

int main(int count, char** arguments) {
    const std::string what = count > 1 ? arguments[1] : "";
    if (what == "running" && count == 4) {
        return exchangesWith(arguments[2], std::atoi(arguments[3]));
    }
    if (what == "answering" && count == 3) {
        return exchangesWithAnAnsweringOne(arguments[0], std::atoi(arguments[2]));
    }
    if (what == "answer" && count == 2) {
        return beAnswering();
    }
    if (what == "appearing" && count == 2) {
        return exchangeWithALateOne(arguments[0]);
    }
    if (what == "late" && count == 2) {
        return beLate();
    }
    std::fputs("usage: bench_exchange running APPLICATION ROUNDS | answering ROUNDS | appearing\n", stderr);
    return 2;
}
