#include "toolkit/window/window.h"

#include "toolkit/display/displaycache.h"
#include "toolkit/library/children.h"
#include "toolkit/window/modal.h"
#include "toolkit/window/shell.h"
#include "toolkit/window/title.h"

#include <X11/Shell.h>
#include <X11/Xatom.h>
#include <X11/cursorfont.h>
#include <Xm/Xm.h>
#include <algorithm>
#include <cstdlib>
#include <map>

namespace {

// Calls `visit` for a widget and all below it.
template <class Visit> void forEachWidget(Widget top, const Visit& visit) {
    if (XtIsWidget(top)) visit(top);  // and no gadget, which has no window
    for (const Widget child : zChildren(top)) forEachWidget(child, visit);
}

void setCommand(Widget shell, const zApplication& application) {
    std::vector<std::string> words = application.arguments();
    words.insert(words.begin(), application.command());
    std::vector<char*> places;
    places.reserve(words.size());
    for (std::string& word : words) places.push_back(word.data());
    XSetCommand(XtDisplay(shell), XtWindow(shell), places.data(), static_cast<int>(places.size()));
}

// While the program runs: of each layout that can be resized the last size, and the windows that were shown
// without a place of the user's, but modal ones.
std::map<const zLayout*, zRect> lastSizes;
std::vector<const zFormDialog*> shownWindows;

}  // namespace

static_assert(zArrowCursor == XC_arrow && zWatchCursor == XC_watch);

void zWindow::setCursor(int shape) {
    cursor_ = shape;
    if (!XtIsRealized(shell_)) return;
    Display* display = XtDisplay(shell_);
    XDefineCursor(display, XtWindow(shell_), zDisplayCache::of(display).cursor(shape));
    XFlush(display);
}

void zWindow::setIcon(int picture) {
    icon_ = picture;
    showIcon();
}

void zWindow::showIcon() {
    if (!XtIsRealized(shell_)) return;
    const int picture = alert_.empty() ? icon_ : alertIcon_;
    const zIconBitmaps icon = zIconBitmapsOf(shell_, picture);
    if (!icon.dark) return;
    XtVaSetValues(shell_, XmNiconPixmap, icon.dark, XmNiconMask, icon.mask, nullptr);
    const std::vector<unsigned long> data = zIconData(picture);
    Display* display = XtDisplay(shell_);
    XChangeProperty(display, XtWindow(shell_), XInternAtom(display, "_NET_WM_ICON", False), XA_CARDINAL, 32,
                    PropModeReplace, reinterpret_cast<const unsigned char*>(data.data()),
                    static_cast<int>(data.size()));
}

void zWindow::setTitle(const std::string& title) {
    title_ = title;
    zSetTitle(shell_, alert_.empty() ? title_ : alert_ + " - " + title_);
}

void zWindow::setAlert(const std::string& text, int icon) {
    if (text == alert_) return;
    alert_ = text;
    alertIcon_ = icon;
    setTitle(title_);
    showIcon();
    XtVaSetValues(shell_, XtNurgency, static_cast<int>(!alert_.empty()), nullptr);
}

// The keyboard's events come to the control with the focus alone: each one listens.
struct zFormDialog::Key {
    static constexpr std::string_view withControl = "Ctrl+";

    Widget top;
    bool control;
    KeySym symbol;
    std::function<void()> pressed;

