// How many connections a user may have.
#include "running.h"
#include "stranger.h"

#include <list>
#include <sys/resource.h>

namespace {

constexpr char lecState[] = "1400 0100 00 00 2000 1000 0100 0000 adde";

}  // namespace

TEST(SimLimits, AStrangerHasSixteenConnectionsAndLocksNobodyOut) {
    if (::geteuid() != 0) GTEST_SKIP() << "needs the super-user to become another user";
    Running sim;
    std::list<RawClient> clients;
    const auto tooMany = [&] {
        for (int i = 0; i < 16; ++i)
            if (clients.emplace_back(sim.node()).openError != 0) return 1;
        for (int i = 0; i < 16; ++i)
            if (clients.emplace_back(sim.node()).openError != EBUSY) return 2;
        if (clients.back().call(lecState).error != EINVAL) return 3;
        for (int i = 0; i < 600; ++i)  // not even an answer
            if (clients.emplace_back(sim.node()).openError != -1) return 4;
        if (clients.front().call(lecState).resp() != 0) return 5;
        while (clients.size() > 15) clients.pop_back();
        for (int i = 0; i < 100; ++i)  // the simulator hears of the ends one after the other
            if (clients.emplace_back(sim.node()).openError == 0) return 0;
        return 6;
    };
    EXPECT_EQ(asStranger(sim.root, tooMany,
                         [&] {
                             RawClient own(sim.node(), 2);
                             EXPECT_EQ(own.openError, 0);
                             EXPECT_EQ(own.call(lecState).resp(), 0);
                             EXPECT_NO_THROW(sim.ctl("show"));
                         }),
              0);
}

TEST(SimLimits, ThePrivilegedHaveRoomForEveryWindowOfTheTool) {
    Running sim;
    std::list<RawClient> clients;
    for (int i = 0; i < 200; ++i) ASSERT_EQ(clients.emplace_back(sim.node()).openError, 0) << i;
    EXPECT_EQ(clients.emplace_back(sim.node()).openError, EBUSY);
    EXPECT_NO_THROW(sim.ctl("show"));  // commands have some more
    for (int i = 0; i < 15; ++i) clients.emplace_back(sim.node());
    EXPECT_THROW(sim.ctl("show"), std::runtime_error);
    clients.clear();
    EXPECT_NO_THROW(sim.ctl("show"));
}

TEST(SimLimits, WithoutDescriptorsItWaitsUntilOneIsFree) {
    const rlimit few{40, 40};
    TempRoot root;
    std::optional<Simulator> simulator(std::in_place, std::vector<std::string>{"--frozen"});
    ::prlimit(simulator->pid(), RLIMIT_NOFILE, &few, nullptr);
    const std::string node = root.at("/dev/li").string();
    std::list<RawClient> clients;
    for (int i = 0; i < 60; ++i) clients.emplace_back(node, std::nullopt);
    EXPECT_EQ(clients.front().openError, 0);
    const auto cpu = [&] {
        clockid_t clock = 0;
        timespec used{};
        ::clock_getcpuclockid(simulator->pid(), &clock);
        ::clock_gettime(clock, &used);
        return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) / 1e9;
    };
    const double idle = cpu();
    ::usleep(500000);
    EXPECT_LT(cpu() - idle, 0.2) << "it must not ask again and again";
    clients.clear();
    EXPECT_EQ(RawClient(node).openError, 0);
}
