// Two programs never hold the lock of the configuration at the same time.
#include "tests/support/holder.h"
#include "tests/support/temproot.h"

#include <unistd.h>

using namespace std::chrono_literals;
using platform::ConfigurationLock;

TEST(ConfigurationLock, NamesItsHolderAndIsFreeWhenTheHolderIsGone) {
    const TempRoot root;
    Holder other;
    ConfigurationLock lock;
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(lock.take("tarvolin", 100ms), EWOULDBLOCK);
    EXPECT_GE(std::chrono::steady_clock::now() - before, 100ms);
    EXPECT_EQ(lock.holder(), other.name());
    EXPECT_FALSE(lock.held());
    other.end();
    EXPECT_EQ(lock.take("tarvolin", 0ms), 0);
    const auto line = [](const std::string& text) { return fmt::format("{:<31}\n", text); };
    EXPECT_EQ(root.read(ConfigurationLock::file), line("tarvolin " + std::to_string(::getpid())));
    EXPECT_EQ(std::filesystem::status(root.at(ConfigurationLock::file)).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);

    ConfigurationLock second;  // not even within one process
    EXPECT_EQ(second.take("tarvolin", 0ms), EWOULDBLOCK);
    lock.release();
    EXPECT_EQ(root.read(ConfigurationLock::file), line("free"));  // for whoever takes it and writes no name
    EXPECT_EQ(second.take("tarvolin", 0ms), 0);
}

TEST(ConfigurationLock, WhatStandsInTheFileIsNotBelieved) {
    const TempRoot root;
    for (const char* text :
         {"", "tarvolin", "tarvolin x", "a\nb 12", "tarvolin -5", "\x1b[2J 12", "tarvolin 2147483646"}) {
        ConfigurationLock holder, other;
        ASSERT_EQ(holder.take("x", 0ms), 0);
        root.write(ConfigurationLock::file, text);
        EXPECT_EQ(other.take("y", 0ms), EWOULDBLOCK);
        EXPECT_EQ(other.holder(), "another program") << text;
    }
    ConfigurationLock first, waiting, later;
    ASSERT_EQ(first.take("x", 0ms), 0);
    std::thread others([&] {
        std::this_thread::sleep_for(100ms);
        std::filesystem::remove(root.at(ConfigurationLock::file));
        EXPECT_EQ(later.take("z", 0ms), 0) << "the file is another one";
        first.release();
    });
    EXPECT_EQ(waiting.take("y", 300ms), EWOULDBLOCK);
    others.join();
    later.release();
    std::filesystem::remove(root.at(ConfigurationLock::file));
    std::filesystem::create_symlink("/etc/passwd", root.at(ConfigurationLock::file));
    EXPECT_EQ(ConfigurationLock().take("x", 0ms), ELOOP);
    std::filesystem::remove(root.at(ConfigurationLock::file));
    root.write("/etc/other", "of somebody");
    std::filesystem::create_hard_link(root.at("/etc/other"), root.at(ConfigurationLock::file));
    EXPECT_EQ(ConfigurationLock().take("x", 0ms), EPERM);
    EXPECT_EQ(root.read("/etc/other"), "of somebody");
}
