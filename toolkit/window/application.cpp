#include "toolkit/window/application.h"

#include "platform/debuglog.h"
#include "platform/ending.h"
#include "platform/safetext.h"
#include "toolkit/controls/fontsizes.h"
#include "toolkit/display/colours.h"
#include "toolkit/display/displaycache.h"
#include "toolkit/display/fonts.h"
#include "toolkit/library/atoms.h"
#include "toolkit/library/keyboard.h"

#include <X11/Intrinsic.h>
#include <X11/Shell.h>
#include <Xm/Display.h>
#include <Xm/Xm.h>
#include <array>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <fmt/core.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr std::array endingSignals{SIGINT, SIGTERM, SIGHUP};
std::array<std::string, endingSignals.size()> signalLines;  // what is said when they come

// For the signal and error handlers.
zApplication* running = nullptr;
std::string runningName;
int signalPipe[2] = {-1, -1};

// A server that stands still must not hold up the end: what waits for it fails when the connection is shut
// down.
volatile std::sig_atomic_t connection = -1;  // the descriptor
volatile std::sig_atomic_t endedBy = 0;      // the first signal
constexpr int graceMicroseconds = 400'000;   // of a second that the end may take

const std::string& signalLine(int number) {
    std::size_t at = 0;
    while (at + 1 < endingSignals.size() && endingSignals[at] != number) ++at;
    return signalLines[at];
}

// While the connection is being opened its descriptor is not known, and nothing has been begun.
void endAtOnce() {
    const std::string& line = signalLine(endedBy);
    pollfd reader{STDERR_FILENO, POLLOUT, 0};
    const ssize_t ignored = ::poll(&reader, 1, 0) > 0 ? ::write(STDERR_FILENO, line.data(), line.size()) : 0;
    static_cast<void>(ignored);
    ::_exit(128 + endedBy);
}

extern "C" void shutConnection(int) {
    const int error = errno;
    if (connection < 0) endAtOnce();
    ::shutdown(connection, SHUT_RDWR);
    errno = error;
}

void setGrace(int microseconds) {
    constexpr int second = 1'000'000;
    const itimerval once{{0, 0}, {microseconds / second, microseconds % second}};
    ::setitimer(ITIMER_REAL, &once, nullptr);
}

extern "C" void noteSignal(int number) {
    const int error = errno;
    if (!endedBy) {
        endedBy = number;
        setGrace(graceMicroseconds);
    }
    platform::noteEndAsked();
    const auto byte = static_cast<unsigned char>(number);
    const ssize_t ignored = ::write(signalPipe[1], &byte, 1);
    static_cast<void>(ignored);
    errno = error;
}

// As nohup does it.
bool isIgnored(int number) {
    struct sigaction now {};
    return ::sigaction(number, nullptr, &now) == 0 && now.sa_handler == SIG_IGN;
}

// Between the steps of work that has to be finished, also when the server is lost.
bool painting = false, lostInPainting = false;

[[noreturn]] void endLost() {
    const int number = endedBy;
    if (!number)
        fmt::print(stderr, "{}: the connection to the X server is lost\n", runningName);
    else if (running && !running->ending())
        fmt::print(stderr, "{}", signalLine(number));
    if (running && running->onConnectionLost) running->onConnectionLost();
    if (running && running->onAbort) running->onAbort();
    std::fflush(nullptr);
    ::_exit(number ? 128 + number : 1);
}

// Xlib ends the process when this and the handler for that have returned. No X call is allowed here.
int connectionLost(Display*) {
    if (!painting) endLost();
    lostInPainting = true;
    return 0;
}

// In place of the end: from here on calls on this display do nothing.
void goOnWithoutServer(Display*, void*) {}

// What the server has asked for so far; no answer is waited for.
void paintNow(Display* display) {
    XEvent event;
    while (XCheckMaskEvent(display, ExposureMask | StructureNotifyMask, &event)) XtDispatchEvent(&event);
    XFlush(display);
}

// X errors are logged and not fatal: the program may be in the middle of a save.
int requestRefused(Display* display, XErrorEvent* event) {
    std::array<char, 128> text{};
    XGetErrorText(display, event->error_code, text.data(), text.size());
    tvlog << "X error: " << text.data() << ", request " << static_cast<int>(event->request_code) << '.'
          << static_cast<int>(event->minor_code) << std::endl;
    return 0;
}

