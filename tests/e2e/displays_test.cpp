// Displays that are poorer than the usual one: few colours, no fonts.
#include <gtest/gtest.h>  // before the window system's macros

#include "tests/e2e/tool.h"
#include "tests/e2e/xsupport.h"
#include "tests/support/simulator.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#include <algorithm>
#include <cstdlib>
#include <fmt/format.h>
#include <map>
#include <utility>

namespace {

using Picture = std::vector<XColor>;

// The user at a display that the program under test reaches from another process.
class Onlooker {
  public:
    Onlooker() : display_(XOpenDisplay(nullptr)) {
        // A window may go while it is looked at, when the program crashes.
        before_ = XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
    }
    ~Onlooker() {
        XCloseDisplay(display_);
        XSetErrorHandler(before_);
    }
    Onlooker(const Onlooker&) = delete;
    Onlooker& operator=(const Onlooker&) = delete;

    // The window whose title begins so, once it is on the screen; None if it does not come.
    Window titled(const std::string& beginning) const {
        for (int i = 0; i < 500; ++i, pause()) {
            Window root = 0, parent = 0, *windows = nullptr;
            unsigned count = 0;
            XQueryTree(display_, DefaultRootWindow(display_), &root, &parent, &windows, &count);
            Window found = None;
            for (unsigned w = 0; w < count; ++w) {
                XWindowAttributes attributes{};
                char* name = nullptr;
                if (XGetWindowAttributes(display_, windows[w], &attributes) &&
                    attributes.map_state == IsViewable && XFetchName(display_, windows[w], &name) &&
                    std::string(name).starts_with(beginning))
                    found = windows[w];
                XFree(name);
            }
            XFree(windows);
            if (found) return found;
        }
        return None;
    }
    void press(Window window, int x, int y) const {
        Window child = None;
        XRaiseWindow(display_, window);
        XSetInputFocus(display_, window, RevertToParent, CurrentTime);
        XTranslateCoordinates(display_, window, DefaultRootWindow(display_), x, y, &x, &y, &child);
        XTestFakeMotionEvent(display_, -1, x, y, 0);
        XTestFakeButtonEvent(display_, 1, True, 0);
        XTestFakeButtonEvent(display_, 1, False, 0);
        XSync(display_, False);
    }
    void escape() const {
        const KeyCode code = XKeysymToKeycode(display_, XK_Escape);
        XTestFakeKeyEvent(display_, code, True, 0);
        XTestFakeKeyEvent(display_, code, False, 0);
        XSync(display_, False);
    }
    // What is to be seen of the window, with the colours of its pixels, when it does not change any more.
    Picture picture(Window window) const {
        XTestFakeMotionEvent(display_, -1, 0, 0, 0);  // out of the way
        std::vector<unsigned long> pixels, before;
        do {
            before = std::exchange(pixels, {});
            for (int i = 0; i < 15; ++i) pause();
            XWindowAttributes attributes{};
            XGetWindowAttributes(display_, window, &attributes);
            XImage* image = XGetImage(display_, window, 0, 0, static_cast<unsigned>(attributes.width),
                                      static_cast<unsigned>(attributes.height), AllPlanes, ZPixmap);
            if (!image) return {};
            for (int y = 0; y < image->height; ++y)
                for (int x = 0; x < image->width; ++x) pixels.push_back(XGetPixel(image, x, y));
            XDestroyImage(image);
        } while (pixels != before);
        std::map<unsigned long, XColor> colours;
        Picture picture;
        for (const unsigned long pixel : pixels) {
            XColor& colour = colours[pixel];
            if (!colour.flags) {
                colour.pixel = pixel;
                XQueryColors(display_, DefaultColormap(display_, DefaultScreen(display_)), &colour, 1);
                colour.flags = DoRed;
            }
            picture.push_back(colour);
        }
        return picture;
    }

  private:
    static void pause() { std::this_thread::sleep_for(std::chrono::milliseconds(20)); }

