// Injected faults, privilege, and clients that do not keep to the rules.
#include "running.h"
#include "stranger.h"

#include <random>

namespace {

constexpr char lecState[] = "1400 0100 00 00 2000 1000 0100 0000 adde";
constexpr char lecTable[] = "1400 0400 00 00 a000 1000 0100 0200 adde";

RawBytes ioctlPacket(std::int32_t id, std::string_view header) {
    RawBytes message = hex(header);
    message.resize(little(message, 6, 2));
    return packet({2, id, 0x4c00, 0, static_cast<std::int32_t>(message.size())}, message);
}

}  // namespace

TEST(SimFaults, EachKindStrikesAsToldAndOnlyThen) {
    Running sim;
    sim.ctl("clock step 60");
    RawClient client(sim.node());
    const auto good = client.call(lecTable);
    ASSERT_EQ(good.nRow(), 2);
    const auto reply = [](std::int32_t id, const RawBytes& message, std::int32_t error = 0) {
        return packet({id, error, 0, static_cast<std::int32_t>(message.size())}, message);
    };
    const auto with = [&](std::size_t offset, std::string_view word, RawBytes message) {
        const RawBytes value = hex(word);
        std::copy(value.begin(), value.end(), message.begin() + static_cast<std::ptrdiff_t>(offset));
        return message;
    };
    RawBytes asked = hex(lecTable);
    asked.resize(160);
    const struct {
        const char* fault;
        std::function<RawBytes(std::int32_t id)> packet;
    } cases[] = {
        {"resp 77", [&](auto id) { return reply(id, with(14, "4d00", asked)); }},
        {"errno EIO", [&](auto id) { return reply(id, {}, EIO); }},
        {"short 0", [&](auto id) { return reply(id, {}); }},
        {"nrow 65535", [&](auto id) { return reply(id, with(12, "ffff", good.message)); }},
        {"dead", [&](auto id) { return reply(id, asked); }},
        {"malformed short", [&](auto id) { return slice(reply(id, good.message), 0, 6); }},
        {"malformed long", [&](auto id) { return reply(id, RawBytes(160 + 32, 0xee)); }},
        {"malformed lie", [&](auto id) { return with(12, "a100", reply(id, good.message)); }},
        {"malformed id", [&](auto id) { return reply(id + 1, good.message); }},
    };
    for (const auto& c : cases) {
        sim.ctl(std::string("fault lec.table nth 2 ") + c.fault);
        EXPECT_EQ(client.call(lecState).resp(), 0) << c.fault;  // another request
        EXPECT_EQ(client.call(lecTable).message, good.message) << c.fault;
        client.ask(asked);
        EXPECT_EQ(client.receive().value(), c.packet(client.id)) << c.fault;
        EXPECT_EQ(client.call(lecTable).message, good.message) << c.fault;  // spent
    }
}

TEST(SimFaults, LateAndHangUp) {
    Running sim;
    RawClient client(sim.node()), other(sim.node());
    RawBytes query = hex(lecState);
    query.resize(32);
    sim.ctl("fault any nth 1 late 400");
    const auto asked = std::chrono::steady_clock::now();
    client.ask(query);
    EXPECT_EQ(other.call(lecState).resp(), 0);  // the others are not kept waiting
    EXPECT_LT(std::chrono::steady_clock::now() - asked, std::chrono::milliseconds(400));
    EXPECT_EQ(little(client.receive().value(), 0, 4), static_cast<std::uint64_t>(client.id));
    EXPECT_GE(std::chrono::steady_clock::now() - asked, std::chrono::milliseconds(400));

    sim.ctl("fault any nth 1 hangup");
    client.ask(query);
    EXPECT_TRUE(client.receive().value().empty());
    EXPECT_EQ(other.call(lecState).resp(), 0);

    sim.ctl("fault open nth 1 errno ENXIO");
    EXPECT_EQ(RawClient(sim.node()).openError, ENXIO);
    EXPECT_EQ(RawClient(sim.node()).openError, 0);
}

