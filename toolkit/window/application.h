// The GUI application: display connection, event loop, and the ways in which a run ends.
#pragma once

#include "toolkit/display/widget.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

class zApplication {
  public:
    // `arguments` are those after the program name; what the window system understands of them (-display,
    // -xrm) it takes. `fallbacks` are resource lines, ended by null, for when no app-defaults file is found;
    // they must outlive the application. The display is not opened yet.
    zApplication(std::string programName, std::string className, std::vector<std::string> arguments,
                 const char* const* fallbacks);
    ~zApplication();
    zApplication(const zApplication&) = delete;
    zApplication& operator=(const zApplication&) = delete;

    // Connects to the X server. False, and one line on standard error, when there is none.
    bool openDisplay();

    // Runs until quit(), SIGINT, SIGTERM or SIGHUP, or until the X server is gone. Returns the exit status: 0
    // after quit(), otherwise not 0, with one line on standard error.
    int run();

    // Ends the loop, and every modal loop inside it.
    void quit();
    bool ending() const { return ending_; }

    // Runs a nested loop until `done` is set or the application ends.
    void runUntil(const bool& done);

    // Handles what is waiting, without waiting for more.
    void handlePending();

    // A timer has ticked: what has come meanwhile goes before the next one.
    void ticked() { ticked_ = true; }

    // What has to be tidied up when the run ends without quit(). Called once, with no X call allowed.
    std::function<void()> onAbort;

    void* display() const;

    // A shell widget for a window of its own, not shown yet. The caller destroys it.
    Widget createShell(const char* name);

  private:
    struct Connection;

    void stoppedBySignal(int number);

    std::string programName_;
    std::string className_;
    std::vector<std::string> arguments_;
    const char* const* fallbacks_;
    std::unique_ptr<Connection> connection_;
    bool ending_ = false;
    bool ticked_ = false;
    int status_ = 0;
};