    Display* display_;
    XErrorHandler before_;
};

// The main window, a page with lamps, one with a table, and, for root, the first page of Setup and one with a
// table.
std::map<std::string, Picture> picturesOn(const TempRoot& root, const std::string& screen,
                                          const char* visualClass) {
    XServer server(screen, visualClass);
    Simulator simulator({"--frozen", "--adapters", "1,2"});
    simulator.ctl("alarm 1 lop on");  // its lamp is not lit
    Tool tool(root, {"-debug", "-adv"});
    const Onlooker user;
    std::map<std::string, Picture> pictures;
    const auto look = [&](const std::string& name, const std::string& title, int x, int y = 30) {
        const Window window = user.titled(title);
        EXPECT_NE(window, None) << screen << ' ' << title << tool.output();
        if (!window) return;
        if (x) user.press(window, x, y);
        pictures[name] = user.picture(window);
    };
    look("main", "Tarvolin", 0);
    const Window main = user.titled("Tarvolin");
    if (!main) return pictures;
    user.press(main, 570, 180);
    look("lamps", "Statistics ", 120);
    look("table", "Statistics ", 45);
    look("table", "Statistics ", 125, 406);  // a row is selected
    if (::geteuid() == 0) {
        user.press(main, 570, 115);
        look("setup", "Setup ", 0);
        look("setup table", "Setup ", 137);
        user.escape();
    }
    tool.signal(SIGTERM);
    EXPECT_EQ(tool.exitStatus(), 128 + SIGTERM) << screen;
    EXPECT_EQ(tool.output().find("X error"), std::string::npos) << tool.output();
    return pictures;
}

// As icons and lamps are, unlike texts and backgrounds.
bool vivid(const XColor& c) {
    return (std::max({c.red, c.green, c.blue}) >> 8) - (std::min({c.red, c.green, c.blue}) >> 8) >= 96;
}

// The share of pixels of one picture that are further than this from those of another in a component, from 0
// to 255, of all or of the vivid ones: those of icons and lamps.
double different(const Picture& a, const Picture& b, int tolerance, bool vividOnes) {
    if (a.size() != b.size()) return 1;
    const auto far = [tolerance](unsigned short x, unsigned short y) {
        return std::abs((x >> 8) - (y >> 8)) > tolerance;
    };
    double all = 0, count = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (vividOnes && !vivid(a[i])) continue;
        ++all;
        count += far(a[i].red, b[i].red) || far(a[i].green, b[i].green) || far(a[i].blue, b[i].blue);
    }
    return all > 0 ? count / all : 0;
}

// Pixels that have a colour of the resource file.
long pixelsLike(const Picture& picture, unsigned rgb, int tolerance) {
    const auto near = [&](unsigned short component, int shift) {
        return std::abs((component >> 8) - static_cast<int>(rgb >> shift & 255)) <= tolerance;
    };
    return std::ranges::count_if(
        picture, [&](const XColor& c) { return near(c.red, 16) && near(c.green, 8) && near(c.blue, 0); });
}

const struct {
    const char* picture;
    unsigned rgb;
    long least;
} resourceColours[] = {{"main", 0xc0c0c0, 100000},  // the background
                       {"main", 0x9cb8dc, 3000},    // the selected line of the list
                       {"lamps", 0x50d850, 50},     // lit
                       {"lamps", 0x304830, 50},     // and not
                       {"table", 0x9cb8dc, 500}};   // the selected row

}  // namespace

TEST(Displays, FewerColoursShowTheSamePictures) {
    TempRoot root;
    writeSampleConfiguration(root);
    const auto usual = picturesOn(root, "1280x1024x24", "4");
    for (const char* name : {"main", "lamps"})
        EXPECT_GT(std::ranges::count_if(usual.at(name), vivid), 100) << name;
    const struct {
        const char *screen, *visualClass;
        int tolerance;  // what five bits leave open; the nearest colour that a full map has
        double share;   // of pixels that may differ: without Render the edges of letters are not blended
    } displays[] = {{"1280x1024x16", "4", 8, 0.01}, {"1280x1024x8", "3", 64, 0.05}};
    for (const auto& d : displays) {
        const auto pictures = picturesOn(root, d.screen, d.visualClass);
        for (const auto& [name, picture] : usual) {
            SCOPED_TRACE(std::string(d.screen) + ' ' + name);
            ASSERT_TRUE(pictures.contains(name));
            EXPECT_LT(different(picture, pictures.at(name), d.tolerance, false), d.share);
            EXPECT_LT(different(picture, pictures.at(name), d.tolerance, true), 0.02);
        }
        for (const auto& c : resourceColours)
            EXPECT_GE(pixelsLike(pictures.at(c.picture), c.rgb, 8), c.least)
                << d.screen << ' ' << c.picture << fmt::format(" #{:06x}", c.rgb);
    }
}

TEST(Displays, WithoutFontsTheProgramSaysSo) {
    TempRoot root;
    writeSampleConfiguration(root);
    root.write("/fonts.conf",
               fmt::format("<fontconfig><dir>{0}/none</dir><cachedir>{0}/cache</cachedir></fontconfig>",
                           root.path().string()));
    XServer server;
    ::setenv("FONTCONFIG_FILE", root.at("/fonts.conf").c_str(), 1);
    Tool tool(root, {});
    ::unsetenv("FONTCONFIG_FILE");
    EXPECT_EQ(tool.exitStatus(), 1);
    EXPECT_EQ(tool.output(), "tarvolin: Fontconfig finds no fonts\n");
}
