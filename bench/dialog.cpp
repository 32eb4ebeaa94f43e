// bench_dialog PAIRS: the configuration dialog, pair by pair with its floors: opening it beside opening a
// notebook with one empty page, opening it and looking at all five pages beside the same with five empty
// ones, and OK on an unchanged adapter beside the same change without windows. Needs a display, and in
// TARVOLIN_ROOT a simulator and the sample configuration, whose lists get full length. Prints figure, floor
// (medians, milliseconds) and the median of the ratios.
#include "app/maindlg.h"
#include "bench/onechange.h"
#include "model/settings.h"
#include "platform/user.h"
#include "resources/pictures.h"
#include "toolkit/controls/button.h"
#include "toolkit/controls/notebook.h"
#include "ui/config/confids.h"
#include "ui/subdialog.h"

#include <Xm/DrawingA.h>
#include <Xm/PushB.h>
#include <Xm/TabStack.h>
#include <cstdlib>
#include <fmt/core.h>
#include <functional>
#include <vector>

namespace {

// The dialog's own frame, with nothing on its page.
constexpr zControlRow rows[] = {{.id = pagesNB, .kind = zKind::notebook, .place = {4, 4, 292, 239}},
                                okRow({96, 250, 50, 18}, okBTN),
                                cancelRow({154, 250, 50, 18}, cancelBTN)};
constexpr zLayout emptyDialog{.id = 1,
                              .name = "empty",
                              .caption = "Empty",
                              .width = 300,
                              .height = 275,
                              .font = {zFontRow::normal},
                              .icon = programIcon,
                              .rows = rows};
constexpr zLayout emptyPage{.id = 2,
                            .name = "page",
                            .caption = "Page",
                            .width = 284,
                            .height = 220,
                            .font = {zFontRow::normal},
                            .rows = {}};

class EmptyDialog : public zFormDialog {
  public:
    // Pages are made when they are first on top, as those of the configuration dialog.
    EmptyDialog(zWindow& parent, int pages) : zFormDialog(parent, emptyDialog) {
        for (int page = 0; page < pages; ++page) control<zNotebook>(pagesNB).addPage(emptyPage, {});
    }
};

// Calls `action` from the modal loop as soon as the dialog's button is on the screen and everything is drawn.
struct OnceShown {
    Widget top;
    std::function<void(Widget button)> action;

    // Called whenever there is nothing else to do; true ends it.
    static Boolean look(XtPointer self) {
        auto& wait = *static_cast<OnceShown*>(self);
        const Widget button = XtNameToWidget(wait.top, fmt::format("*id{}", int{okBTN}).c_str());
        if (!button || !XtIsRealized(button)) return False;
        XWindowAttributes attributes{};
        if (!XGetWindowAttributes(XtDisplay(button), XtWindow(button), &attributes) ||
            attributes.map_state != IsViewable)
            return False;
        XSync(XtDisplay(button), False);
        if (XtAppPending(XtWidgetToApplicationContext(button))) return False;
        wait.action(button);
        // The loop looks at what has become of it after an event or a timer only.
        XtAppAddTimeOut(
            XtWidgetToApplicationContext(button), 0, [](XtPointer, XtIntervalId*) {}, nullptr);
        return True;
    }
    void start() { XtAppAddWorkProc(XtWidgetToApplicationContext(top), look, this); }
};

// What closing a window left to be drawn is not part of the next opening.
void settle(zApplication& application) {
    for (int turn = 0; turn < 3; ++turn) {
        XSync(static_cast<Display*>(application.display()), False);
        application.handlePending();
    }
}

// Turns to one page after the other, and on when it is drawn. Returns how many there are.
int lookAtAll(zApplication& application, Widget top) {
    const Widget tabs = XtNameToWidget(top, fmt::format("*id{}", int{pagesNB}).c_str());
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(tabs, XmNchildren, &children, XmNnumChildren, &count, nullptr);
    int pages = 0;
    for (const Widget page : std::vector<Widget>(children, children + count)) {
        if (!XmIsDrawingArea(page)) continue;
        XmTabStackSelectTab(page, True);
        settle(application);
        ++pages;
    }
    return pages;
}

void press(Widget button) {
    XmPushButtonCallbackStruct call{.reason = XmCR_ACTIVATE, .event = nullptr, .click_count = 1};
    XtCallCallbacks(button, XmNactivateCallback, &call);
}

struct Looking {
    double milliseconds = 0;
    int pages = 0;
};

Looking lookAtReal(zApplication& application, const zWindow& window, Widget setup) {
    Looking looking;
    const double begin = milliseconds();
    OnceShown real{window.shell(), [&](Widget) {
                       looking.pages = lookAtAll(application, window.shell());
                       looking.milliseconds = milliseconds() - begin;
                       press(XtNameToWidget(window.shell(), fmt::format("*id{}", int{cancelBTN}).c_str()));
                   }};
    real.start();
    press(setup);
    settle(application);
    return looking;
}

Looking lookAtEmpty(zApplication& application, zWindow& window, int pages, bool all) {
    Looking looking;
    {
        const double begin = milliseconds();
        EmptyDialog empty(window, pages);
        OnceShown wait{empty.shell(), [&](Widget) {
                           if (all) looking.pages = lookAtAll(application, empty.shell());
                           looking.milliseconds = milliseconds() - begin;
                           empty.endModal();
                       }};
        wait.start();
        empty.runModal();
    }
    settle(application);
    return looking;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        fmt::print(stderr, "usage: bench_dialog PAIRS\n");
        return 2;
    }
    platform::pretendSuperUser(true);
    OneChange alone;
    alone.fill();
    zApplication application("tarvolin", "Tarvolin", {}, fallbackResources);
    if (!application.openDisplay()) return 1;
    zSetPictures(programPictures());
    DMainDlg window(application, mainLayout);
    application.handlePending();
    const Widget setup = window.control<zBitmapButton>(setupBTN).widget();

    Pairs opening, looking, confirming;
    for (int pair = -1; pair < std::atoi(argv[1]); ++pair) {
        const double begin = milliseconds();
        double shown = 0;
        OnceShown real{window.shell(), [&](Widget ok) {
                           shown = milliseconds();
                           press(ok);
                       }};
        real.start();
        press(setup);
        const double done = milliseconds();
        settle(application);
        const double figure = shown - begin;

        const double floor = lookAtEmpty(application, window, 1, false).milliseconds;

        advSettings = 1;
        const Looking all = lookAtReal(application, window, setup);
        const Looking none = lookAtEmpty(application, window, all.pages, true);
        advSettings = 0;
        if (all.pages != 5 || none.pages != all.pages) return 1;

        const double fileWork = alone.make(Edit::nothing);
        if (pair < 0) continue;  // the first pair warms the caches
        opening.add(figure, floor);
        looking.add(all.milliseconds, none.milliseconds);
        confirming.add(done - shown, fileWork);
    }
    opening.print("opening");
    looking.print("looking");
    confirming.print("confirming");
}