    Key(Widget shell, const char* name, std::function<void()> handler)
        : top(shell), control(std::string_view(name).starts_with(withControl)),
          symbol(symbolOf(name + (control ? withControl.size() : 0))), pressed(std::move(handler)) {
        forEachWidget(top, [this](Widget w) { XtAddEventHandler(w, KeyPressMask, False, event, this); });
    }
    ~Key() {
        forEachWidget(top, [this](Widget w) { XtRemoveEventHandler(w, KeyPressMask, False, event, this); });
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    // Letters are those of the keys without Shift.
    static KeySym symbolOf(const char* name) {
        KeySym lower = NoSymbol, upper = NoSymbol;
        XConvertCase(XStringToKeysym(name), &lower, &upper);
        return lower;
    }

    bool is(XKeyEvent& press) const {
        return XLookupKeysym(&press, 0) == symbol &&
               (press.state & (ShiftMask | ControlMask | Mod1Mask)) == (control ? ControlMask : 0U);
    }

    static void event(Widget widget, XtPointer self, XEvent* event, Boolean*) {
        const auto* key = static_cast<Key*>(self);
        if (event->type != KeyPress || !key->is(event->xkey)) return;
        Display* display = XtDisplay(widget);
        auto code = static_cast<KeyCode>(event->xkey.keycode);
        const auto handler = key->pressed;  // which may destroy the window
        handler();
        XSync(display, False);
        const auto same = [](Display*, XEvent* queued, XPointer wanted) -> Bool {
            return queued->type == KeyPress && queued->xkey.keycode == *reinterpret_cast<KeyCode*>(wanted);
        };
        XEvent dropped;
        while (XCheckIfEvent(display, &dropped, same, reinterpret_cast<XPointer>(&code))) {
        }
    }
};

struct zFormDialog::Painting {
    // The first exposure; those of the controls follow it.
    static void begins(Widget board, XtPointer self, XEvent*, Boolean*) {
        auto* dialog = static_cast<zFormDialog*>(self);
        XtRemoveEventHandler(board, ExposureMask, False, begins, self);
        dialog->painting_ = std::make_unique<zAfterPainting>(dialog->application(), dialog->onPainted);
    }
};

// A control passes the key on to the manager that holds it, up to one that has such a callback.
struct zFormDialog::Help {
    static void asked(Widget, XtPointer self, XtPointer) {
        const auto handler = static_cast<zFormDialog*>(self)->help_;
        handler();
    }
};

struct zFormDialog::Sizing {
    static void event(Widget, XtPointer self, XEvent* event, Boolean*) {
        if (event->type == ConfigureNotify) static_cast<zFormDialog*>(self)->fillWindow();
    }
};

zFormDialog::zFormDialog(zApplication& application, const zLayout& layout)
    : zWindow(application), layout_(layout) {
    shell_ = application.createShell(layout.name);
    build(layout);
    XtManageChild(board_->widget());
}

zFormDialog::zFormDialog(zWindow& parent, const zLayout& layout, zModality modality)
    : zWindow(parent.application()), layout_(layout) {
    makeDialog(parent.shell(), modality);
}

zFormDialog::zFormDialog(zApplication& application, const zControl& about, const zLayout& layout)
    : zWindow(application), layout_(layout), above_(about.outermost()) {
    while (!XtIsShell(above_)) above_ = XtParent(above_);
    makeDialog(above_, zModality::modeless);
}

void zFormDialog::makeDialog(Widget parent, zModality modality) {
    shell_ = zCreateModalShell(layout_.name, parent);
    build(layout_);
    const bool modal = modality == zModality::modal;
    XtVaSetValues(board_->widget(), XmNdialogStyle,
                  modal ? XmDIALOG_FULL_APPLICATION_MODAL : XmDIALOG_MODELESS, nullptr);
}

void zFormDialog::build(const zLayout& layout) {
    setTitle(layout.caption);
    board_ = std::make_unique<zBoard>(shell_, "board", layout);
    const zRect& size = board_->size();
    XtVaSetValues(shell_, XmNminWidth, size.width, XmNminHeight, size.height, nullptr);
    if (board_->stretches())
        XtAddEventHandler(board_->widget(), StructureNotifyMask, False, Sizing::event, this);
    else
        XtVaSetValues(shell_, XmNmaxWidth, size.width, XmNmaxHeight, size.height, nullptr);
    filled_ = size;
    const auto closing = [](Widget, XtPointer self, XtPointer) {
        auto* dialog = static_cast<zFormDialog*>(self);
        if (zBlockedByModal(dialog->shell())) return;
        if (const auto handler = dialog->onClose) handler();
    };
    zOnCloseRequest(shell_, closing, this);
}

zFormDialog::~zFormDialog() {
    beside_.reset();
    if (help_) XtRemoveCallback(board_->widget(), XmNhelpCallback, Help::asked, this);
    painting_.reset();
    if (stays_) zHideModal(shell_, board_->widget());
    keys_.clear();
    XtRemoveEventHandler(board_->widget(), ExposureMask, False, Painting::begins, this);
    XtRemoveEventHandler(board_->widget(), StructureNotifyMask, False, Sizing::event, this);
    std::erase(shownWindows, this);
    board_.reset();
    zDestroyShell(shell_);
}

void zFormDialog::realize() {
    if (realized_) return;
    realized_ = true;
    const auto last = lastSizes.find(&layout_);
    if (last != lastSizes.end())
        XtVaSetValues(shell_, XmNwidth, last->second.width, XmNheight, last->second.height, nullptr);
    XtRealizeWidget(shell_);
    XtRealizeWidget(board_->widget());  // not managed in a dialog before it is shown
    board_->realized();
    if (last != lastSizes.end()) fillWindow();
    setIcon(layout_.icon);
}

// The board has the size of its window.
void zFormDialog::fillWindow() {
    Dimension width = 0, height = 0;
    XtVaGetValues(board_->widget(), XmNwidth, &width, XmNheight, &height, nullptr);
    const zRect &least = board_->size(), now{0, 0, width, height};
    if (now.width == filled_.width && now.height == filled_.height) return;
    filled_ = lastSizes[&layout_] = now;
    board_->stretch(std::max(0, width - least.width), std::max(0, height - least.height));
}

void zFormDialog::placeShell() {
    constexpr int titleBar = 12;  // dialog units
    const int away = board_->units().y(titleBar);
    if (above_) {
        zPlaceBelow(shell_, above_);
        return;
    }
    spot_ = zCentreShell(shell_);
    const bool taken = std::ranges::any_of(shownWindows, [&](const zFormDialog* shown) {
        return std::abs(shown->spot_.x - spot_.x) < away && std::abs(shown->spot_.y - spot_.y) < away;
    });
    if (taken) spot_ = zPlaceBeside(shell_, shownWindows.back()->spot_, away);
    shownWindows.push_back(this);
}

void zFormDialog::obeyCommandLine() {
    const zPlacing& wanted = application().placing();
    if (!wanted.title.empty()) setTitle(wanted.title);
    if (wanted.iconic) XtVaSetValues(shell_, XmNinitialState, IconicState, nullptr);
    place_ = wanted.place;
    if (!place_.empty()) XtVaSetValues(shell_, XmNgeometry, place_.c_str(), nullptr);
    isMain_ = true;
}

void zFormDialog::onKey(const char* name, std::function<void()> pressed) {
    keys_.push_back(std::make_unique<Key>(shell_, name, std::move(pressed)));
}

void zFormDialog::onHelp(std::function<void()> asked) {
    if (!help_) XtAddCallback(board_->widget(), XmNhelpCallback, Help::asked, this);
    help_ = std::move(asked);
}

void zFormDialog::openBeside(std::unique_ptr<zFormDialog> dialog) {
    beside_ = std::move(dialog);
    if (!zBlockedByModal(beside_->shell())) return beside_->show();
    besideIsModal_ = true;  // over the message box that has the keyboard
    beside_->runModal();
    besideIsModal_ = false;
    beside_.reset();
}

void zFormDialog::closeBeside() {
    if (besideIsModal_)
        beside_->endModal();
    else
        beside_.reset();
}

void zFormDialog::show() {
    realize();
    XtManageChild(board_->widget());
    if (onPainted) XtAddEventHandler(board_->widget(), ExposureMask, False, Painting::begins, this);
    if (isMain_) setCommand(shell_, application());
    if (place_.empty()) placeShell();
    zMapShell(shell_);
}

void zFormDialog::runModal() {
    runModalAndStay();
    zHideModal(shell_, board_->widget());
    stays_ = false;
}

void zFormDialog::runModalAndStay() {
    realize();
    done_ = false;
    stays_ = true;
    zRunModal(application(), shell_, board_->widget(), done_);
    beside_.reset();
}
