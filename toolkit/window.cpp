#include "toolkit/window.h"

#include "toolkit/place.h"

#include <X11/Shell.h>
#include <X11/Xatom.h>
#include <X11/cursorfont.h>
#include <Xm/BulletinB.h>
#include <Xm/Protocols.h>
#include <Xm/Xm.h>
#include <algorithm>

static_assert(zArrowCursor == XC_arrow && zWatchCursor == XC_watch);

void zWindow::setCursor(int shape) {
    if (!XtIsRealized(shell_)) return;
    Display* display = XtDisplay(shell_);
    const Cursor cursor = XCreateFontCursor(display, static_cast<unsigned>(shape));
    XDefineCursor(display, XtWindow(shell_), cursor);
    XFreeCursor(display, cursor);  // the server keeps it while a window shows it
    XFlush(display);
}

void zWindow::setIcon(int picture) {
    Pixel background = 0;
    XtVaGetValues(shell_, XmNbackground, &background, nullptr);
    icon_ = zPixmap(shell_, picture, background);
    if (!icon_) return;
    XtVaSetValues(shell_, XmNiconPixmap, icon_.handle(), nullptr);
    const std::vector<unsigned long> data = zIconData(picture);
    Display* display = XtDisplay(shell_);
    XChangeProperty(display, XtWindow(shell_), XInternAtom(display, "_NET_WM_ICON", False), XA_CARDINAL, 32,
                    PropModeReplace, reinterpret_cast<const unsigned char*>(data.data()),
                    static_cast<int>(data.size()));
}

zFormDialog::zFormDialog(zApplication& application, const zLayout& layout) : zWindow(application) {
    shell_ = application.createShell(layout.name);
    XtVaSetValues(shell_, XmNtitle, layout.caption, XmNiconName, layout.caption, nullptr);
    const char* fonts = zRenderTableName(layout.font);
    board_ = XtVaCreateWidget("board", xmBulletinBoardWidgetClass, shell_, XmNmarginWidth, 0, XmNmarginHeight,
                              0, XmNresizePolicy, XmRESIZE_NONE, zTypedFonts(fonts), nullptr);

    const zDialogUnits units = zDialogUnits::ofBoard(board_);
    const zRect size = units.pixels({0, 0, layout.width, layout.height});
    XtVaSetValues(board_, XmNwidth, size.width, XmNheight, size.height, nullptr);
    XtVaSetValues(shell_, XmNminWidth, size.width, XmNmaxWidth, size.width, XmNminHeight, size.height,
                  XmNmaxHeight, size.height, nullptr);
    tooltips_ = std::make_unique<zTooltips>(board_);
    for (const zControlRow& row : layout.rows) {
        controls_.push_back(zControl::create(board_, units, row));
        if (row.tooltip) tooltips_->add(controls_.back()->outermost(), row.tooltip);
    }
    XtManageChild(board_);

    const auto closing = [](Widget, XtPointer self, XtPointer) {
        if (const auto handler = static_cast<zFormDialog*>(self)->onClose) handler();
    };
    XmAddWMProtocolCallback(shell_, XInternAtom(XtDisplay(shell_), "WM_DELETE_WINDOW", False), closing, this);

    XtRealizeWidget(shell_);
    tooltips_->realized();
    setIcon(layout.icon);
}

zFormDialog::~zFormDialog() {
    tooltips_.reset();
    controls_.clear();
    zDestroyShell(shell_);
}

void zFormDialog::show() {
    zCentre(shell_);
    XtMapWidget(shell_);
}

zControl* zFormDialog::find(int id) const {
    const auto found = std::find_if(controls_.begin(), controls_.end(),
                                    [id](const auto& control) { return control->id() == id; });
    return found == controls_.end() ? nullptr : found->get();
}
