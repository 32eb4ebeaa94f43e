#include "toolkit/window/window.h"

#include "toolkit/display/displaycache.h"
#include "toolkit/window/modal.h"
#include "toolkit/window/shell.h"

#include <X11/Shell.h>
#include <X11/Xatom.h>
#include <X11/cursorfont.h>
#include <Xm/Xm.h>

static_assert(zArrowCursor == XC_arrow && zWatchCursor == XC_watch);

void zWindow::setCursor(int shape) {
    cursor_ = shape;
    if (!XtIsRealized(shell_)) return;
    Display* display = XtDisplay(shell_);
    XDefineCursor(display, XtWindow(shell_), zDisplayCache::of(display).cursor(shape));
    XFlush(display);
}

void zWindow::setIcon(int picture) {
    Pixel background = 0;
    XtVaGetValues(shell_, XmNbackground, &background, nullptr);
    const Pixmap icon = zPixmapOf(shell_, picture, background);
    if (!icon) return;
    XtVaSetValues(shell_, XmNiconPixmap, icon, nullptr);
    const std::vector<unsigned long> data = zIconData(picture);
    Display* display = XtDisplay(shell_);
    XChangeProperty(display, XtWindow(shell_), XInternAtom(display, "_NET_WM_ICON", False), XA_CARDINAL, 32,
                    PropModeReplace, reinterpret_cast<const unsigned char*>(data.data()),
                    static_cast<int>(data.size()));
}

void zWindow::setTitle(const std::string& title) {
    XtVaSetValues(shell_, XmNtitle, title.c_str(), XmNiconName, title.c_str(), nullptr);
}

zFormDialog::zFormDialog(zApplication& application, const zLayout& layout)
    : zWindow(application), layout_(layout) {
    shell_ = application.createShell(layout.name);
    build(layout);
    XtManageChild(board_->widget());
}

zFormDialog::zFormDialog(zWindow& parent, const zLayout& layout)
    : zWindow(parent.application()), layout_(layout) {
    shell_ = zCreateModalShell(layout.name, parent.shell());
    build(layout);
    XtVaSetValues(board_->widget(), XmNdialogStyle, XmDIALOG_FULL_APPLICATION_MODAL, nullptr);
}

void zFormDialog::build(const zLayout& layout) {
    setTitle(layout.caption);
    board_ = std::make_unique<zBoard>(shell_, "board", layout);
    const zRect& size = board_->size();
    XtVaSetValues(shell_, XmNminWidth, size.width, XmNmaxWidth, size.width, XmNminHeight, size.height,
                  XmNmaxHeight, size.height, nullptr);
    const auto closing = [](Widget, XtPointer self, XtPointer) {
        auto* dialog = static_cast<zFormDialog*>(self);
        if (zBlockedByModal(dialog->shell())) return;
        if (const auto handler = dialog->onClose) handler();
    };
    zOnCloseRequest(shell_, closing, this);
}

zFormDialog::~zFormDialog() {
    board_.reset();
    zDestroyShell(shell_);
}

void zFormDialog::realize() {
    if (realized_) return;
    realized_ = true;
    XtRealizeWidget(shell_);
    XtRealizeWidget(board_->widget());  // not managed in a dialog before it is shown
    board_->realized();
    setIcon(layout_.icon);
}

void zFormDialog::show() {
    realize();
    zCentreShell(shell_);
    XtMapWidget(shell_);
}

void zFormDialog::runModal() {
    realize();
    done_ = false;
    zRunModal(application(), shell_, board_->widget(), done_);
}
