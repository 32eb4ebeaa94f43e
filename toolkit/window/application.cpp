#include "toolkit/window/application.h"

#include "platform/debuglog.h"
#include "toolkit/display/displaycache.h"

#include <X11/Intrinsic.h>
#include <X11/Shell.h>
#include <Xm/Xm.h>
#include <array>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <fmt/core.h>
#include <unistd.h>

namespace {

constexpr std::array endingSignals{SIGINT, SIGTERM, SIGHUP};

// What signal and error handlers can reach.
zApplication* running = nullptr;
std::string runningName;
int signalPipe[2] = {-1, -1};

extern "C" void noteSignal(int number) {
    const int error = errno;
    const auto byte = static_cast<unsigned char>(number);
    const ssize_t ignored = ::write(signalPipe[1], &byte, 1);
    static_cast<void>(ignored);
    errno = error;
}

// The library ends the process when this returns; every X call is forbidden by now.
int connectionLost(Display*) {
    fmt::print(stderr, "{}: the connection to the X server is lost\n", runningName);
    if (running && running->onAbort) running->onAbort();
    std::fflush(nullptr);
    ::_exit(1);
}

// A request that the server refuses is noted; it does not end a tool that may be in the middle of a save.
int requestRefused(Display* display, XErrorEvent* event) {
    std::array<char, 128> text{};
    XGetErrorText(display, event->error_code, text.data(), text.size());
    tvlog << "X error: " << text.data() << ", request " << static_cast<int>(event->request_code) << '.'
          << static_cast<int>(event->minor_code) << std::endl;
    return 0;
}

}  // namespace

struct zApplication::Connection {
    XtAppContext context = nullptr;
    Display* display = nullptr;
    std::unique_ptr<zDisplayCache> kept;
    Widget root = nullptr;  // parent of every window; never shown, so that the library's display object,
                            // which goes with the last shell, lives as long as the connection
};

zApplication::zApplication(std::string programName, std::string className, std::vector<std::string> arguments,
                           const char* const* fallbacks)
    : programName_(std::move(programName)), className_(std::move(className)),
      arguments_(std::move(arguments)), fallbacks_(fallbacks), connection_(std::make_unique<Connection>()) {
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
    for (const int number : endingSignals) ::sigaction(number, &action, nullptr);
    std::signal(SIGPIPE, SIG_IGN);  // a log or driver that goes away is an error of a call, not the end
}

zApplication::~zApplication() {
    for (const int number : endingSignals) std::signal(number, SIG_DFL);
    if (connection_->root) XtDestroyWidget(connection_->root);
    connection_->kept.reset();
    XtDestroyApplicationContext(connection_->context);  // closes the display, too
    for (int& end : signalPipe) {
        ::close(end);
        end = -1;
    }
    running = nullptr;
}

bool zApplication::openDisplay() {
    std::vector<char*> words{programName_.data()};
    for (std::string& argument : arguments_) words.push_back(argument.data());
    words.push_back(nullptr);
    int count = static_cast<int>(words.size()) - 1;
    connection_->display = XtOpenDisplay(connection_->context, nullptr, programName_.c_str(),
                                         className_.c_str(), nullptr, 0, &count, words.data());
    if (connection_->display) {
        connection_->kept = std::make_unique<zDisplayCache>(connection_->display);
        connection_->root =
            XtVaAppCreateShell(programName_.c_str(), className_.c_str(), applicationShellWidgetClass,
                               connection_->display, XmNmappedWhenManaged, False, nullptr);
        return true;
    }
    const char* name = XDisplayName(nullptr);
    fmt::print(stderr, "{}: cannot open the display \"{}\"\n", programName_, name ? name : "");
    return false;
}

int zApplication::run() {
    runUntil(ending_);
    return status_;
}

void zApplication::runUntil(const bool& done) {
    while (!done && !ending_) {
        // The library takes timers first, and where ticks take as long as their periods one of them is always due.
        const XtInputMask others = ticked_ ? XtAppPending(connection_->context) & ~XtIMTimer : 0;
        ticked_ = others != 0;
        XtAppProcessEvent(connection_->context, others ? others : XtIMAll);
    }
}

void zApplication::handlePending() {
    while (const XtInputMask kinds = XtAppPending(connection_->context))
        XtAppProcessEvent(connection_->context, kinds);
}

void zApplication::quit() {
    ending_ = true;
}

void zApplication::stoppedBySignal(int number) {
    if (ending_) return;
    fmt::print(stderr, "{}: stopped by signal {} ({})\n", programName_, number, ::strsignal(number));
    status_ = 128 + number;  // as a shell reports it
    if (onAbort) onAbort();
    quit();
}

void* zApplication::display() const {
    return connection_->display;
}

Widget zApplication::createShell(const char* name) {
    return XtVaCreatePopupShell(name, topLevelShellWidgetClass, connection_->root, XmNmappedWhenManaged,
                                False, XmNallowShellResize, False, XmNdeleteResponse, XmDO_NOTHING, nullptr);
}
