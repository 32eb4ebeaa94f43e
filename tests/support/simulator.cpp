#include "tests/support/simulator.h"

#include "platform/root.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <iterator>
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

struct Pipe {
    int ends[2] = {-1, -1};
    Pipe() {
        if (::pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    }
    ~Pipe() {
        closeEnd(0);
        closeEnd(1);
    }
    void closeEnd(int end) {
        if (ends[end] >= 0) ::close(ends[end]);
        ends[end] = -1;
    }
};

std::string readAll(int from) {
    std::string text;
    char part[4096];
    for (ssize_t length; (length = ::read(from, part, sizeof part)) > 0;)
        text.append(part, static_cast<std::size_t>(length));
    return text;
}

std::vector<std::string> wordsOf(std::string_view line) {
    std::istringstream in{std::string(line)};
    return {std::istream_iterator<std::string>(in), {}};
}

// Starts the simulator.
pid_t spawn(const std::vector<std::string>& words, Pipe& out, Pipe* err) {
    std::string program = TVSIM_PROGRAM;
    std::vector<char*> argv{program.data()};
    for (const std::string& word : words) argv.push_back(const_cast<char*>(word.c_str()));
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, out.ends[1], STDOUT_FILENO);
    if (err) ::posix_spawn_file_actions_adddup2(&actions, err->ends[1], STDERR_FILENO);
    pid_t pid = -1;
    const int error = ::posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    if (error) throw std::runtime_error(program + " cannot be started");
    out.closeEnd(1);
    if (err) err->closeEnd(1);
    return pid;
}

int waitFor(pid_t pid) {
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0)
        if (errno != EINTR) return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace

Finished runSimulator(std::string_view line) {
    Pipe out, err;
    const pid_t pid = spawn(wordsOf(line), out, &err);
    Finished result;
    result.out = readAll(out.ends[0]);
    result.err = readAll(err.ends[0]);
    result.status = waitFor(pid);
    return result;
}

void writeSampleConfiguration(const TempRoot& root) {
    fs::copy(TV_SAMPLE_DIRECTORY, root.path(),
             fs::copy_options::recursive | fs::copy_options::overwrite_existing);
}

Simulator::Simulator(const std::vector<std::string>& options)
    : commandNode_(platform::hostPath("/dev/li.ctl").text) {
    Pipe out;
    pid_ = spawn(options, out, nullptr);
    // Lines of other origin (the parameter file's reader prints some) may come first. One that hangs here
    // is waited for until the test's time limit.
    for (std::string line; !line.starts_with("ready ") || !line.ends_with('\n');) {
        if (line.ends_with('\n')) line.clear();
        char c = 0;
        if (::read(out.ends[0], &c, 1) != 1) {
            ::kill(pid_, SIGKILL);
            waitFor(pid_);
            throw std::runtime_error("the simulator did not get ready");
        }
        line += c;
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
    for (const std::string& word : wordsOf(line)) command.append(word).push_back('\0');

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
