#include "tests/e2e/configurationtest.h"
#include "ui/global/globlids.h"

// Exact books of what is allocated: only the address sanitizer's allocator keeps them. The system's counts
// what it holds back for later as well, and gives out other addresses again.
extern "C" [[gnu::weak]] std::size_t __sanitizer_get_current_allocated_bytes();

namespace {

long allocatedBytes() {
    return __sanitizer_get_current_allocated_bytes
               ? static_cast<long>(__sanitizer_get_current_allocated_bytes())
               : 0;
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

// TV_THOROUGH: 200 of each.
int often(int usual) {
    return std::getenv("TV_THOROUGH") ? 200 : usual;
}

}  // namespace

// What the process holds does not grow with what is opened and closed. Memory that was given back must be
// given out again at once: the widget library keeps 32 bytes for each address at which a widget has ever
// been. The tests run without the address sanitizer's quarantine therefore (tests/CMakeLists.txt).
class Growth : public ConfigurationTest {
  protected:
    static constexpr int caches = 40;  // times that fill them

    void expectNone(int times, const std::function<void()>& openOnce) {
        for (int i = 0; i < caches; ++i) openOnce();
        const int widgets = widgetsBelow(window->shell());
        const long bytes = allocatedBytes(), descriptors = openDescriptors();
        for (int i = 0; i < times; ++i) openOnce();
        EXPECT_EQ(widgetsBelow(window->shell()), widgets);
        EXPECT_EQ(openDescriptors(), descriptors);
        if (__sanitizer_get_current_allocated_bytes) {
            EXPECT_LT(allocatedBytes() - bytes, times * 16);
        }
    }
    void inStatistics(const std::function<void(Widget)>& steps) {
        user->click(window->control<zBitmapButton>(statsBTN).widget());
        const Widget dialog = user->shellLike("Statistics ");
        ASSERT_TRUE(dialog);
        user->focus(dialog);
        steps(dialog);
        user->key("Escape");
        ASSERT_FALSE(user->shellLike("Statistics "));
        user->focus(window->shell());
    }
};

TEST_F(Growth, OpenedNotebooksAndTheirDialogsLeaveNothingBehind) {
    constexpr struct {
        const char* page;
        int button;
        const char* name;
    } dialogs[] = {{"lecPage", addBTN, "lecPvc"},
                   {"lesPage", addBTN, "elanClient"},
                   {"lesPage", insertBTN, "moveClients"},
                   {"ip1577Page", addBTN, "ipPvc"}};
    constexpr int each = 4;
    start();
    advSettings = 1;
    int opened = 0, closed = 0;
    expectNone(each * often(50), [&] {
        const auto& dialog = dialogs[opened++ % each];
        configure([&] {
            turnTo(dialog.page);
            inSubDialog(dialog.button, dialog.name, [&] {
                ++closed;
                user->key("Escape");
            });
            user->key("Escape");
        });
    });
    EXPECT_EQ(closed, caches + each * often(50));
}

TEST_F(Growth, StatisticsAtChangingSizesLeaveNothingBehind) {
    start("1,2", {"clock step 200"});
    int opened = 0;
    expectNone(often(20), [&] {
        inStatistics([&](Widget dialog) {
            const int step = opened++ % 5;
            user->resize(dialog, 700 + 90 * step, 1000 - 60 * step);
            user->clickAt(XtNameToWidget(dialog, "*pages"), 187, 15);
            user->resize(dialog, 1000 - 60 * step, 700 + 60 * step);
        });
    });
    EXPECT_EQ(opened, caches + often(20));
}

TEST_F(Growth, OpenedStatisticsAndSettingsLeaveNothingBehind) {
    start("1,2", {"clock step 200"});
    advSettings = 1;
    int opened = 0;
    expectNone(often(60), [&] {
        inStatistics([&](Widget dialog) {
            const Widget book = XtNameToWidget(dialog, "*pages");
            for (int tab : {187, 252, 378}) user->clickAt(book, tab, 15);  // the pages with tables
            user->focus(dialog);
        });
        inDialogOf(globalBTN, "Global Settings", [&] {
            lookAt("applicationPage");
            inDialog("Table Font", [&] {
                ++opened;
                user->key("Escape");
            });
            press(fontBTN);
            user->key("Escape");
        });
    });
    EXPECT_EQ(opened, caches + often(60));
}
