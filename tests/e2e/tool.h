// The program as a process.
#pragma once

#include "tests/support/temproot.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

// The tool, running, with what it prints going to a file, or to a descriptor of the caller.
class Tool {
  public:
    Tool(const TempRoot& root, std::vector<std::string> arguments, int output = -1)
        : output_(root.path() / "output") {
        arguments.insert(arguments.begin(), TARVOLIN_PROGRAM);
        process_ = ::fork();
        if (process_ != 0) return;
        const int file = output >= 0 ? output : ::open(output_.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        ::dup2(file, 1);
        ::dup2(file, 2);
        std::vector<char*> words;
        for (std::string& argument : arguments) words.push_back(argument.data());
        words.push_back(nullptr);
        ::execv(words[0], words.data());
        ::_exit(127);
    }
    ~Tool() {
        if (process_ > 0) {
            ::kill(process_, SIGKILL);
            ::waitpid(process_, nullptr, 0);
        }
    }
    Tool(const Tool&) = delete;
    Tool& operator=(const Tool&) = delete;

    // The text that it has printed so far.
    std::string output() const {
        std::ifstream file(output_);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

    // Waits until the output holds the text.
    bool prints(std::string_view text) const {
        for (int i = 0; i < 1000; ++i) {
            if (output().find(text) != std::string::npos) return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        return false;
    }

    void signal(int number) const { ::kill(process_, number); }

    // As exitStatus(), or -1 when it runs on for so long.
    int exitStatusWithin(std::chrono::seconds patience) {
        const auto deadline = std::chrono::steady_clock::now() + patience;
        siginfo_t ended{};
        while (::waitid(P_PID, static_cast<id_t>(process_), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 &&
               ended.si_pid == 0) {
            if (std::chrono::steady_clock::now() > deadline) return -1;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return exitStatus();
    }

    // Its status, or 128 + the signal that ended it; waits for the end.
    int exitStatus() {
        int status = 0;
        ::waitpid(process_, &status, 0);
        process_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }

  private:
    std::filesystem::path output_;
    pid_t process_ = -1;
};
