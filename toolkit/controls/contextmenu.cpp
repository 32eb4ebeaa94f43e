#include "toolkit/controls/contextmenu.h"

#include "toolkit/controls/rowwidget.h"
#include "toolkit/display/displaycache.h"
#include "toolkit/library/children.h"
#include "toolkit/library/menukeys.h"
#include "toolkit/library/xftdraws.h"

#include <X11/keysym.h>
#include <Xm/PushB.h>
#include <Xm/RowColumn.h>
#include <utility>

struct zContextMenu::Handlers {
    static constexpr EventMask events = ButtonPressMask | ButtonReleaseMask | KeyPressMask;

    static void event(Widget widget, XtPointer self, XEvent* event, Boolean*) {
        auto& menu = *static_cast<zContextMenu*>(self);
        if (event->type == ButtonPress) {
            const XButtonEvent& press = event->xbutton;
            if (press.button != Button3) return;
            XmProcessTraversal(widget, XmTRAVERSE_CURRENT);
            menu.control_.point(press.x, press.y);
            menu.open(press.x_root, press.y_root, press.time);
        } else if (event->type == ButtonRelease) {
            // It was over before the menu was there.
            if (event->xbutton.button == Button3 && menu.menu_) zExpectKeys(menu.menu_);
        } else if (event->type == KeyPress && isMenuKey(event->xkey)) {
            const zRect place = menu.control_.place();
            Position x = 0, y = 0;
            XtTranslateCoords(widget, static_cast<Position>(place.x),
                              static_cast<Position>(place.y + place.height), &x, &y);
            menu.open(x, y, event->xkey.time);
            if (menu.menu_) zExpectKeys(menu.menu_);
        }
    }

    static bool isMenuKey(XKeyEvent press) {
        const KeySym symbol = XLookupKeysym(&press, 0);
        const unsigned held = press.state & (ShiftMask | ControlMask | Mod1Mask);
        return (symbol == XK_Menu && !held) || (symbol == XK_F10 && held == ShiftMask);
    }

    // As long as the button is held down, the row under the pointer is meant. Somebody who lets it go at once
    // is going to click, or to use keys. Motif measures that by a timer, which is over too soon on a slow
    // link; the server's times are right.
    static void released(Widget, XtPointer self, XEvent* event, Boolean* goesOn) {
        const XButtonEvent& release = event->xbutton;
        const auto& menu = *static_cast<zContextMenu*>(self);
        if (event->type != ButtonRelease || release.button != Button3) return;
        if (release.time - menu.opened_ > static_cast<Time>(XtGetMultiClickTime(release.display))) return;
        XAllowEvents(release.display, SyncPointer, CurrentTime);
        zExpectKeys(menu.menu_);
        *goesOn = False;
    }

    static void chosen(Widget, XtPointer row, XtPointer) {
        const auto action = static_cast<zMenuRow*>(row)->action;  // which may open another menu
        action();
    }
};

zContextMenu::zContextMenu(Control control, std::function<zMenuRows()> rows)
    : control_(std::move(control)), makeRows_(std::move(rows)) {
    XtAddEventHandler(control_.widget, Handlers::events, False, Handlers::event, this);
}

zContextMenu::~zContextMenu() {
    XtRemoveEventHandler(control_.widget, Handlers::events, False, Handlers::event, this);
    remove();
}

void zContextMenu::remove() {
    if (!menu_) return;
    const Widget shell = XtParent(std::exchange(menu_, nullptr));
    zFreeXftDraws(shell);
    XtDestroyWidget(shell);
}

void zContextMenu::listenForRelease(Widget part) {
    XtInsertEventHandler(part, ButtonReleaseMask, False, Handlers::released, this, XtListHead);
}

void zContextMenu::open(int rootX, int rootY, unsigned long time) {
    remove();
    rows_ = makeRows_();
    if (rows_.empty()) return;
    // The menu comes and goes by this class alone: Motif would take the button with a grab of the server.
    zResources resources;
    resources.set(XmNpopupEnabled, XmPOPUP_DISABLED);
    static char name[] = "menu";
    menu_ = XmCreatePopupMenu(control_.widget, name, resources.args.data(), resources.count());
    const auto font = zDisplayCache::of(XtDisplay(menu_)).renderTable(menu_, "plain");
    for (zMenuRow& row : rows_) {
        const zXmText label(row.label), keys(row.keys);
        const Widget item = XtVaCreateManagedWidget(
            "item", xmPushButtonWidgetClass, menu_, XmNlabelString, label.get(), XmNacceleratorText,
            keys.get(), XmNrenderTable, font, XmNsensitive, static_cast<int>(row.enabled), nullptr);
        XtAddCallback(item, XmNactivateCallback, Handlers::chosen, &row);
    }
    for (const Widget part : zChildren(menu_)) listenForRelease(part);
    listenForRelease(menu_);
    listenForRelease(XtParent(menu_));
    opened_ = time;
    XButtonPressedEvent at{};
    at.type = ButtonPress;
    at.button = Button3;
    at.time = time;
    at.display = XtDisplay(menu_);
    at.window = XtWindow(control_.widget);
    at.root = RootWindowOfScreen(XtScreen(menu_));
    at.x_root = rootX;
    at.y_root = rootY;
    XmMenuPosition(menu_, &at);
    XtManageChild(menu_);
}
