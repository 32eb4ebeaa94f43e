// Delays while somebody sets the wall clock back.
#include "tests/toolkit/desk.h"
#include "toolkit/controls/button.h"
#include "toolkit/table/table.h"
#include "toolkit/window/timer.h"

#include <ctime>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

long wallClockShift = 0;  // seconds

}  // namespace

// The program's own definitions win over the C library's, also in the libraries that it uses.
extern "C" int clock_gettime(clockid_t clock, timespec* now) noexcept {
    const long result = ::syscall(SYS_clock_gettime, clock, now);
    if (result == 0 && clock == CLOCK_REALTIME) now->tv_sec += wallClockShift;
    return static_cast<int>(result);
}

extern "C" int gettimeofday(timeval* now, void*) noexcept {
    timespec exact{};
    const int result = ::clock_gettime(CLOCK_REALTIME, &exact);
    now->tv_sec = exact.tv_sec;
    now->tv_usec = exact.tv_nsec / 1000;
    return result;
}

namespace {

constexpr zControlRow rows[] = {
    {.id = 31, .kind = zKind::bitmapButton, .place = {4, 4, 50, 18}, .text = "Press", .tooltip = "Tip"},
    {.id = 32, .kind = zKind::table, .place = {4, 30, 150, 60}},
};
constexpr zLayout layout{
    .id = 3, .name = "clock", .caption = "A clock", .width = 160, .height = 100, .rows = rows};

class SteppedClockTest : public DeskTest {
  protected:
    SteppedClockTest() : DeskTest(layout) {}
    ~SteppedClockTest() override { wallClockShift = 0; }
    static void setBackAnHour() { wallClockShift -= 3600; }
};

}  // namespace

// Xt's own timers show that the step reaches the libraries: otherwise nothing here could fail.
TEST_F(SteppedClockTest, OurTimersGoOnWhereXtsStop) {
    int ticks = 0;
    bool late = false;
    const zTimer timer(application, 50, [&] { ++ticks; });
    EXPECT_TRUE(user.until([&] { return ticks == 2; }));
    const auto expired = [](XtPointer flag, XtIntervalId*) { *static_cast<bool*>(flag) = true; };
    const XtIntervalId xts =
        XtAppAddTimeOut(XtDisplayToApplicationContext(XtDisplay(window.shell())), 50, expired, &late);
    setBackAnHour();
    EXPECT_TRUE(user.until([&] { return ticks == 6; })) << ticks;
    EXPECT_FALSE(late);
    XtRemoveTimeOut(xts);
}

TEST_F(SteppedClockTest, TooltipsComeAndGo) {
    const auto shown = [this] { return user.widget("TipLabel") != nullptr; };
    window.control<zBitmapButton>(31).enable(true);
    user.pointAt(user.widget("id31"));
    setBackAnHour();
    EXPECT_TRUE(user.until(shown, 3));
    setBackAnHour();
    EXPECT_TRUE(user.until([&] { return !shown(); }, 6));
}

TEST_F(SteppedClockTest, WhatWasToBePaintedAtTheStepIsPainted) {
    auto& table = window.control<zTable>(32);
    table.resize(1, 3);
    user.settle();
    Display* display = XtDisplay(window.shell());
    const unsigned long before = NextRequest(display);
    table.setText({1, 2}, "text");
    setBackAnHour();
    EXPECT_TRUE(user.until([&] { return NextRequest(display) > before; }, 3));
}
