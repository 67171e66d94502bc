#pragma once

#include <sys/types.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace vxtest {

/// A program to run, without a shell.
struct Program {
    std::vector<std::string> command;                ///< the program, searched on the PATH, and its arguments
    std::map<std::string, std::string> environment;  ///< added to that of the test
    std::filesystem::path workingDirectory;          ///< empty: that of the test
    std::string input;                               ///< what the program reads from standard input
    std::chrono::milliseconds timeLimit = std::chrono::seconds(30);
};

/// How a program ended.
struct Finished {
    int status =
        -1;  ///< as a shell gives it: the exit status, or 128 and the signal; 127 if it could not start
    bool timedOut = false;  ///< it was killed because its time was over
    std::string output;
    std::string errors;
};

/// Runs the program to its end.
Finished run(const Program& program);

/// The text with every sequence of blanks and line breaks replaced by one blank, so that its wrapping does
/// not matter.
std::string unwrapped(const std::string& text);

/// A program that runs in parallel to the test. The destructor kills it if it is still running.
class RunningProcess {
 public:
    explicit RunningProcess(const Program& program);
    RunningProcess(const RunningProcess&) = delete;
    RunningProcess& operator=(const RunningProcess&) = delete;
    ~RunningProcess();

    pid_t id() const { return process_; }
    void signal(int number) const;

    /// Waits until the standard output so far holds `text`. False when the time limit or the program ends
    /// first.
    bool waitForOutput(const std::string& text);

    /// Waits for the end of the program, or of its time limit, which counts from the start.
    Finished wait();

 private:
    struct Stream {
        int descriptor = -1;
        std::string* text = nullptr;
    };
    bool readMore();
    void readFrom(Stream& stream);
    void reap();

    Finished finished_;
    Stream output_;
    Stream errors_;
    pid_t process_ = -1;
    std::chrono::steady_clock::time_point deadline_;
};

}  // namespace vxtest
