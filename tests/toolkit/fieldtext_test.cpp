#include <gtest/gtest.h>  // before the window system's macros

#include "platform/index.h"
#include "tests/toolkit/desk.h"
#include "toolkit/controls/edit.h"
#include "toolkit/display/displaycache.h"

#include <X11/Xutil.h>
#include <Xm/TextF.h>
#include <Xm/Xm.h>
#include <clocale>
#include <fmt/format.h>
#include <memory>
#include <string>
#include <vector>

namespace {

enum Id { liveED = 41, otherED };
constexpr zControlRow rows[] = {
    {.id = liveED, .kind = zKind::edit, .place = {8, 4, 60, 12}, .text = "0", .style = zReadOnly},
    {.id = otherED, .kind = zKind::edit, .place = {8, 20, 60, 12}, .text = "other", .style = zReadOnly},
};
constexpr zLayout layout{.id = 4, .name = "live", .caption = "Live", .width = 80, .height = 40, .rows = rows};

class FieldTextTest : public DeskTest {
  protected:
    zEdit& live = window.control<zEdit>(liveED);
    Widget field = live.widget();
    Display* display = XtDisplay(field);

    FieldTextTest() : DeskTest(layout) {}

    void SetUp() override {
        DeskTest::SetUp();
        XmProcessTraversal(window.control<zEdit>(otherED).widget(), XmTRAVERSE_CURRENT);
        user.settle();
    }

    using Picture = std::vector<std::vector<unsigned long>>;  // rows
    Picture picture() const {
        user.settle();
        Dimension width = 0, height = 0;
        XtVaGetValues(field, XmNwidth, &width, XmNheight, &height, nullptr);
        XImage* image = XGetImage(display, XtWindow(field), 0, 0, width, height, AllPlanes, ZPixmap);
        Picture pixels(height);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) pixels[asIndex(y)].push_back(XGetPixel(image, x, y));
        XDestroyImage(image);
        return pixels;
    }
    // The first pixel in which they differ; empty: none.
    static std::string difference(const Picture& one, const Picture& other) {
        for (std::size_t y = 0; y < one.size(); ++y)
            for (std::size_t x = 0; x < one[y].size(); ++x)
                if (one[y][x] != other[y][x])
                    return fmt::format("{} {}: {:06x} {:06x}", x, y, one[y][x], other[y][x]);
        return "";
    }
    // What the widget library paints of the text that the field has.
    Picture repainted() {
        XClearArea(display, XtWindow(field), 0, 0, 0, 0, True);
        return picture();
    }
    // As it sets this text.
    Picture setByLibrary(const char* text) {
        char other[] = "#";
        XmTextFieldSetString(field, other);
        XmTextFieldSetString(field, const_cast<char*>(text));
        return picture();
    }
    // The requests to the server that a text takes.
    unsigned long requests(const char* text) {
        user.settle();
        const unsigned long before = NextRequest(display);
        live.setText(text);
        return NextRequest(display) - before;
    }
    void font(const char* name) {
        XtVaSetValues(field, XmNrenderTable, zDisplayCache::of(display).renderTable(window.shell(), name),
                      nullptr);
    }
    void enter(int id) {
        XmProcessTraversal(window.control<zEdit>(id).widget(), XmTRAVERSE_CURRENT);
        user.settle();
    }
};

// A clip, a clearing, the ground of what is marked and a string.
constexpr unsigned long fewRequests = 4;

