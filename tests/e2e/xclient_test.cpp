// What the tool does as an X client: options on its command line, and what its windows tell a window manager.
#include "tests/e2e/outsideuser.h"

#include <X11/Xutil.h>
#include <climits>

namespace {

using Words = std::vector<std::string>;

// A second client, to which windows are what the server says of them.
struct Onlooker {
    Display* display = XOpenDisplay(nullptr);
    // Windows of the last tool may go while they are looked at.
    XErrorHandler before = XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });

    ~Onlooker() {
        XCloseDisplay(display);
        XSetErrorHandler(before);
    }

    // The tool's window with this title, or 0 when none comes up.
    Window window(std::string_view title) const {
        Window found = 0;
        soon([&] {
            for (const Window shown : shownWindows(display))
                if (titleOfWindow(display, shown) == title) found = shown;
            return found != 0;
        });
        return found;
    }
    // Its texts or numbers, with blanks between them.
    struct Property {
        std::string text, type;
    };
    Property propertyOf(Window window, const char* name) const {
        Atom type = 0;
        int format = 0;
        unsigned long count = 0, left = 0;
        unsigned char* data = nullptr;
        XGetWindowProperty(display, window, XInternAtom(display, name, False), 0, 1000, False,
                           AnyPropertyType, &type, &format, &count, &left, &data);
        std::string text;
        for (unsigned long i = 0; i < count; ++i)
            if (format == 32)
                text += fmt::format("{}{}", i ? " " : "", reinterpret_cast<unsigned long*>(data)[i]);
            else if (data[i] || i + 1 < count)  // the last text's end is no blank
                text += data[i] ? static_cast<char>(data[i]) : ' ';
        if (data) XFree(data);
        const std::unique_ptr<char, int (*)(void*)> held(type ? XGetAtomName(display, type) : nullptr, XFree);
        return {text, held ? held.get() : ""};
    }
    std::string property(Window window, const char* name) const { return propertyOf(window, name).text; }
    std::string typeOf(Window window, const char* name) const { return propertyOf(window, name).type; }
    int initialState(Window window) const {
        XWMHints* hints = XGetWMHints(display, window);
        const int state = hints && hints->flags & StateHint ? hints->initial_state : -1;
        if (hints) XFree(hints);
        return state;
    }
    // How many pixels of the icon are set; -1: it is no bitmap.
    int pixelsOfIcon(Window window) const {
        XWMHints* hints = XGetWMHints(display, window);
        const Pixmap icon = hints && hints->flags & IconPixmapHint ? hints->icon_pixmap : None;
        if (hints) XFree(hints);
        Window rootWindow = 0;
        int at = 0, set = 0;
        unsigned width = 0, height = 0, border = 0, depth = 0;
        if (!icon || !XGetGeometry(display, icon, &rootWindow, &at, &at, &width, &height, &border, &depth) ||
            depth != 1)
            return -1;
        XImage* image = XGetImage(display, icon, 0, 0, width, height, 1, XYPixmap);
        for (unsigned i = 0; i < width * height; ++i)
            set += XGetPixel(image, static_cast<int>(i % width), static_cast<int>(i / width)) != 0;
        XDestroyImage(image);
        return set;
    }
    bool placedByUser(Window window) const {
        XSizeHints hints{};
        long supplied = 0;
        return XGetWMNormalHints(display, window, &hints, &supplied) && hints.flags & USPosition;
    }
    unsigned long background(Window window) const {
        XImage* image = XGetImage(display, window, 2, 2, 1, 1, AllPlanes, ZPixmap);
        const unsigned long pixel = image ? XGetPixel(image, 0, 0) : 0;
        if (image) XDestroyImage(image);
        return pixel;
    }
};

std::string hostName() {
    std::array<char, HOST_NAME_MAX + 1> name{};
    ::gethostname(name.data(), name.size());
    return name.data();
}

}  // namespace