// Where pixel values index a colour map, the server's Render extension may draw texts as black boxes (Xvfb's
// does): Xft does without the extension there. To be called before a font is opened.
void avoidRenderOnColourMaps(Display* display) {
    if (DefaultVisual(display, DefaultScreen(display))->c_class == TrueColor) return;
    XrmDatabase resources = XtDatabase(display);
    XrmPutStringResource(&resources, "Xft.render", "false");
}

}  // namespace

struct zApplication::Connection {
    XtAppContext context = nullptr;
    Display* display = nullptr;
    std::unique_ptr<zDisplayCache> cache;
    // Parent of every shell, never mapped: Motif's display object, destroyed with the last shell, then lives
    // as long as the connection. Its window is the client leader of the others.
    Widget root = nullptr;
};

zApplication::zApplication(std::string command, std::string className, std::vector<std::string> arguments,
                           const char* const* fallbacks)
    : command_(std::move(command)), programName_(command_.substr(command_.rfind('/') + 1)),
      className_(std::move(className)), arguments_(std::move(arguments)), fallbacks_(fallbacks),
      connection_(std::make_unique<Connection>()) {
    running = this;
    runningName = programName_;
    XtToolkitInitialize();
    XSetIOErrorHandler(connectionLost);
    XSetErrorHandler(requestRefused);
    connection_->context = XtCreateApplicationContext();
    XtAppSetFallbackResources(connection_->context, const_cast<String*>(fallbacks_));

    if (::pipe2(signalPipe, O_CLOEXEC | O_NONBLOCK) != 0) return;
    const auto wakened = [](XtPointer self, int* source, XtInputId*) {
        unsigned char number = 0;
        if (::read(*source, &number, 1) == 1) static_cast<zApplication*>(self)->stoppedBySignal(number);
    };
    XtAppAddInput(connection_->context, signalPipe[0], reinterpret_cast<XtPointer>(XtInputReadMask), wakened,
                  this);
    struct sigaction action {};
    action.sa_handler = noteSignal;
    endedBy = 0;
    for (std::size_t i = 0; i < endingSignals.size(); ++i)
        signalLines[i] = fmt::format("{}: stopped by signal {} ({})\n", programName_, endingSignals[i],
                                     ::strsignal(endingSignals[i]));
    for (const int number : endingSignals)
        if (!(number == SIGHUP && isIgnored(number))) ::sigaction(number, &action, nullptr);
    action.sa_handler = shutConnection;
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGALRM, &action, nullptr);
    // A lost log or driver, and a file that the process may not let grow, are reported by the call that
    // writes.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

zApplication::~zApplication() {
    for (const int number : endingSignals)
        if (!isIgnored(number)) std::signal(number, SIG_DFL);
    if (connection_->root) XtDestroyWidget(connection_->root);
    connection_->cache.reset();
    XtDestroyApplicationContext(connection_->context);  // closes the display, too
    setGrace(0);
    connection = -1;
    for (int& end : signalPipe) {
        ::close(end);
        end = -1;
    }
    running = nullptr;
}

bool zApplication::openDisplay() {
    if (!zAnyFont()) {
        fmt::print(stderr, "{}: Fontconfig finds no fonts\n", programName_);
        return false;
    }
    std::vector<char*> words{command_.data()};
    for (std::string& argument : arguments_) words.push_back(argument.data());
    words.push_back(nullptr);
    int count = static_cast<int>(words.size()) - 1;
    connection_->display = XtOpenDisplay(connection_->context, nullptr, nullptr, className_.c_str(), nullptr,
                                         0, &count, words.data());
    if (connection_->display) {
        connection = ConnectionNumber(connection_->display);
        XSetIOErrorExitHandler(connection_->display, goOnWithoutServer, nullptr);
        avoidRenderOnColourMaps(connection_->display);
        zInternAtoms(connection_->display);
        zFollowColours(connection_->display);
        for (const std::string& refused : zChooseFontSizes(connection_->display, largest_))
            fmt::print(stderr, "{}: {}\n", programName_, refused);
        std::string refused;
        placing_.place = zTakePlace(connection_->display, refused);
        if (!refused.empty())
            fmt::print(stderr, "{}: geometry \"{}\" ignored\n", programName_, platform::escaped(refused));
        connection_->cache = std::make_unique<zDisplayCache>(connection_->display);
        if (!connection_->cache->alarms().working()) {
            fmt::print(stderr, "{}: no descriptor is left for timers\n", programName_);
            return false;
        }
        unusedArguments_.assign(words.begin() + 1, words.begin() + count);
        String name = nullptr, ofClass = nullptr;
        XtGetApplicationNameAndClass(connection_->display, &name, &ofClass);
        const zKeyboardTable keys(
            connection_->display);  // the library reads its own keys with its first widget
        connection_->root =
            XtVaAppCreateShell(name, ofClass, applicationShellWidgetClass, connection_->display, XmNwidth, 1,
                               XmNheight, 1, XmNtitle, name, XmNmappedWhenManaged, False, nullptr);
        // Labels cannot be dragged: of one that goes meanwhile the library leaves the drag icon behind.
        XtVaSetValues(XmGetXmDisplay(connection_->display), XmNenableUnselectableDrag, False, nullptr);
        XtRealizeWidget(connection_->root);
        zReadPlacing(connection_->root, placing_);
        return true;
    }
    fmt::print(stderr, "{}: cannot open the display \"{}\"\n", programName_, wantedDisplay());
    return false;
}