TEST_F(FieldTextTest, LooksLikeTheLibrarysInEachState) {
    const struct {
        const char* name;
        std::function<void()> become;
        bool quick;  // takes few requests
        bool marked = false;
    } states[] = {
        {"as it is", [] {}, true},
        {"bold", [this] { font("bold"); }, true},
        {"fixed", [this] { font("fixed"); }, true},
        {"small", [this] { font("small"); }, true},
        {"dark",
         [this] { XtVaSetValues(field, XmNbackground, 0x102030UL, XmNforeground, 0xf0e0a0UL, nullptr); },
         true},
        {"greyed", [this] { live.grey(true); }, false},
        {"greyed and back", [this] { live.grey(false); }, true},
        {"disabled", [this] { live.enable(false); }, false},
        {"enabled", [this] { live.enable(true); }, true},
        {"marked", [this] { enter(liveED); }, true, true},
        {"left", [this] { enter(otherED); }, true},
        {"clicked", [this] { user.clickAt(field, 12, 8); }, true},
        {"selected",
         [this] {
             user.drag(field, {8, 8}, {40, 8});
         },
         true},
        {"left after it", [this] { enter(otherED); }, true},
        {"narrow",
         [this] {
             live.place({10, 4, 42, 24});
         },
         true},
        {"low",
         [this] {
             live.place({10, 4, 42, 14});
         },
         true},
        {"low and marked", [this] { enter(liveED); }, true, true},
        {"low and left", [this] { enter(otherED); }, true},
        {"flat",
         [this] {
             live.place({10, 4, 42, 5});
         },
         true},
        {"tiny",
         [this] {
             live.place({10, 4, 9, 9});
         },
         false},
        {"wide again",
         [this] {
             live.place({10, 4, 120, 24});
         },
         true},
    };
    for (const auto& [name, become, quick, marked] : states) {
        SCOPED_TRACE(name);
        live.setText("1234567890");
        become();
        live.setText("7654321098");  // ends a selection
        user.settle();
        EXPECT_EQ(requests("8901234567") <= fewRequests, quick);
        for (const char* text : {"jWf109.-_/", "111111 237"}) {
            live.setText(text);
            const Picture shown = picture();
            EXPECT_EQ(live.text(), text);
            EXPECT_EQ(difference(shown, repainted()), "") << text;
            if (quick && !marked) {
                EXPECT_EQ(difference(shown, setByLibrary(text)), "") << text;
            }
        }
    }
}

// Nothing that is seen or copied later is older than the text.
TEST_F(FieldTextTest, StaysWhenWindowsComeAndGo) {
    live.setText("1000");
    user.settle();
    const Window cover = XCreateSimpleWindow(display, XtWindow(field), 0, 0, 30, 40, 0, 0, 0x00ff00);
    XMapWindow(display, cover);
    picture();
    live.setText("2345");
    XDestroyWindow(display, cover);
    const Picture uncovered = picture();
    EXPECT_EQ(uncovered, setByLibrary("2345"));

    XUnmapWindow(display, XtWindow(field));
    user.settle();
    live.setText("6789");
    XMapWindow(display, XtWindow(field));
    const Picture mapped = picture();
    EXPECT_NE(mapped, uncovered);
    EXPECT_EQ(mapped, setByLibrary("6789"));
}

TEST_F(FieldTextTest, IsMarkedAndCopiedAsItStands) {
    live.setText("1000");
    user.settle();
    live.setText("2345");
    enter(liveED);
    const Picture marked = picture();
    user.key("c", "Control_L");
    EXPECT_EQ(user.clipboard(), "2345");
    live.setText("6789");
    EXPECT_NE(picture(), marked);
    EXPECT_EQ(picture(), repainted());
    user.key("c", "Control_L");
    EXPECT_EQ(user.clipboard(), "6789");

    live.setText("2222");
    enter(otherED);
    live.setText("3333");
    user.settle();
    live.setText("4444");
    user.drag(field, {2, 8}, {90, 8});
    const std::unique_ptr<char, void (*)(char*)> selected(XmTextFieldGetSelection(field), XtFree);
    ASSERT_TRUE(selected);
    EXPECT_STREQ(selected.get(), "4444");
}

// A locale in which characters have several bytes, that is to say another record.
TEST(FieldTextLocaleTest, TextsAreTheSameWithSeveralBytesACharacter) {
    ASSERT_TRUE(desk().open);
    ASSERT_TRUE(std::setlocale(LC_CTYPE, "C.UTF-8"));
    zFormDialog window(desk().application, layout);
    XUser user(desk().application);
    window.show();
    user.settle();
    auto& field = window.control<zEdit>(liveED);
    for (const char* text : {"1000", "2345", "2345", ""}) {
        field.setText(text);
        user.settle();
        EXPECT_EQ(field.text(), text);
    }
    std::setlocale(LC_CTYPE, "C");
}

}  // namespace