TEST(XClient, HelpAndVersionNeedNoDisplay) {
    const struct {
        Words arguments;
        std::string_view says;
    } cases[] = {{{"--version"}, "tarvolin 2.0\n"},
                 {{"-adv", "--help"}, "Usage: tarvolin [option]...\n"},
                 {{"--help", "--version"}, "Usage: tarvolin [option]...\n"}};
    const TempRoot root;
    ::setenv("DISPLAY", ":4711", 1);
    for (const auto& c : cases) {
        Tool tool(root, c.arguments);
        EXPECT_EQ(tool.exitStatus(), 0) << c.says;
        EXPECT_EQ(tool.output().substr(0, c.says.size()), c.says);
    }
}

// What is no option and holds none of the tool's own is named, and nothing else is.
TEST(XClient, OptionsDoWhatTheyDoInOtherPrograms) {
    constexpr int width = 1280, height = 1024, centred = INT_MAX;
    constexpr unsigned long grey = 0xc0c0c0, blue = 0x112233;
    const struct {
        Words arguments;
        std::string title = programTitle, titleType = "STRING", instance = "tarvolin", says = "";
        Spot place{centred, centred};  // negative: from the right and lower edge
        int state = NormalState;
        unsigned long background = grey;
    } cases[] = {
        {.arguments = {}},
        {.arguments = {"-title", "North exchange"}, .title = "North exchange"},
        {.arguments = {"-title", "Tärvölin ✓"}, .title = "Tärvölin ✓", .titleType = "COMPOUND_TEXT"},
        {.arguments = {"-title", "T\xe4rvolin \xe2"}, .title = "Tärvolin â", .titleType = "COMPOUND_TEXT"},
        {.arguments = {"-title", "Nor\tth \x1b[1m\x7f"}, .title = "North [1m"},
        {.arguments = {"-title", "\tT\x1bä\nr\xc2\x85v"}, .title = "Tärv", .titleType = "COMPOUND_TEXT"},
        {.arguments = {"-title", "Tä\xc3"}, .title = "Tä", .titleType = "COMPOUND_TEXT"},  // cut short
        {.arguments = {"-title", "Caf\xe9"}, .title = "Café", .titleType = "COMPOUND_TEXT"},
        {.arguments = {"-xrm", "Tarvolin.title: Ωж한"}, .title = "Ωж한", .titleType = "COMPOUND_TEXT"},
        {.arguments = {"-name", "north"}, .instance = "north"},
        {.arguments = {"-iconic"}, .state = IconicState},
        {.arguments = {"-geometry", "+30+40"}, .place = {30, 40}},
        {.arguments = {"-geometry", "900x700-10-20"}, .place = {-10, -20}},
        {.arguments = {"-geometry", "900x700"}},
        {.arguments = {"-geometry", "0x0"}},
        {.arguments = {"-geometry", "0x0+10+20"}, .place = {10, 20}},
        {.arguments = {"-geometry", "99999x99999-1+1"}, .place = {-1, 1}},
        {.arguments = {"-xrm", "*geometry: 0x0+4+5"}, .place = {4, 5}},
        {.arguments = {"-geometry", "nowhere\n"}, .says = "tarvolin: geometry \"nowhere\\x0a\" ignored\n"},
        {.arguments = {"-geometry", "+40000+5"}, .says = "tarvolin: geometry \"+40000+5\" ignored\n"},
        {.arguments = {"-geometry"}, .says = "tarvolin: ignored: \"-geometry\"\n"},
        {.arguments = {"-fn", "fixed"},
         .says = "tarvolin: font \"fixed\" ignored: set fontName and fontSize\n"},
        {.arguments = {"-xrm", "Tarvolin*board.background: #112233"}, .background = blue},
        {.arguments = {"-name", "a", "-xrm", "a*board.background: #112233", "-xrm", "a.title: A"},
         .title = "A",
         .instance = "a",
         .background = blue},
        {.arguments = {"pre-Advanced", "north", "-verbose\n"},
         .says = "tarvolin: ignored: \"north\"\ntarvolin: ignored: \"-verbose\\x0a\"\n"},
    };
    const SampleRoot root;
    const XServer server(fmt::format("{}x{}x24", width, height));
    const Onlooker onlooker;
    std::pair<int, int> usualSize;
    for (const auto& c : cases) {
        SCOPED_TRACE(fmt::format("{}", fmt::join(c.arguments, " ")));
        ASSERT_TRUE(
            soon([&] { return shownWindows(onlooker.display).empty(); }));  // the last tool's are gone
        const Tool tool(root, c.arguments);
        const Window window = onlooker.window(c.title);
        ASSERT_NE(window, 0U) << tool.output();

        XWindowAttributes now{};
        XGetWindowAttributes(onlooker.display, window, &now);
        const auto at = [](int wanted, int free) {
            return wanted == centred ? free / 2 : wanted < 0 ? free + wanted : wanted;
        };
        EXPECT_EQ(now.x, at(c.place.x, width - now.width));
        EXPECT_EQ(now.y, at(c.place.y, height - now.height));
        const std::pair size{now.width, now.height};
        EXPECT_EQ(size, usualSize.first ? usualSize : size);
        usualSize = size;

        EXPECT_EQ(onlooker.placedByUser(window), c.place.x != centred);
        EXPECT_EQ(onlooker.typeOf(window, "WM_NAME"), c.titleType);
        EXPECT_EQ(onlooker.typeOf(window, "WM_ICON_NAME"), c.titleType);
        EXPECT_EQ(onlooker.property(window, "WM_ICON_NAME"), onlooker.property(window, "WM_NAME"));
        EXPECT_EQ(onlooker.property(window, "WM_CLASS"), c.instance + " Tarvolin");
        for (const char* name : {"_NET_WM_NAME", "_NET_WM_ICON_NAME"}) {
            EXPECT_EQ(onlooker.property(window, name), c.title);
            EXPECT_EQ(onlooker.typeOf(window, name), "UTF8_STRING");
        }
        EXPECT_EQ(onlooker.initialState(window), c.state);
        EXPECT_TRUE(soon([&] { return onlooker.background(window) == c.background; }, 5));
        EXPECT_EQ(tool.output(), c.says);
    }
}

