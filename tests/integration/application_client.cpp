// A program in a television that uses applications as a cloning application does. The first argument is the
// action; the answer is one line on standard output.

#include <signal.h>

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/aul.h"
#include "platform/message_port.h"

namespace {

using Arguments = std::vector<std::string>;
using namespace std::chrono_literals;

constexpr const char* kPort = "VxCloneMessagePort";
constexpr auto kPatience = 10s;
constexpr auto kBetweenLooks = 2ms;

/// Whether the condition becomes true before the time limit.
bool comesTrue(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(kBetweenLooks);
    }
    return true;
}

struct Reply {
    std::mutex mutex;
    std::condition_variable arrived;
    std::string text;
};

void receive(int, const char* application, const char*, bool, bundle* message, void* data) {
    auto& reply = *static_cast<Reply*>(data);
    char* value = nullptr;
    bundle_get_str(message, "response_clone", &value);
    const std::lock_guard lock(reply.mutex);
    reply.text = std::string(application) + ": " + (value != nullptr ? value : "(no entry)");
    reply.arrived.notify_all();
}

int launch(const std::string& application, const Arguments& entries) {
    bundle* const content = bundle_create();
    for (std::size_t at = 0; at + 1 < entries.size(); at += 2) {
        bundle_add(content, entries[at].c_str(), entries[at + 1].c_str());
    }
    const int process = aul_launch_app(application.c_str(), content);
    bundle_free(content);
    return process;
}

bool isRunning(const std::string& application) {
    return aul_app_is_running(application.c_str()) == 1;
}

std::string running(const Arguments& given) {
    return std::to_string(aul_app_is_running(given.at(0).c_str()));
}

std::string start(const Arguments& given) {
    return std::to_string(launch(given.at(0), {given.begin() + 1, given.end()}));
}

std::string await(const Arguments& given) {
    return comesTrue([&] { return isRunning(given.at(0)); }) ? "runs" : "does not run";
}

std::string awaitEnd(const Arguments& given) {
    return comesTrue([&] { return !isRunning(given.at(0)); }) ? "ended" : "runs";
}

/// Launches the application and stays until it has ended.
std::string stay(const Arguments& given) {
    std::cout << launch(given.at(0), {}) << std::endl;
    return awaitEnd(given);
}

/// Kills the application in any session.
bool kill(const std::string& application) {
    const std::string television = std::getenv("VXTV_TELEVISION");
    std::ofstream requests(television + "/run/app." + application + ".requests");
    requests << static_cast<char>(SIGKILL) << std::flush;
    return requests.good();
}

/// Launches the application, kills it, and reports for how many milliseconds it still seemed to run.
std::string killed(const Arguments& given) {
    const int process = launch(given.at(0), {});
    if (process < 1 || !isRunning(given.at(0)) || !kill(given.at(0))) {
        return "not launched";
    }
    const auto begin = std::chrono::steady_clock::now();
    if (!comesTrue([&] { return !isRunning(given.at(0)); })) {
        return "still runs";
    }
    const auto taken = std::chrono::steady_clock::now() - begin;
    return std::to_string(std::chrono::duration_cast<std::chrono::milliseconds>(taken).count());
}

/// Launches the application, sends it a request with a path, and reports its answer.
std::string ask(const Arguments& given) {
    const char* const application = given.at(0).c_str();
    static Reply reply;
    const int port = message_port_register_local_port(kPort, receive, &reply);
    launch(given.at(0), {"mode", "clone"});
    const bool isThere = comesTrue([&] {
        bool exists = false;
        return message_port_check_remote_port(application, kPort, &exists) == 0 && exists;
    });
    if (port < 0 || !isThere) {
        return "(no port)";
    }
    bundle* const request = bundle_create();
    bundle_add_str(request, "externalRequest", given.at(1).c_str());
    bundle_add_str(request, "path", given.at(2).c_str());
    const int sent = message_port_send_message_with_local_port(application, kPort, request, port);
    bundle_free(request);
    std::unique_lock lock(reply.mutex);
    const auto patience = std::chrono::milliseconds(std::stoi(given.at(3)));
    const bool isAnswered = reply.arrived.wait_for(lock, patience, [&] { return !reply.text.empty(); });
    return sent != 0 ? "(not sent)" : isAnswered ? reply.text : "(no reply)";
}

}  // namespace

int main(int argc, char** argv) {
    const std::map<std::string, std::function<std::string(const Arguments&)>> deeds = {
        {"running", running}, {"launch", start},  {"await", await}, {"await-end", awaitEnd},
        {"stay", stay},       {"killed", killed}, {"ask", ask},
    };
    const Arguments given(argv + 2, argv + argc);
    std::cout << deeds.at(argv[1])(given) << std::endl;
    return 0;
}
