// bench_dialog PAIRS: the configuration dialog, pair by pair with its floors: opening it beside opening a
// notebook with one empty page, and OK on an unchanged adapter beside the same change without windows. Needs
// a display, and in TARVOLIN_ROOT a simulator and the sample configuration, whose lists get full length.
// Prints figure, floor (medians, milliseconds) and the median of the ratios.
#include "app/maindlg.h"
#include "bench/onechange.h"
#include "platform/user.h"
#include "resources/pictures.h"
#include "toolkit/controls/button.h"
#include "toolkit/controls/notebook.h"
#include "ui/config/confids.h"
#include "ui/subdialog.h"

#include <Xm/Xm.h>
#include <cstdlib>
#include <fmt/core.h>
#include <functional>

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
    explicit EmptyDialog(zWindow& parent) : zFormDialog(parent, emptyDialog) {
        control<zNotebook>(pagesNB).addPage(emptyPage);
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

    Pairs opening, confirming;
    for (int pair = -1; pair < std::atoi(argv[1]); ++pair) {
        double begin = milliseconds(), shown = 0;
        OnceShown real{window.shell(), [&](Widget ok) {
                           shown = milliseconds();
                           XtCallCallbacks(ok, XmNactivateCallback, nullptr);
                       }};
        real.start();
        XtCallCallbacks(setup, XmNactivateCallback, nullptr);
        const double done = milliseconds();
        settle(application);
        const double figure = shown - begin;

        double floor = 0;
        {
            begin = milliseconds();
            EmptyDialog empty(window);
            OnceShown wait{empty.shell(), [&](Widget) {
                               floor = milliseconds() - begin;
                               empty.endModal();
                           }};
            wait.start();
            empty.runModal();
        }
        settle(application);

        const double fileWork = alone.make(Edit::nothing);
        if (pair < 0) continue;  // the first pair warms the caches
        opening.add(figure, floor);
        confirming.add(done - shown, fileWork);
    }
    opening.print("opening");
    confirming.print("confirming");
}
