#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <thread>

#include "host/check/child_process.h"

namespace zam::host {
namespace {

constexpr int kNotStarted = 127;

[[noreturn]] void become(const std::vector<char*>& arguments) {
    const int nowhere = open("/dev/null", O_RDWR);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nowhere, stream);
    execv(arguments[0], arguments.data());
    _exit(kNotStarted);
}

ChildEnd end_of(int status) {
    if (WIFSIGNALED(status)) {
        const int signal = WTERMSIG(status);
        return {ChildEnd::How::crashed, 0,
                "signal " + std::to_string(signal) + " (" + strsignal(signal) + ")"};
    }
    return {ChildEnd::How::exited, WEXITSTATUS(status), ""};
}

}  // namespace

ChildEnd run_child(const std::vector<std::string>& command, std::chrono::milliseconds limit) {
    std::vector<char*> arguments;
    for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    const pid_t child = fork();
    if (child < 0) return {ChildEnd::How::not_started, 0, std::strerror(errno)};
    if (child == 0) become(arguments);
    const auto deadline = std::chrono::steady_clock::now() + limit;
    int status = 0;
    for (;;) {
        const pid_t ended = waitpid(child, &status, WNOHANG);
        if (ended == child) return end_of(status);
        if (ended < 0 && errno != EINTR) return {ChildEnd::How::not_started, 0, std::strerror(errno)};
        if (std::chrono::steady_clock::now() >= deadline) break;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    kill(child, SIGKILL);
    waitpid(child, &status, 0);
    return {ChildEnd::How::timed_out, 0, ""};
}

void prepare_for_crashes() {
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
}

unsigned long this_process() { return static_cast<unsigned long>(getpid()); }

}  // namespace zam::host
