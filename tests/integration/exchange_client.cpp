// Exchanges with one application again and again, by the library's own client, and says what that cost:
//
//     vx-exchange-client ANSWERING_PROGRAM ROUNDS
//
// One line: how many exchanges succeeded, and by how much descriptors, threads and KiB of memory have grown.

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "VxMessagePortAPI.h"

namespace {

constexpr const char* kApplication = "org.example.answering";
// Until all pools and buffers have their final size.
constexpr int kWarmUp = 500;

long entriesIn(const char* folder) {
    return std::distance(std::filesystem::directory_iterator(folder), {});
}

long residentKib() {
    long pages = 0;
    std::ifstream("/proc/self/statm") >> pages >> pages;
    return pages * (sysconf(_SC_PAGESIZE) / 1024);
}

int succeeding(int rounds) {
    int good = 0;
    for (int round = 0; round < rounds; ++round) {
        good += VxMessagePortAPI::Backup(kApplication) ? 1 : 0;
    }
    return good;
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 3) {
        return 2;
    }
    const pid_t application = fork();
    if (application == 0) {
        setenv("VXTV_APP_ID", kApplication, 1);
        execl(arguments[1], arguments[1], nullptr);
        _exit(127);
    }
    succeeding(kWarmUp);
    const long descriptors = entriesIn("/proc/self/fd");
    const long threads = entriesIn("/proc/self/task");
    const long memory = residentKib();
    const int good = succeeding(std::atoi(arguments[2]));
    std::printf("%d good, %+ld descriptors, %+ld threads, %+ld KiB\n", good,
                entriesIn("/proc/self/fd") - descriptors, entriesIn("/proc/self/task") - threads,
                residentKib() - memory);
    kill(application, SIGKILL);
    waitpid(application, nullptr, 0);
    return 0;
}
