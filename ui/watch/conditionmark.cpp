#include "ui/watch/conditionmark.h"

#include "resources/pictureids.h"

ConditionMark::ConditionMark(zFormDialog& window, std::optional<int> adapter)
    : conditions_(Conditions::of(window.application())) {
    const auto show = [&window, adapter, &conditions = *conditions_] {
        const std::string news = conditions.news(adapter);
        window.setAlert(news.empty() ? news : "(!) " + news, alertIcon);
    };
    listener_ = conditions_->listen(show);
    show();
    window.onKey("Ctrl+L", [&conditions = *conditions_] { conditions.list(); });
}
