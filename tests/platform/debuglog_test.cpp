#include "platform/debuglog.h"

#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <unistd.h>

TEST(DebugLog, NothingUntilAttachedThenLineByLine) {
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    DebugLog log;
    EXPECT_FALSE(log.attached());
    log << "lost" << std::endl;
    log.attach(ends[1]);
    EXPECT_TRUE(log.attached());
    log << "Number " << 7 << std::endl << std::string(3000, 'x') << std::endl;
    ::close(ends[1]);
    std::string text(4000, '\0');
    text.resize(static_cast<std::size_t>(::read(ends[0], text.data(), text.size())));
    EXPECT_EQ(text, "Number 7\n" + std::string(3000, 'x') + "\n");
    ::close(ends[0]);
}

TEST(DebugLog, ALogThatCannotBeWrittenIsDropped) {
    DebugLog log;
    log.attach(-1);
    for (int i = 0; i < 1000; ++i) log << "a line that goes nowhere" << std::endl;
    EXPECT_TRUE(log.good());
    std::stringbuf buffer;
    log.divert(&buffer);
    log << "a line that arrives" << std::endl;
    EXPECT_EQ(buffer.str(), "a line that arrives\n");
}
