// The program as a process.
#pragma once

#include "tests/support/confined.h"
#include "tests/support/simulator.h"
#include "tests/support/temproot.h"

#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

inline void waitABit() {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
}

// Waits until the condition holds; false after so many seconds.
inline bool soon(const std::function<bool()>& condition, double seconds = 20) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        waitABit();
    }
    return true;
}

inline bool has(const std::string& text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

// Waits until the driver has been asked for this.
inline bool wasAsked(const Simulator& driver, std::string_view request) {
    return soon([&] { return has(driver.ctl("log all"), request); });
}

// The name of this client in the parameter file, from 1.
inline std::string nameOfClient(const TempRoot& root, int client) {
    const std::string text = root.read("/etc/atm/tvconf");
    const std::size_t section = text.find("[LEC" + std::to_string(client - 1));
    std::istringstream words(text.substr(text.find("ElanName", section)));
    std::string word;
    words >> word >> word >> word;
    return word;
}

// The sample configuration and a driver of one adapter, below a root of their own.
struct Place {
    SampleRoot root;
    Simulator simulator{{"--frozen", "--adapters", "1"}};
};

// The tool, running in the root. Where the kernel can see to that, it writes only there and in /dev. What it
// prints goes to a file, or to a descriptor of the caller.
class Tool {
  public:
    Tool(const TempRoot& root, std::vector<std::string> arguments, int output = -1) : root_(root) {
        arguments.insert(arguments.begin(), TARVOLIN_PROGRAM);
        process_ = ::fork();
        if (process_ != 0) return;
        const int file =
            output >= 0 ? output : ::open(root.at("/output").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        ::dup2(file, 1);
        ::dup2(file, 2);
        writesOnlyBelow({root.path(), "/dev"});
        if (::chdir(root.path().c_str()) != 0) ::_exit(126);
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
    std::string output() const { return root_.read("/output"); }

    bool prints(std::string_view text) const {
        return soon([&] { return has(output(), text); });
    }

    pid_t process() const { return process_; }
    void signal(int number) const { ::kill(process_, number); }

    // As exitStatus(), or -1 when it runs on for so long.
    int exitStatusWithin(std::chrono::seconds patience) {
        siginfo_t ended{};
        const auto running = [&] {
            return ::waitid(P_PID, static_cast<id_t>(process_), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 &&
                   ended.si_pid == 0;
        };
        return soon([&] { return !running(); }, static_cast<double>(patience.count())) ? exitStatus() : -1;
    }

    // Its status, or 128 + the signal that ended it; waits for the end.
    int exitStatus() {
        int status = 0;
        ::waitpid(process_, &status, 0);
        process_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }

  private:
    const TempRoot& root_;
    pid_t process_ = -1;
};
