// Windows that are built from layout tables.
#pragma once

#include "toolkit/controls/board.h"
#include "toolkit/controls/layout.h"
#include "toolkit/display/picture.h"
#include "toolkit/display/widget.h"
#include "toolkit/window/afterpainting.h"
#include "toolkit/window/application.h"
#include "toolkit/window/shell.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

// Shapes of the X cursor font.
constexpr int zArrowCursor = 2;
constexpr int zWatchCursor = 150;

class zWindow {
  public:
    virtual ~zWindow() = default;

    Widget shell() const { return shell_; }
    zApplication& application() const { return application_; }

    // Takes effect at once, not only when the event loop runs.
    void setCursor(int shape);
    int cursor() const { return cursor_; }

    void setTitle(const std::string& title);  // see title.h

    // Calls for the user's attention until it is called with an empty text: the text stands in front of the
    // title, the icon is another one, and window managers are told that it is urgent.
    void setAlert(const std::string& text, int icon);

  protected:
    explicit zWindow(zApplication& application) : application_(application) {}

    // Sets the icon both as WM_HINTS pixmap and as _NET_WM_ICON.
    void setIcon(int picture);

    Widget shell_ = nullptr;

  private:
    void showIcon();

    zApplication& application_;
    int cursor_ = zArrowCursor;
    std::string title_, alert_;
    int icon_ = 0, alertIcon_ = 0;
};

enum class zModality { modal, modeless };

// A window built from a layout: a top-level window, or a dialog with a parent window.
class zFormDialog : public zWindow {
  public:
    zFormDialog(zApplication& application, const zLayout& layout);
    zFormDialog(zWindow& parent, const zLayout& layout, zModality modality = zModality::modal);
    // A modeless dialog about a control, which must outlive the dialog. It is shown at the lower edge of the
    // control's window, and takes input while that window does.
    zFormDialog(zApplication& application, const zControl& about, const zLayout& layout);
    ~zFormDialog() override;

    // Makes it the program's main window: -geometry, -title and -iconic act on it, and session managers learn
    // the command line from it. Before show().
    void obeyCommandLine();

    // Shows the window: where the user has said, or in the middle of the screen, and beside the last one if
    // one of those shown before stands there. A window that can be resized comes in the size that the last
    // one of its layout had.
    void show();

    // Shows a modeless dialog of this window in place of the one before. It takes input while this window
    // does, and goes with it.
    void openBeside(std::unique_ptr<zFormDialog> dialog);
    void closeBeside();  // the dialog itself may call it

    // Shows the dialog until endModal() is called or the application ends, then unmaps it. Meanwhile the
    // other windows take no input and ignore requests to close them.
    void runModal();
    void endModal() { done_ = true; }

    // The same, but it stays on the screen, taking no input, until it is destroyed.
    void runModalAndStay();

    zBoard& board() const { return *board_; }
    template <typename Kind> Kind& control(int id) const { return board_->control<Kind>(id); }

    // The window manager asks to close the window. Not called while a modal dialog is open above it.
    std::function<void()> onClose;

    // Called once, from the event loop, when show() has brought the window to the screen and it has been
    // painted. To be set before.
    std::function<void()> onPainted;

    // Calls `pressed` for a key, named as in keysymdef.h ("F5"), without Shift, Control or Alt, or with
    // Control ("Ctrl+R"), whatever control of the board has the focus. Presses that come while it runs are
    // dropped.
    void onKey(const char* name, std::function<void()> pressed);

    // Calls `asked` for the help key (F1), whatever has the focus, also on pages that are created later.
    void onHelp(std::function<void()> asked);

    const char* name() const { return layout_.name; }

  protected:
    // Creates the windows. Call it when the board is complete, before the window is shown for the first time.
    void realize();

  private:
    struct Help;
    struct Key;
    struct Painting;
    struct Sizing;

    void build(const zLayout& layout);
    void makeDialog(Widget parent, zModality modality);
    void placeShell();
    void fillWindow();

    const zLayout& layout_;
    std::unique_ptr<zBoard> board_;
    std::unique_ptr<zAfterPainting> painting_;
    std::vector<std::unique_ptr<Key>> keys_;
    std::function<void()> help_;
    std::unique_ptr<zFormDialog> beside_;
    bool realized_ = false;
    bool done_ = false;
    bool besideIsModal_ = false;
    bool stays_ = false;  // on the screen, after runModalAndStay()
    bool isMain_ = false;
    Widget above_ = nullptr;  // the window at whose lower edge it is shown
    std::string place_;       // the user's; empty: centred
    zSpot spot_;              // where show() has put it
    zRect filled_;            // the size that its controls fill
};