TEST(SimFaults, PrivilegeDecidesWhatMayBeChanged) {
    Running sim;
    constexpr char lecStop[] = "1100 0200 00 00 1000 1000 0000 0000 adde";
    constexpr char trace[] = "2200 0300 00 00 4c00 1b00 0000 0000 adde";
    RawClient reader(sim.node()), writer(sim.node(), 2);
    ASSERT_EQ(writer.openError, 0);
    EXPECT_EQ(RawClient(sim.node(), 1).openError, EINVAL);
    for (const std::string service : {"11", "12", "13", "41"}) {
        const std::string request = service + std::string(lecStop).substr(2);
        EXPECT_EQ(reader.call(request).error, EACCES) << request;
        EXPECT_EQ(writer.call(request).resp(), 0) << request;
    }
    EXPECT_EQ(reader.call(trace).resp(), 17);  // it names no trace

    if (::geteuid() != 0) GTEST_SKIP() << "needs the super-user to become another user";
    const auto action = [&, node = sim.node()] {
        if (RawClient(node, 2).openError != EACCES) return 1;
        RawClient stranger(node);
        if (stranger.openError != 0) return 2;
        if (stranger.call(lecState).resp() != 0) return 3;
        if (stranger.call(lecStop).error != EACCES) return 4;
        if (stranger.call(trace).error != EACCES) return 5;
        return RawClient(node + ".ctl").openError == 0 ? 6 : 0;
    };
    EXPECT_EQ(asStranger(sim.root, action), 0);
}

// 20,000 packets: bytes at random, and proper requests with bytes changed, cut off or added.
TEST(SimFaults, GarbageDoesNoHarm) {
    Running sim;
    sim.ctl("clock step 60");
    sim.ctl("rows lec 1.1 65535");
    std::mt19937 random(20240601);  // any seed; a fixed one can be repeated
    const auto below = [&](std::uint32_t limit) { return static_cast<std::uint32_t>(random() % limit); };
    const char* const seeds[] = {lecState,
                                 lecTable,
                                 "0100 0400 00 00 f803 1000 0100 3200 adde",
                                 "8100 0200 00 00 1700 1000 0100 0000 adde",
                                 "4200 0400 00 00 8000 1000 0100 0200 adde",
                                 "1100 0100 00 00 5800 5800 0000 0000 adde",
                                 "1100 0300 00 00 1c00 1c00 0000 0000 adde 00204000a301 2000 01",
                                 "1200 0100 00 03 4400 4400 0000 0000 adde",
                                 "1300 0100 00 00 3c00 3c00 0000 0000 adde",
                                 "1300 0300 00 00 3c00 3c00 0000 0000 adde",
                                 "4100 0400 00 00 1800 1800 0000 0000 adde 0a010203 2100 01",
                                 "2200 0300 00 00 4c00 1b00 0000 0000 adde"};
    std::optional<RawClient> client(std::in_place, sim.node(), 2);
    unsigned hangUps = 0, answers = 0;
    for (int i = 0; i < 20000; ++i) {
        RawBytes bytes;
        if (i % 4 == 0) {
            bytes.resize(below(i % 64 == 0 ? 70000 : 80));
            for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
            if (i % 8 == 0 && bytes.size() >= 4) bytes[0] = 2, bytes[1] = bytes[2] = bytes[3] = 0;
        } else {
            bytes = ioctlPacket(i, seeds[below(std::size(seeds))]);
            for (unsigned changes = below(4); changes-- > 0;)
                bytes[i % 3 ? 20 + below(16) : below(static_cast<std::uint32_t>(bytes.size()))] =
                    static_cast<std::uint8_t>(random());
            if (below(16) == 0) bytes.resize(below(static_cast<std::uint32_t>(bytes.size()) + 40));
        }
        const bool sent = client->send(bytes);
        const auto reply = sent ? client->receive() : RawBytes{};
        ASSERT_TRUE(reply.has_value()) << "no answer to packet " << i;
        if (!reply->empty())
            ++answers;
        else {
            ++hangUps;
            client.emplace(sim.node(), 2);
            ASSERT_EQ(client->openError, 0) << "after packet " << i;
        }
    }
    EXPECT_GT(answers, 5000u);  // both ways were walked
    EXPECT_GT(hangUps, 1000u);
    EXPECT_EQ(client->call(lecState).resp(), 0);
    EXPECT_NE(sim.ctl("dump").find("\nconfig lec 1.1 enabled "), std::string::npos);
}

TEST(SimFaults, AClientThatNeverReadsStopsNobody) {
    Running sim;
    RawClient deaf(sim.node()), other(sim.node());
    const RawBytes query = ioctlPacket(1, "1400 0200 00 00 bc03 1000 0100 0000 adde");
    ASSERT_TRUE(deaf.send(query));
    // As many as the socket takes; a blocking send would wait for ever once the simulator stops reading.
    for (int i = 0; i < 20000; ++i)
        if (!deaf.send(query, MSG_DONTWAIT)) break;
    for (int i = 0; i < 50; ++i) EXPECT_EQ(other.call(lecState).resp(), 0);
}
