#include "tests/support/machine/process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "tests/support/machine/exit_status.h"

namespace vxtest {

namespace {

/// The input is in an unnamed file, so that no thread has to write it to the program.
int fileWith(const std::string& content) {
    std::FILE* const file = std::tmpfile();
    if (file == nullptr) return -1;
    std::fwrite(content.data(), 1, content.size(), file);
    std::rewind(file);
    const int descriptor = fcntl(fileno(file), F_DUPFD_CLOEXEC, 0);
    std::fclose(file);
    return descriptor;
}

[[noreturn]] void become(const Program& program, int input, int output, int errors) {
    dup2(input, STDIN_FILENO);
    dup2(output, STDOUT_FILENO);
    dup2(errors, STDERR_FILENO);
    const auto& directory = program.workingDirectory;
    if (!directory.empty() && chdir(directory.c_str()) != 0) {
        std::perror(directory.c_str());
        _exit(kCannotStart);
    }
    for (const auto& [name, value] : program.environment) setenv(name.c_str(), value.c_str(), 1);
    std::vector<char*> arguments;
    for (const auto& argument : program.command) arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    execvp(arguments[0], arguments.data());
    std::perror(arguments[0]);
    _exit(kCannotStart);
}

}  // namespace

std::string unwrapped(const std::string& text) {
    std::istringstream words(text);
    std::string line;
    for (std::string word; words >> word;) {
        line += (line.empty() ? "" : " ") + word;
    }
    return line;
}

Finished run(const Program& program) {
    return RunningProcess(program).wait();
}

RunningProcess::RunningProcess(const Program& program)
    : deadline_(std::chrono::steady_clock::now() + program.timeLimit) {
    std::array<int, 2> output{};
    std::array<int, 2> errors{};
    const int input = fileWith(program.input);
    if (input < 0 || pipe2(output.data(), O_CLOEXEC) != 0 || pipe2(errors.data(), O_CLOEXEC) != 0) {
        std::perror("cannot start a program");
        std::abort();
    }
    process_ = fork();
    if (process_ == 0) become(program, input, output[1], errors[1]);
    for (const int descriptor : {input, output[1], errors[1]}) close(descriptor);
    output_ = {output[0], &finished_.output};
    errors_ = {errors[0], &finished_.errors};
}

RunningProcess::~RunningProcess() {
    if (process_ > 0) {
        signal(SIGKILL);
        reap();
    }
    for (const auto& stream : {output_, errors_}) {
        if (stream.descriptor >= 0) close(stream.descriptor);
    }
}

void RunningProcess::signal(int number) const {
    if (process_ > 0) kill(process_, number);
}

bool RunningProcess::waitForOutput(const std::string& text) {
    while (finished_.output.find(text) == std::string::npos) {
        if (!readMore()) return false;
    }
    return true;
}

Finished RunningProcess::wait() {
    while (readMore()) continue;
    finished_.timedOut = output_.descriptor >= 0 || errors_.descriptor >= 0;
    if (finished_.timedOut) signal(SIGKILL);
    reap();
    return finished_;
}

/// False if both streams are at their end, or the time is over.
bool RunningProcess::readMore() {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline_ - std::chrono::steady_clock::now());
    if (left.count() <= 0 || (output_.descriptor < 0 && errors_.descriptor < 0)) return false;
    std::array<pollfd, 2> ready = {pollfd{output_.descriptor, POLLIN, 0},
                                   pollfd{errors_.descriptor, POLLIN, 0}};
    const int count = poll(ready.data(), ready.size(), static_cast<int>(left.count()));
    if (count <= 0) return count < 0 && errno == EINTR;
    if (ready[0].revents != 0) readFrom(output_);
    if (ready[1].revents != 0) readFrom(errors_);
    return true;
}

void RunningProcess::readFrom(Stream& stream) {
    std::array<char, 65536> chunk;
    const auto length = read(stream.descriptor, chunk.data(), chunk.size());
    if (length > 0) {
        stream.text->append(chunk.data(), static_cast<std::size_t>(length));
    } else {
        close(stream.descriptor);
        stream.descriptor = -1;
    }
}

void RunningProcess::reap() {
    int status = 0;
    while (waitpid(process_, &status, 0) < 0 && errno == EINTR) continue;
    finished_.status = exitStatusOf(status);
    process_ = -1;
}

}  // namespace vxtest
