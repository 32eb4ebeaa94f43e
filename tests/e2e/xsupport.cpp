#include "tests/e2e/xsupport.h"

#include <X11/Intrinsic.h>
#include <X11/Shell.h>
#include <X11/StringDefs.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <Xm/TextF.h>
#include <Xm/Xm.h>
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

XServer::XServer(const std::string& screen, const char* visualClass) {
    int channel[2];
    if (::pipe(channel) != 0) throw std::runtime_error("no pipe");
    process_ = ::fork();
    if (process_ == 0) {
        const std::string number = std::to_string(channel[1]);
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);  // a test that dies takes its server along
        const int nowhere = ::open("/dev/null", O_WRONLY);
        ::dup2(nowhere, 1);
        ::dup2(nowhere, 2);
        ::execlp("Xvfb", "Xvfb", "-displayfd", number.c_str(), "-screen", "0", screen.c_str(), "-cc",
                 visualClass, "-dpi", "96", "-nolisten", "tcp", "-noreset", nullptr);
        ::_exit(127);
    }
    ::close(channel[1]);
    std::string name;
    for (char c = 0; ::read(channel[0], &c, 1) == 1 && c != '\n';) name += c;
    ::close(channel[0]);
    if (name.empty()) throw std::runtime_error("Xvfb did not start");
    ::setenv("DISPLAY", (":" + name).c_str(), 1);
}

XServer::~XServer() {
    if (process_ <= 0) return;
    ::kill(process_, SIGTERM);
    ::kill(process_, SIGCONT);
    ::waitpid(process_, nullptr, 0);
}

void XServer::stop() {
    ::kill(process_, SIGSTOP);
}

void XServer::kill() {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
    process_ = -1;
}

namespace {

Display* programDisplay(const zApplication& application) {
    return static_cast<Display*>(application.display());
}

// The program's own top-level windows that are on the screen.
std::vector<Widget> mappedShells(const zApplication& application) {
    std::vector<Widget> shells;
    for (const Window window : shownWindows(programDisplay(application)))
        if (const Widget shell = XtWindowToWidget(programDisplay(application), window);
            shell && XtIsShell(shell))
            shells.push_back(shell);
    return shells;
}

}  // namespace

zRect placeOf(Widget widget) {
    return {resourceOf<Position>(widget, XmNx), resourceOf<Position>(widget, XmNy),
            resourceOf<Dimension>(widget, XmNwidth), resourceOf<Dimension>(widget, XmNheight)};
}

WindowImage::WindowImage(Widget of) : width(placeOf(of).width), height(placeOf(of).height) {
    XImage* image = XGetImage(XtDisplay(of), XtWindow(of), 0, 0, static_cast<unsigned>(width),
                              static_cast<unsigned>(height), AllPlanes, ZPixmap);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) pixels.push_back(XGetPixel(image, x, y));
    XDestroyImage(image);
}

std::vector<Window> shownWindows(Display* display) {
    Window root = 0, parent = 0, *windows = nullptr;
    unsigned count = 0;
    if (!XQueryTree(display, DefaultRootWindow(display), &root, &parent, &windows, &count)) return {};
    std::vector<Window> shown(windows, windows + count);
    if (windows) XFree(windows);
    std::erase_if(shown, [&](Window window) {
        XWindowAttributes attributes{};
        return !XGetWindowAttributes(display, window, &attributes) || attributes.map_state != IsViewable;
    });
    return shown;
}

std::string titleOfWindow(Display* display, Window window) {
    XTextProperty name{};
    if (!XGetWMName(display, window, &name)) return {};
    char** texts = nullptr;
    int count = 0;
    Xutf8TextPropertyToTextList(display, &name, &texts, &count);
    XFree(name.value);
    std::string title = count > 0 ? texts[0] : "";
    if (texts) XFreeStringList(texts);
    return title;
}

XInput::XInput() : display_(XOpenDisplay(nullptr)) {
    if (!display_) throw std::runtime_error("no display");
}

void XInput::leave() {
    if (display_) XCloseDisplay(display_);
    display_ = nullptr;
}

void XInput::pressKey(const char* name, const char* held) {
    const auto code = [this](const char* key) { return XKeysymToKeycode(display_, XStringToKeysym(key)); };
    if (held) XTestFakeKeyEvent(display_, code(held), True, 0);
    XTestFakeKeyEvent(display_, code(name), True, 0);
    XTestFakeKeyEvent(display_, code(name), False, 0);
    if (held) XTestFakeKeyEvent(display_, code(held), False, 0);
    XSync(display_, False);
}

