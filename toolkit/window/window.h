// Windows: built from a layout table, centred and shown.
#pragma once

#include "toolkit/controls/board.h"
#include "toolkit/controls/layout.h"
#include "toolkit/display/picture.h"
#include "toolkit/display/widget.h"
#include "toolkit/window/application.h"

#include <functional>
#include <memory>
#include <string>

// Shapes of the X cursor font.
constexpr int zArrowCursor = 2;
constexpr int zWatchCursor = 150;

class zWindow {
  public:
    virtual ~zWindow() = default;

    Widget shell() const { return shell_; }
    zApplication& application() const { return application_; }

    // Takes effect at once, without a turn of the event loop.
    void setCursor(int shape);
    int cursor() const { return cursor_; }

    void setTitle(const std::string& title);

  protected:
    explicit zWindow(zApplication& application) : application_(application) {}

    // The icon for window managers of both kinds: the hint's pixmap and _NET_WM_ICON.
    void setIcon(int picture);

    Widget shell_ = nullptr;

  private:
    zApplication& application_;
    int cursor_ = zArrowCursor;
};

// A window made from a layout: of its own, or a modal dialog above another window.
class zFormDialog : public zWindow {
  public:
    zFormDialog(zApplication& application, const zLayout& layout);
    zFormDialog(zWindow& parent, const zLayout& layout);
    ~zFormDialog() override;

    // Centres the window on the screen and shows it.
    void show();

    // Shows a dialog and returns when endModal was called or the application ends. The other windows take no
    // input meanwhile and are not closed. The dialog is then off the screen.
    void runModal();
    void endModal() { done_ = true; }

    zBoard& board() const { return *board_; }
    template <typename Kind> Kind& control(int id) const { return board_->control<Kind>(id); }

    // The window manager asks to close the window. Without a handler, or under a modal dialog, nothing happens.
    std::function<void()> onClose;

  protected:
    // To be called when everything is on the board, before the window is shown for the first time.
    void realize();

  private:
    void build(const zLayout& layout);

    const zLayout& layout_;
    std::unique_ptr<zBoard> board_;
    bool realized_ = false;
    bool done_ = false;
};
