// The GUI application: connection to the display, event loop, and how a run ends.
#pragma once

#include "toolkit/display/widget.h"

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class zApplication {
  public:
    // `arguments` are those after the program name; Xt takes its own options (-display, -xrm) from them.
    // `fallbacks` are resource lines, terminated by null, that are used if no app-defaults file is found;
    // they must outlive the application. The display is not opened yet.
    zApplication(std::string programName, std::string className, std::vector<std::string> arguments,
                 const char* const* fallbacks);
    ~zApplication();
    zApplication(const zApplication&) = delete;
    zApplication& operator=(const zApplication&) = delete;

    // Connects to the X server. False after one line on standard error if that fails.
    bool openDisplay();

    // Runs until quit() or until SIGINT, SIGTERM or SIGHUP. Returns the exit status: 0 after quit(), 128 plus
    // the signal's number after a signal, with one line on standard error. When the connection to the X
    // server is lost, the process exits with status 1.
    int run();

    // Ends the loop, and every modal loop inside it.
    void quit();
    bool ending() const { return ending_; }

    // Runs a nested loop until `done` is set or the application ends.
    void runUntil(const bool& done);

    // Handles pending events, timers and input without blocking.
    void handlePending();

    // Calls `work` once from the event loop, as soon as no X event, signal or other input is pending.
    void whenQuiet(std::function<void()> work) { quietWork_.push_back(std::move(work)); }

    // Called first when the connection to the X server is lost: brings to an end what must not be left half
    // done. Must not call Xlib.
    std::function<void()> onConnectionLost;

    // Cleans up when the run ends without quit(). Called once; must not call Xlib.
    std::function<void()> onAbort;

    void* display() const;
    std::string displayName() const;  // ":0"; empty before openDisplay

    // A shell widget for a top-level window, not mapped yet. The caller destroys it.
    Widget createShell(const char* name);

  private:
    struct Connection;

    void stoppedBySignal(int number);
    void doQuietWork();

    std::string programName_;
    std::string className_;
    std::vector<std::string> arguments_;
    const char* const* fallbacks_;
    std::unique_ptr<Connection> connection_;
    bool ending_ = false;
    std::deque<std::function<void()>> quietWork_;
    int status_ = 0;
};
