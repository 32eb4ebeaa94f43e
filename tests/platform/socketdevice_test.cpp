// The device calls over a socket, against a peer that answers each request with the packets of a script.
#include "platform/device.h"
#include "tests/support/bytes.h"
#include "tests/support/temproot.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

ByteVector bytes(std::string_view text) {
    return {text.begin(), text.end()};
}

std::int32_t idOf(const ByteVector& request) {
    return request.size() < 8 ? -1 : static_cast<std::int32_t>(little(request, 4, 4));
}

// One packet of an answer: the request's id and `later`, or no id at all, then the bytes.
struct Reply {
    std::optional<std::int32_t> later;
    ByteVector rest;
};
using Step = std::vector<Reply>;  // what the peer sends for one request; after the last step it hangs up

Step answer(std::initializer_list<std::int32_t> words, std::string_view text = {}) {
    return {{0, packet(words, bytes(text))}};
}

class Peer {
  public:
    using Clock = std::chrono::steady_clock;

    // After the steps it sends late answers without a pause up to `flood`.
    Peer(const TempRoot& root, std::vector<Step> steps, std::int32_t openError = 0,
         Clock::time_point flood = {}) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, root.at("/dev/li").c_str(), sizeof address.sun_path - 1);
        listener_ = ::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
        if (::bind(listener_, reinterpret_cast<const sockaddr*>(&address), sizeof address) ||
            ::listen(listener_, 1))
            ADD_FAILURE() << std::strerror(errno);
        thread_ = std::thread([this, steps = std::move(steps), openError, flood] {
            const int connection = ::accept(listener_, nullptr, nullptr);
            requests.push_back(receive(connection));
            send(connection, packet({idOf(requests[0]), openError}));
            for (const Step& step : steps) {
                requests.push_back(receive(connection));
                if (requests.back().empty()) break;
                for (const Reply& reply : step) {
                    const ByteVector& rest = reply.rest;
                    send(connection,
                         reply.later ? packet({idOf(requests.back()) + *reply.later}, rest) : rest);
                }
            }
            std::vector<std::thread> senders;  // so many that the tool always finds an answer
            for (int i = 0; i < 16; ++i) senders.emplace_back([=] { sendLateOnes(connection, flood); });
            for (std::thread& sender : senders) sender.join();
            ::close(connection);
        });
    }
    ~Peer() { finish(); }

    void finish() {
        if (!thread_.joinable()) return;
        ::shutdown(listener_, SHUT_RDWR);
        thread_.join();
        ::close(listener_);
    }

    std::vector<ByteVector> requests;  // to be read after finish()

  private:
    static ByteVector receive(int connection) {
        ByteVector request(70000);
        const ssize_t length = ::recv(connection, request.data(), request.size(), 0);
        request.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
        return request;
    }
    static void sendLateOnes(int connection, Clock::time_point until) {
        const ByteVector late = packet({0, 0, 0, 0});
        while (Clock::now() < until && send(connection, late)) {
        }
    }
    static bool send(int connection, const ByteVector& reply) {
        return ::send(connection, reply.data(), reply.size(), MSG_NOSIGNAL) >= 0;
    }

    int listener_ = -1;
    std::thread thread_;
};

// What came of a request: the result or the error, the message and its length.
std::string call(int descriptor, int timeout = 15) {
    std::string message = "abcdefgh";
    platform::strioctl block{.ic_cmd = 0x4C00, .ic_timout = timeout, .ic_len = 8, .ic_dp = message.data()};
    const int result = platform::device().streamsIoctl(descriptor, platform::I_STR, block);
    return fmt::format("{} {} {}", result < 0 ? std::strerror(errno) : std::to_string(result), message,
                       block.ic_len);
}

// A peer, and a connection to it.
struct Connected {
    explicit Connected(const std::vector<Step>& steps, Peer::Clock::time_point flood = {})
        : peer(root, steps, 0, flood) {}
    ~Connected() { EXPECT_EQ(platform::device().close(descriptor), 0); }
    Connected(const Connected&) = delete;
    Connected& operator=(const Connected&) = delete;

    TempRoot root;
    Peer peer;
    int descriptor = platform::device().open("/dev/li", 2);
};

const std::string good = "0 ABCDEFGH 8";
std::string failure(int error) {
    return fmt::format("{} abcdefgh 8", std::strerror(error));
}

const Reply goodReply{0, packet({0, 0, 8}, bytes("ABCDEFGH"))};

}  // namespace

