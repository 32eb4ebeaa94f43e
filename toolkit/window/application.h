// The GUI application: connection to the display, event loop, and how a run ends.
#pragma once

#include "toolkit/controls/layout.h"
#include "toolkit/display/widget.h"
#include "toolkit/window/placing.h"

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class zApplication {
  public:
    // `command` is the program as it was called, with or without a path. `arguments` are those after it.
    // `fallbacks` are resource lines, terminated by null, that are used if no app-defaults file is found;
    // they must outlive the application. The display is not opened yet.
    zApplication(std::string command, std::string className, std::vector<std::string> arguments,
                 const char* const* fallbacks);
    ~zApplication();
    zApplication(const zApplication&) = delete;
    zApplication& operator=(const zApplication&) = delete;

    // The size of the largest dialog, in dialog units of the plain font: on a screen without room for it the
    // fonts are smaller (fontsizes.h). Before openDisplay().
    void fitScreen(int width, int height) { largest_ = {.width = width, .height = height}; }

    // Connects to the X server, and takes the options of X programs (-display, -name, -xrm...) from the
    // arguments. False after one line on standard error if that fails.
    bool openDisplay();

    const std::string& programName() const { return programName_; }  // without a path
    const std::vector<std::string>& arguments() const { return arguments_; }
    const std::string& command() const { return command_; }
    // The arguments that are no options of X programs. Empty before openDisplay().
    const std::vector<std::string>& unusedArguments() const { return unusedArguments_; }

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

    // For work that holds the event loop up: calls `change`, which may change what windows show, and paints
    // what has become visible. Keys and buttons wait. False when the connection to the X server is lost: call
    // nothing of windows any more, bring the work to its end, and then endWithoutServer().
    bool paintBetween(const std::function<void()>& change);
    [[noreturn]] static void endWithoutServer();

    // Calls `work` once from the event loop, as soon as no X event, signal or other input is pending.
    void whenQuiet(std::function<void()> work) { quietWork_.push_back(std::move(work)); }

    // Called first when the connection to the X server is lost: brings to an end what must not be left half
    // done. Must not call Xlib.
    std::function<void()> onConnectionLost;

    // Cleans up when the run ends without quit(). Called once; must not call Xlib.
    std::function<void()> onAbort;

    void* display() const;
    std::string displayName() const;  // ":0"; empty before openDisplay

    const zPlacing& placing() const { return placing_; }  // empty before openDisplay

    // A shell widget for a top-level window, not mapped yet. The caller destroys it.
    Widget createShell(const char* name);

  private:
    struct Connection;

    void stoppedBySignal(int number);
    void doQuietWork();

    std::string wantedDisplay() const;

    std::string command_;
    std::string programName_;
    std::string className_;
    std::vector<std::string> arguments_;
    std::vector<std::string> unusedArguments_;
    const char* const* fallbacks_;
    std::unique_ptr<Connection> connection_;
    bool ending_ = false;
    std::deque<std::function<void()>> quietWork_;
    int status_ = 0;
    zRect largest_;
    zPlacing placing_;
};
