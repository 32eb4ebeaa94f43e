#include <gtest/gtest.h>  // before the window system's macros

#include "tests/e2e/configurationtest.h"

#include <filesystem>
#include <malloc.h>

// The address sanitizer's allocator has its own books.
extern "C" [[gnu::weak]] std::size_t __sanitizer_get_current_allocated_bytes();

namespace {

long allocatedBytes() {
    return static_cast<long>(__sanitizer_get_current_allocated_bytes
                                 ? __sanitizer_get_current_allocated_bytes()
                                 : mallinfo2().uordblks);
}

int widgetsBelow(Widget top) {
    int count = 1;
    WidgetList children = nullptr;
    Cardinal number = 0;
    if (XtIsComposite(top)) XtVaGetValues(top, XtNchildren, &children, XtNnumChildren, &number, nullptr);
    for (Cardinal i = 0; i < number; ++i) count += widgetsBelow(children[i]);
    return count;
}

long openDescriptors() {
    const std::filesystem::directory_iterator open("/proc/self/fd");
    return std::distance(begin(open), end(open));
}

}  // namespace

// What the process holds does not grow with what is opened and closed. Memory that was given back must be given out
// again at once: the widget library keeps 32 bytes for each address at which a widget has ever been. The tests run
// without the address sanitizer's quarantine therefore (tests/CMakeLists.txt).
class Growth : public ConfigurationTest {};

TEST_F(Growth, TwoHundredOpenedNotebooksLeaveNothingBehind) {
    start({"--frozen", "--adapters", "1,2"});
    const auto openOnce = [&] {
        configure([&] {
            inDialog("PVC Settings", [&] { user->key("Escape"); });
            press(611);
            user->key("Escape");
        });
    };
    for (int i = 0; i < 20; ++i) openOnce();  // caches fill
    const int widgets = widgetsBelow(window->shell());
    const long bytes = allocatedBytes(), descriptors = openDescriptors();
    for (int i = 0; i < 200; ++i) openOnce();
    EXPECT_EQ(widgetsBelow(window->shell()), widgets);
    EXPECT_EQ(openDescriptors(), descriptors);
    EXPECT_LT(allocatedBytes() - bytes, 200 * 16);
}