void XInput::pressAt(int rootX, int rootY, int times, unsigned button) {
    XTestFakeMotionEvent(display_, -1, rootX, rootY, 0);
    for (int i = 0; i < times; ++i) {
        XTestFakeButtonEvent(display_, button, True, 0);
        XTestFakeButtonEvent(display_, button, False, 0);
    }
    XSync(display_, False);
}

void XInput::giveKeyboard(Window window) {
    XSetInputFocus(display_, window, RevertToParent, CurrentTime);
    XSync(display_, False);
}

void XUser::pressButton(Widget target, int x, int y, int times) {
    Position rootX = 0, rootY = 0;
    XtTranslateCoords(target, static_cast<Position>(x), static_cast<Position>(y), &rootX, &rootY);
    pressAt(rootX, rootY, times);
}

void XUser::clickAt(Widget target, int x, int y, int times) {
    pressButton(target, x, y, times);
    settle();
}

void XUser::rightClickAt(Widget target, int x, int y) {
    rightButton(target, x, y, true);
    rightButton(target, x, y, false);
    settle();
}

void XUser::rightButton(Widget target, int x, int y, bool down) {
    pressButton(target, x, y, 0);
    XTestFakeButtonEvent(display_, Button3, down, 0);
    XSync(display_, False);
}

void XUser::click(Widget target, int times) {
    const zRect place = placeOf(target);
    clickAt(target, place.width / 2, place.height / 2, times);
}

void XUser::clickMiddle(Widget target) {
    Position rootX = 0, rootY = 0;
    XtTranslateCoords(target, 5, 5, &rootX, &rootY);
    pressAt(rootX, rootY, 1, Button2);
    settle();
}

void XUser::pointAt(Widget target) {
    clickAt(target, 5, 5, 0);
}

void XUser::drag(Widget target, Place from, Place to, const char* key) {
    pressButton(target, from.x, from.y, 0);
    XTestFakeButtonEvent(display_, Button1, True, 0);
    pressButton(target, to.x, to.y, 0);
    settle();
    if (key) this->key(key);
    XTestFakeButtonEvent(display_, Button1, False, 0);
    settle();
}

void XUser::resize(Widget shell, int width, int height) {
    XResizeWindow(display_, XtWindow(shell), static_cast<unsigned>(width), static_cast<unsigned>(height));
    XSync(display_, False);
    settle();
}

void XUser::key(const char* name, const char* held) {
    pressKey(name, held);
    settle();
}

std::map<unsigned, int> XUser::colours(Widget target, int left, int top) const {
    XWindowAttributes place{};
    XGetWindowAttributes(display_, XtWindow(target), &place);
    XImage* image =
        XGetImage(display_, XtWindow(target), left, top, static_cast<unsigned>(place.width - left),
                  static_cast<unsigned>(place.height - top), AllPlanes, ZPixmap);
    if (!image) return {};
    std::map<unsigned long, int> pixels;
    for (int y = 0; y < image->height; ++y)
        for (int x = 0; x < image->width; ++x) ++pixels[XGetPixel(image, x, y)];
    XDestroyImage(image);
    std::map<unsigned, int> found;
    for (const auto& [pixel, count] : pixels) {
        XColor colour{};
        colour.pixel = pixel;
        XQueryColor(display_, place.colormap, &colour);
        const unsigned red = colour.red >> 8U, green = colour.green >> 8U, blue = colour.blue >> 8U;
        found[red << 16U | green << 8U | blue] += count;
    }
    return found;
}

int XUser::darkest(Widget target, int left, int top) const {
    int found = 255;
    for (const auto& [rgb, count] : colours(target, left, top))
        found = std::min(found, static_cast<int>(((rgb >> 16 & 255) + (rgb >> 8 & 255) + (rgb & 255)) / 3));
    return found;
}

void XUser::type(std::string_view text) {
    for (const char c : text) {
        const char name[] = {c, '\0'};
        key(c == '-' ? "minus" : c == '.' ? "period" : name);
    }
}

void XUser::focus(Widget shell) {
    giveKeyboard(XtWindow(shell));
    settle();
}

void XUser::askToClose(Widget shell) {
    XEvent asked{};
    asked.xclient.type = ClientMessage;
    asked.xclient.window = XtWindow(shell);
    asked.xclient.message_type = XInternAtom(display_, "WM_PROTOCOLS", False);
    asked.xclient.format = 32;
    asked.xclient.data.l[0] = static_cast<long>(XInternAtom(display_, "WM_DELETE_WINDOW", False));
    XSendEvent(display_, asked.xclient.window, False, NoEventMask, &asked);
    XSync(display_, False);
}

