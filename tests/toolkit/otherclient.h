// Another client of the display, which owns selections and hears the bell.
#pragma once

#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <atomic>

class OtherClient {
  public:
    // Owns PRIMARY and CLIPBOARD with these texts, in Latin-1. While `silent` it answers no requests.
    OtherClient(std::string primary, std::string clipboard)
        : primary_(std::move(primary)), clipboard_(std::move(clipboard)) {
        for (const Atom selection : {XA_PRIMARY, atom("CLIPBOARD")})
            XSetSelectionOwner(display_, selection, window_, CurrentTime);
        int event = 0, error = 0, opcode = 0, major = XkbMajorVersion, minor = XkbMinorVersion;
        XkbQueryExtension(display_, &opcode, &event, &error, &major, &minor);
        bell_ = event;
        XkbSelectEvents(display_, XkbUseCoreKbd, XkbBellNotifyMask, XkbBellNotifyMask);
        XSync(display_, False);
        thread_ = std::jthread([this](const std::stop_token& stop) {
            while (!stop.stop_requested()) serve();
        });
    }
    ~OtherClient() {
        thread_ = {};
        XCloseDisplay(display_);
    }
    OtherClient(const OtherClient&) = delete;
    OtherClient& operator=(const OtherClient&) = delete;

    Window window() const { return window_; }

    std::atomic<int> bells = 0;
    std::atomic<bool> silent = false;

  private:
    Atom atom(const char* name) { return XInternAtom(display_, name, False); }

    void serve() {
        if (silent || !XPending(display_)) {
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
            return;
        }
        XEvent event;
        XNextEvent(display_, &event);
        if (event.type == bell_) ++bells;
        if (event.type != SelectionRequest) return;
        const XSelectionRequestEvent& asked = event.xselectionrequest;
        XEvent answer{};
        XSelectionEvent& told = answer.xselection;
        told.type = SelectionNotify;
        told.requestor = asked.requestor;
        told.selection = asked.selection;
        told.target = asked.target;
        told.time = asked.time;
        const std::string& text = asked.selection == XA_PRIMARY ? primary_ : clipboard_;
        const Atom targets[] = {XA_STRING};
        const bool list = asked.target == atom("TARGETS");
        if (list)
            XChangeProperty(display_, asked.requestor, asked.property, XA_ATOM, 32, PropModeReplace,
                            reinterpret_cast<const unsigned char*>(targets), 1);
        else if (asked.target == XA_STRING)
            XChangeProperty(display_, asked.requestor, asked.property, XA_STRING, 8, PropModeReplace,
                            reinterpret_cast<const unsigned char*>(text.data()),
                            static_cast<int>(text.size()));
        if (list || asked.target == XA_STRING) told.property = asked.property;
        XSendEvent(display_, asked.requestor, False, NoEventMask, &answer);
        XFlush(display_);
    }

    Display* display_ = XOpenDisplay(nullptr);
    Window window_ = XCreateSimpleWindow(display_, DefaultRootWindow(display_), 0, 0, 1, 1, 0, 0, 0);
    int bell_ = -1;
    std::string primary_, clipboard_;
    std::jthread thread_;
};
