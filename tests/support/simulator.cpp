#include "tests/support/simulator.h"

#include "platform/root.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sstream>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

// A sanitized build on a busy machine needs a while to end; a healthy one never gets near this.
constexpr std::chrono::seconds patience{30};

std::string readAll(int from) {
    std::string text;
    char part[4096];
    for (ssize_t length; (length = ::read(from, part, sizeof part)) > 0;)
        text.append(part, static_cast<std::size_t>(length));
    return text;
}

int waitFor(pid_t pid) {
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0)
        if (errno != EINTR) return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace

Finished runSimulator(const std::string& line, const std::string& behind) {
    std::FILE* const errors =
        ::popen((behind + " " TVSIM_PROGRAM " " + line + " 2>&1 >/dev/null").c_str(), "r");
    if (!errors) throw std::runtime_error("no pipe");
    std::string text = readAll(::fileno(errors));
    return {WEXITSTATUS(::pclose(errors)), std::move(text)};
}

void writeSampleConfiguration(const TempRoot& root) {
    fs::copy(TV_SAMPLE_DIRECTORY, root.path(),
             fs::copy_options::recursive | fs::copy_options::overwrite_existing);
}

Simulator::Simulator(const std::vector<std::string>& options)
    : commandNode_(platform::hostPath("/dev/li.ctl").text) {
    std::string program = TVSIM_PROGRAM;
    std::vector<char*> argv{program.data()};
    for (const std::string& option : options) argv.push_back(const_cast<char*>(option.c_str()));
    argv.push_back(nullptr);
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    const int error = ::posix_spawn(&pid_, argv[0], &actions, nullptr, argv.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    // Lines of other origin (the parameter file's reader prints some) may come first. One that hangs here is
    // waited for until the test's time limit.
    std::FILE* const out = ::fdopen(ends[0], "r");
    char line[300] = "";
    while (std::fgets(line, sizeof line, out) && !std::string_view(line).starts_with("ready ")) {
    }
    const bool ready = !std::feof(out);
    std::fclose(out);
    if (error || !ready) {
        if (!error) ::kill(pid_, SIGKILL), waitFor(pid_);
        throw std::runtime_error("the simulator did not get ready");
    }
}

Simulator::~Simulator() {
    if (pid_ < 0) return;
    ::kill(pid_, SIGTERM);
    const auto deadline = std::chrono::steady_clock::now() + patience;
    int status = 0;
    while (::waitpid(pid_, &status, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > deadline) ::kill(pid_, SIGKILL);
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    // A sanitizer's finding, or a crash after the last answer, must not pass.
    EXPECT_EQ(status, 0) << "the simulator did not end well";
}

int Simulator::wait() {
    const int status = waitFor(pid_);
    pid_ = -1;
    return status;
}

std::string Simulator::ctl(std::string_view line) const {
    std::string command;
    std::istringstream words{std::string(line)};
    for (std::string word; words >> word;) command.append(word).push_back('\0');

    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    commandNode_.copy(address.sun_path, sizeof address.sun_path - 1);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    std::string reply;
    if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
        ::send(socket, command.data(), command.size(), MSG_NOSIGNAL);
        ::shutdown(socket, SHUT_WR);
        reply = readAll(socket);
    }
    ::close(socket);
    if (reply.empty()) throw std::runtime_error(std::string(line) + ": the simulator does not answer");
    if (reply[0] != '0') throw std::runtime_error(std::string(line) + ": " + reply.substr(1));
    if (reply.ends_with('\n')) reply.pop_back();
    return reply.substr(1);
}
