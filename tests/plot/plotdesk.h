// A plot window with series that a test feeds, over a clock that it moves on.
#pragma once

#include "resources/pictures.h"
#include "tests/support/linkproxy.h"
#include "tests/toolkit/desk.h"
#include "ui/plot/plotdlg.h"

// Its display, with the resources of the program, behind a link that counts. The user is on this side of it.
struct PlotDesk {
    XServer server;
    std::string direct = std::getenv("DISPLAY");
    LinkProxy link{direct};
    zApplication application{"tarvolin", "Tarvolin", {}, fallbackResources};
    bool open = false;

    PlotDesk() {
        ::setenv("DISPLAY", link.display().c_str(), 1);
        open = application.openDisplay();
        ::setenv("DISPLAY", direct.c_str(), 1);
    }
};

inline PlotDesk& plotDesk() {
    static PlotDesk instance;
    return instance;
}

class PlotDeskTest : public testing::Test {
  protected:
    zApplication& application = plotDesk().application;
    std::unique_ptr<DPlotDlg> window = std::make_unique<DPlotDlg>(application, "adapter 1");
    XUser user{application};
    metrics::Moment now = std::chrono::steady_clock::now();

    struct Fed {
        std::shared_ptr<metrics::Series> series = std::make_shared<metrics::Series>();
        metrics::Rate last = metrics::Unknown::noneBefore;
    };
    std::vector<std::shared_ptr<Fed>> fed;

    void SetUp() override {
        ASSERT_TRUE(plotDesk().open);
        window->show();
        ASSERT_TRUE(user.until([this] { return user.shellLike("Plot of") != nullptr; }));
        user.focus(window->shell());
        user.settle();
    }

    bool add(const std::string& name, const std::string& unit) {
        auto one = std::make_shared<Fed>();
        if (!window->add({name, unit, one->series, [one] { return one->last; }})) return false;
        fed.push_back(one);
        return true;
    }
    // `value(i)` is that of a series since the last tick; nothing: unknown.
    template <class Value> void step(std::chrono::milliseconds later, const Value& value) {
        const auto since = std::exchange(now, now + later);
        for (std::size_t i = 0; i < fed.size(); ++i) {
            const std::optional<float> known = value(i);
            if (known) fed[i]->series->add(since, now, *known);
            if (known)
                fed[i]->last = static_cast<double>(*known);
            else
                fed[i]->last = metrics::Unknown::silent;
        }
        window->tick(now);
    }
};