bool XUser::until(const std::function<bool()>& condition, double seconds) const {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    for (;;) {
        application_.handlePending();
        if (condition()) return true;
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

// Events from the user's connection reach the program through the server: give them two turns.
void XUser::settle() const {
    for (int turn = 0; turn < 3; ++turn) {
        XSync(programDisplay(application_), False);
        application_.handlePending();
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

struct XUser::Watch {
    std::function<bool()> condition;
    std::function<void()> action;
    XtAppContext context;

    static void tick(XtPointer self, XtIntervalId*) {
        std::unique_ptr<Watch> watch(static_cast<Watch*>(self));
        if (watch->condition()) return watch->action();
        Watch* again = watch.release();
        XtAppAddTimeOut(again->context, 10, tick, again);
    }
};

void XUser::when(std::function<bool()> condition, std::function<void()> action) {
    const XtAppContext context = XtDisplayToApplicationContext(programDisplay(application_));
    auto watch = std::make_unique<Watch>(Watch{std::move(condition), std::move(action), context});
    XtAppAddTimeOut(context, 10, Watch::tick, watch.release());
}

Widget XUser::widget(const std::string& name) const {
    // A shell's search goes on into its popups, also into those that are being destroyed.
    for (const Widget shell : mappedShells(application_)) {
        if (XtName(shell) == name) return shell;
        const Widget found = XtNameToWidget(shell, ("*" + name).c_str());
        Widget own = found;
        while (own && !XtIsShell(own)) own = XtParent(own);
        if (own == shell) return found;
    }
    return nullptr;
}

std::string XUser::titleOf(Widget shell) {
    return titleOfWindow(XtDisplay(shell), XtWindow(shell));
}

Widget XUser::shellLike(const std::string& beginning) const {
    for (const Widget shell : mappedShells(application_))
        if (titleOf(shell).starts_with(beginning)) return shell;
    return nullptr;
}

std::string XUser::messageOf(Widget shell) {
    return labelOf(XtNameToWidget(shell, "messageBox"), XmNmessageString);
}

std::string XUser::plain(XmString text) {
    char* held = static_cast<char*>(
        XmStringUnparse(text, nullptr, XmCHARSET_TEXT, XmCHARSET_TEXT, nullptr, 0, XmOUTPUT_ALL));
    std::string result = held ? held : "";
    XtFree(held);
    return result;
}

std::string XUser::labelOf(Widget control, const char* resource) {
    const auto label = resourceOf<XmString>(control, resource);
    std::string text = plain(label);
    XmStringFree(label);
    return text;
}

zTable& XUser::tableIn(Widget frame) {
    return *static_cast<zTable*>(resourceOf<XtPointer>(XtNameToWidget(frame, "*cells"), XmNuserData));
}

std::vector<std::string> XUser::cutTexts(zTable& table) {
    constexpr int margins = 8;
    std::vector<std::string> texts;
    for (int column = 1; column <= table.model().columns(); ++column)
        for (int row = 0; row <= table.model().rows(); ++row)
            if (table.textWidth(table.text({column, row})) + margins > table.columnWidth(column))
                texts.push_back(table.text({column, row}));
    return texts;
}

std::string XUser::textOf(Widget field) {
    char* held = XmTextFieldGetString(field);
    std::string text = held;
    XtFree(held);
    return text;
}

// As another client gets it.
std::string XUser::clipboard() const {
    const Window window = XCreateSimpleWindow(display_, DefaultRootWindow(display_), 0, 0, 1, 1, 0, 0, 0);
    const Atom place = XInternAtom(display_, "PASTED", False);
    XConvertSelection(display_, XInternAtom(display_, "CLIPBOARD", False),
                      XInternAtom(display_, "UTF8_STRING", False), place, window, CurrentTime);
    XEvent answer{};
    std::string text;
    const auto answered = [&] { return XCheckTypedWindowEvent(display_, window, SelectionNotify, &answer); };
    if (until([&] { return answered() == True; }) && answer.xselection.property != None) {
        Atom type = None;
        int format = 0;
        unsigned long length = 0, rest = 0;
        unsigned char* bytes = nullptr;
        XGetWindowProperty(display_, window, place, 0, 1 << 20, True, AnyPropertyType, &type, &format,
                           &length, &rest, &bytes);
        if (bytes) text.assign(reinterpret_cast<char*>(bytes), length);
        XFree(bytes);
    }
    XDestroyWindow(display_, window);
    return text;
}

std::string XUser::tooltipOf(Widget control) {
    Widget shell = control;
    while (!XtIsShell(shell)) shell = XtParent(shell);
    pointAt(shell);  // out of the tip that may stand over the control
    pointAt(control);
    until([this] { return widget("TipLabel") != nullptr; }, 5);
    const Widget tip = widget("TipLabel");
    return tip ? labelOf(tip) : "";
}