// As Xt has looked for it.
std::string zApplication::wantedDisplay() const {
    static char option[] = "-display", specifier[] = ".display";
    XrmOptionDescRec options[] = {{option, specifier, XrmoptionSepArg, nullptr}};
    std::vector<std::string> held{command_};
    held.insert(held.end(), arguments_.begin(), arguments_.end());
    std::vector<char*> words;
    words.reserve(held.size() + 1);
    for (std::string& word : held) words.push_back(word.data());
    words.push_back(nullptr);
    int count = static_cast<int>(held.size());
    XrmDatabase found = nullptr;
    XrmParseCommand(&found, options, XtNumber(options), "x", &count, words.data());
    char* type = nullptr;
    XrmValue value{};
    const bool given = found && XrmGetResource(found, "x.display", "X.Display", &type, &value);
    const char* name = XDisplayName(given ? value.addr : nullptr);
    std::string text = name ? name : "";
    if (found) XrmDestroyDatabase(found);
    return text;
}

int zApplication::run() {
    runUntil(ending_);
    return status_;
}

void zApplication::runUntil(const bool& done) {
    // Ticks wait until it is quiet: where they take as long as their periods, one is always due and no event
    // would be handled if they came first.
    while (!done && !ending_) {
        if (quietWork_.empty() || XtAppPending(connection_->context))
            XtAppProcessEvent(connection_->context, XtIMAll);
        else
            doQuietWork();
    }
}

void zApplication::handlePending() {
    for (;;) {
        if (const XtInputMask kinds = XtAppPending(connection_->context))
            XtAppProcessEvent(connection_->context, kinds);
        else if (!quietWork_.empty())
            doQuietWork();
        else
            return;
    }
}

// The work must go on: a server that takes nothing for so long is given up.
bool zApplication::paintBetween(const std::function<void()>& change) {
    constexpr int patience = 2'000'000;  // microseconds
    if (lostInPainting) return false;
    painting = true;
    if (!endedBy) setGrace(patience);
    change();
    paintNow(connection_->display);
    setGrace(endedBy ? graceMicroseconds : 0);
    painting = false;
    return !lostInPainting;
}

void zApplication::endWithoutServer() {
    endLost();
}

void zApplication::doQuietWork() {
    const std::function<void()> work = std::move(quietWork_.front());
    quietWork_.pop_front();
    work();
}

void zApplication::quit() {
    ending_ = true;
}

void zApplication::stoppedBySignal(int number) {
    if (ending_) return;
    fmt::print(stderr, "{}", signalLine(number));
    status_ = 128 + number;  // as the shell reports it
    if (onAbort) onAbort();
    quit();
}

std::string zApplication::displayName() const {
    return connection_->display ? DisplayString(connection_->display) : "";
}

void* zApplication::display() const {
    return connection_->display;
}

Widget zApplication::createShell(const char* name) {
    return XtVaCreatePopupShell(name, topLevelShellWidgetClass, connection_->root, XmNmappedWhenManaged,
                                False, XmNallowShellResize, False, XmNdeleteResponse, XmDO_NOTHING, nullptr);
}
