// Windows: built from a layout table, centred and shown.
#pragma once

#include "toolkit/application.h"
#include "toolkit/control.h"
#include "toolkit/layout.h"
#include "toolkit/tooltip.h"
#include "toolkit/widget.h"

#include <functional>
#include <memory>
#include <stdexcept>
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

    // Takes effect at once, without a turn of the event loop.
    void setCursor(int shape);

  protected:
    explicit zWindow(zApplication& application) : application_(application) {}

    // The icon for window managers of both kinds: the hint's pixmap and _NET_WM_ICON.
    void setIcon(int picture);

    Widget shell_ = nullptr;

  private:
    zApplication& application_;
    zPixmap icon_;
};

// A modeless window of its own made from a layout.
class zFormDialog : public zWindow {
  public:
    zFormDialog(zApplication& application, const zLayout& layout);
    ~zFormDialog() override;

    // Centres the window on the screen and shows it.
    void show();

    // The control with this id. The layout must have it, as this kind.
    template <typename Kind> Kind& control(int id) const {
        auto* found = dynamic_cast<Kind*>(find(id));
        if (!found) throw std::logic_error("no such control in the layout");
        return *found;
    }

    // The window manager asks to close the window. Without a handler nothing happens.
    std::function<void()> onClose;

  private:
    zControl* find(int id) const;

    Widget board_ = nullptr;
    std::vector<std::unique_ptr<zControl>> controls_;
    std::unique_ptr<zTooltips> tooltips_;
};