TEST(XClient, WindowManagersLearnTheProgramAndTheProcessOfEachWindow) {
    Place place;
    const XServer server;
    const Onlooker onlooker;
    const Tool tool(place.root, {"-title", "Main", "-adv"});
    OutsideUser user;
    ASSERT_TRUE(user.sees("Main")) << tool.output();
    const Window main = onlooker.window("Main");
    ASSERT_TRUE(user.opens(spot::setup, "Setup ATM"));
    const std::string leader = onlooker.property(main, "WM_CLIENT_LEADER");
    EXPECT_FALSE(leader.empty());
    EXPECT_EQ(onlooker.property(main, "WM_COMMAND"), TARVOLIN_PROGRAM " -title Main -adv");
    for (const Window window : shownWindows(onlooker.display)) {
        SCOPED_TRACE(titleOfWindow(onlooker.display, window));
        if (titleOfWindow(onlooker.display, window).empty()) continue;  // a tooltip
        const std::pair<const char*, std::string> expected[] = {
            {"WM_CLASS", "tarvolin Tarvolin"},
            {"WM_CLIENT_MACHINE", hostName()},
            {"WM_CLIENT_LEADER", leader},
            {"_NET_WM_PID", std::to_string(tool.process())},
            {"_NET_WM_NAME", titleOfWindow(onlooker.display, window)},
        };
        const int dark = onlooker.pixelsOfIcon(window);
        EXPECT_TRUE(dark > 200 && dark < 2000) << dark << " of 48 x 48";
        for (const auto& [name, value] : expected) EXPECT_EQ(onlooker.property(window, name), value) << name;
    }
}