TEST(SocketDevice, AnswersGoodAndBad) {
    const struct {
        const char* what;
        Step step;
        std::string expected;
    } cases[] = {
        {"whole", {goodReply}, good},
        {"shorter", answer({0, 0, 3}, "ABC"), "0 ABCdefgh 3"},
        {"empty", answer({0, 0, 0}), "0 abcdefgh 0"},
        {"rval", answer({0, 5, 0}), "5 abcdefgh 0"},
        {"error", answer({EACCES, 0, 8}, "ABCDEFGH"), failure(EACCES)},
        {"late first", {{-1, packet({0, 0, 8}, bytes("XXXXXXXX"))}, goodReply}, good},
        {"too long but not ours first", {{1, packet({0, 0, 9}, bytes("XXXXXXXXX"))}, goodReply}, good},
        {"without a message", answer({0, 0}), failure(EPROTO)},
        {"without a whole id", {{std::nullopt, {'x', 'y'}}}, failure(EPROTO)},
        {"no byte", {{std::nullopt, {}}}, failure(EPROTO)},
        {"longer than asked for", answer({0, 0, 9}, "ABCDEFGHI"), failure(EPROTO)},
        {"length of more", answer({0, 0, 8}, "ABCD"), failure(EPROTO)},
        {"length of less", answer({0, 0, 4}, "ABCDEFGH"), failure(EPROTO)},
        {"negative length", answer({0, 0, -8}, "ABCDEFGH"), failure(EPROTO)},
        {"negative error", answer({-1, 0, 8}, "ABCDEFGH"), failure(EPROTO)},
        {"negative result", answer({0, -1, 8}, "ABCDEFGH"), failure(EPROTO)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        Connected to({c.step, {goodReply}});
        EXPECT_EQ(call(to.descriptor), c.expected);
        EXPECT_EQ(call(to.descriptor), good) << "the connection goes on";
        to.peer.finish();
        EXPECT_EQ(to.peer.requests[0], packet({1, 1, 2}));
        EXPECT_EQ(to.peer.requests[1], packet({2, 2, 0x4C00, 15, 8}, bytes("abcdefgh")));
        EXPECT_EQ(to.peer.requests[2], packet({2, 3, 0x4C00, 15, 8}, bytes("abcdefgh")));
    }
}

TEST(SocketDevice, NoAnswerInTimeLeavesTheConnectionUsable) {
    const Connected to({{}, {{-1, goodReply.rest}, {0, packet({0, 0, 1}, bytes("Z"))}}});
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(call(to.descriptor, 1), failure(ETIME));
    EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(990));
    EXPECT_EQ(call(to.descriptor, 1), "0 Zbcdefgh 1") << "the late answer is dropped";
}

TEST(SocketDevice, AFloodOfLateAnswersEndsAtTheDeadline) {
    const auto begin = std::chrono::steady_clock::now();
    const Connected to({{}}, begin + std::chrono::seconds(4));
    EXPECT_EQ(call(to.descriptor, 1), failure(ETIME));
    const auto waited = std::chrono::steady_clock::now() - begin;
    EXPECT_GE(waited, std::chrono::milliseconds(990));
    EXPECT_LT(waited, std::chrono::milliseconds(2500));
}

TEST(SocketDevice, APeerThatHungUpIsGoneForGood) {
    const Connected to({Step()});  // takes the request and closes
    EXPECT_FALSE(platform::device().hungUp(to.descriptor));
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(call(to.descriptor), failure(ENXIO));
        EXPECT_TRUE(platform::device().hungUp(to.descriptor));
    }
}

TEST(SocketDevice, TheLargestMessageFitsBothWays) {
    Connected to({answer({0, 0, 65535}, std::string(65535, 'y'))});
    std::string message(65536, 'x');
    platform::strioctl block{.ic_cmd = 0x4C00, .ic_timout = 0, .ic_len = 65536, .ic_dp = message.data()};
    EXPECT_EQ(platform::device().streamsIoctl(to.descriptor, platform::I_STR, block), -1);
    EXPECT_EQ(errno, EINVAL);
    block.ic_len = 65535;
    EXPECT_EQ(platform::device().streamsIoctl(to.descriptor, platform::I_STR, block), 0)
        << std::strerror(errno);
    EXPECT_EQ(message, std::string(65535, 'y') + "x");
    EXPECT_EQ(platform::device().streamsIoctl(to.descriptor, 0x5301, block), -1) << "no call but I_STR";
    EXPECT_EQ(errno, EINVAL);
    to.peer.finish();
    EXPECT_EQ(to.peer.requests[1].size(), 20U + 65535U);
}

TEST(SocketDevice, OpenFailures) {
    const auto expectError = [](int error, std::string_view path = "/dev/li") {
        errno = 0;
        EXPECT_EQ(platform::device().open(path, 2), -1);
        EXPECT_EQ(errno, error) << std::strerror(error);
    };
    const TempRoot root;
    expectError(ENOENT);
    expectError(ENODEV, "/dev");
    Peer refusing(root, {}, EACCES);
    expectError(EACCES);
    refusing.finish();
    expectError(ENXIO);  // the socket is there, but nobody listens

    const std::string deep = "/" + std::string(100, 'd');
    std::filesystem::create_directory_symlink(root.at("/dev"), root.at(deep));
    testing::internal::CaptureStderr();
    expectError(ENAMETOOLONG, deep + "/li");
    const std::string told = testing::internal::GetCapturedStderr();
    EXPECT_NE(told.find(root.at(deep).string() + "/li: the path is longer than"), std::string::npos) << told;
}

TEST(SystemDevice, ACharacterDeviceIsUsedAsItIsButNeverAsDescriptorZero) {
    const int input = ::dup(0);
    ::close(0);
    const int descriptor = platform::device().open("/dev/null", 0);
    EXPECT_GT(descriptor, 0);
    EXPECT_FALSE(platform::device().hungUp(descriptor));
    EXPECT_EQ(call(descriptor), failure(ENOTTY));
    EXPECT_EQ(platform::device().close(descriptor), 0);
    if (input >= 0) {
        ::dup2(input, 0);
        ::close(input);
    }
}
