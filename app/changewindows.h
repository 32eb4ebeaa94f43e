// A change of an adapter's configuration with windows: questions are asked, and what is to be said of it
// comes in boxes. What nobody can read any more stands on standard error, once.
#pragma once

#include "change/adapterchange.h"
#include "toolkit/window/window.h"

#include <chrono>
#include <deque>
#include <functional>
#include <optional>

class ChangeWindows {
  public:
    // `order` tells what to change when it comes to that, also when the X server is lost before.
    ChangeWindows(zWindow& parent, Configuration& configuration, int adapter,
                  std::function<ChangeOrder()> order);
    ~ChangeWindows();
    ChangeWindows(const ChangeWindows&) = delete;
    ChangeWindows& operator=(const ChangeWindows&) = delete;

    // Says what the driver is told to do, in a window that is on the screen meanwhile.
    using Say = std::function<void(const std::string& doing)>;

    // Asks, above this window, until the change is done. Boxes are shown afterwards, when other windows have
    // gone.
    void carryOut(zWindow& above, Say say = {});
    void showBoxes();

  private:
    struct Box {
        std::string text;
        const char* title;
    };

    void begin();
    void conclude();
    void printBoxes();
    void finishWithoutWindows();
    void paint(const std::string& doing);
    std::optional<Question> run();

    zWindow& parent_;
    Configuration& configuration_;
    int adapter_;
    std::function<ChangeOrder()> order_;
    std::function<void()> onConnectionLost_;  // the application's handler before this one
    bool signalling_ = false;                 // the user has changed its settings
    std::optional<AdapterChange> change_;
    std::deque<Box> boxes_;  // that nobody has seen yet
    bool concluded_ = false, printed_ = false;
    Say say_;
    bool serverLost_ = false;  // while the driver was told
};

// Lists that the driver has and no file: at the end of a run, as long as windows can ask and say something.
void saveUnsavedListsAsking(zWindow& parent, Configuration& configuration);

// The same without windows; `patience`: with others who hold the lock. What is not saved stands on standard
// error.
void saveUnsavedLists(Configuration& configuration,
                      std::chrono::milliseconds patience = std::chrono::seconds(5));
