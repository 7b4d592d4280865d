#include "program_runner.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <stdexcept>

namespace velmora {

namespace {

[[noreturn]] void become_program(const Launch& how, int input, int output) {
    ::dup2(input, STDIN_FILENO);
    ::dup2(output, STDERR_FILENO);
    if (how.close_output) {
        ::close(STDOUT_FILENO);
    } else if (how.broken_output) {
        int ends[2];
        if (::pipe(ends) != 0) ::_exit(99);
        ::dup2(ends[1], STDOUT_FILENO);
        ::close(ends[0]);
        ::close(ends[1]);
    } else {
        ::dup2(output, STDOUT_FILENO);
    }
    ::close(input);
    ::close(output);
    // As from a shell: tests in the background have the interrupt ignored, under nohup the loss of the
    // terminal.
    std::signal(SIGPIPE, SIG_DFL);
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGHUP, SIG_DFL);
    if (::chdir(how.folder.c_str()) != 0) ::_exit(99);
    std::vector<char*> argv = {const_cast<char*>(how.program.c_str())};
    for (const std::string& argument : how.arguments) argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    ::execv(argv[0], argv.data());
    ::_exit(99);
}

/// Reads to the end of the output; false when it does not come in time.
bool read_all(int descriptor, pid_t child, const Launch& how, std::string& text) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    bool signaled = how.interrupt_after_text == 0;
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        pollfd event{descriptor, POLLIN, 0};
        if (left.count() <= 0 || ::poll(&event, 1, static_cast<int>(left.count())) <= 0) return false;
        char block[4096];
        const ssize_t n = ::read(descriptor, block, sizeof block);
        if (n <= 0) return true;
        text.append(block, static_cast<std::size_t>(n));
        if (!signaled && text.find(how.wait_for) != std::string::npos) {
            ::kill(child, how.interrupt_after_text);
            signaled = true;
        }
    }
}

}  // namespace

Outcome launch(const Launch& how) {
    int input[2], output[2];
    if (::pipe2(input, O_CLOEXEC) != 0 || ::pipe2(output, O_CLOEXEC) != 0) throw std::runtime_error("pipe");
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(input[1]);
        ::close(output[0]);
        become_program(how, input[0], output[1]);
    }
    ::close(input[0]);
    ::close(output[1]);
    // Short inputs fit the pipe. With a signal to come the input stays open, so that a prompt waits.
    std::signal(SIGPIPE, SIG_IGN);
    EXPECT_EQ(::write(input[1], how.input.data(), how.input.size()), static_cast<ssize_t>(how.input.size()));
    if (how.interrupt_after_text == 0) ::close(input[1]);

    Outcome outcome;
    if (!read_all(output[0], child, how, outcome.text)) {
        ADD_FAILURE() << "The program does not end. It has printed:\n" << outcome.text;
        ::kill(child, SIGKILL);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    outcome.exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    ::close(output[0]);
    if (how.interrupt_after_text != 0) ::close(input[1]);
    return outcome;
}

}  // namespace velmora
