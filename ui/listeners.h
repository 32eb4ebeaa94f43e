// Those who want to be told that something has changed, for as long as they keep what they got for it.
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

class Listeners {
  public:
    using Listener = std::shared_ptr<std::function<void()>>;

    [[nodiscard]] Listener add(std::function<void()> told) {
        forget();
        auto listener = std::make_shared<std::function<void()>>(std::move(told));
        all_.push_back(listener);
        return listener;
    }

    // Listeners may come and go meanwhile, and the last thing may go that keeps the owner of this object.
    void tell() {
        forget();
        const auto all = all_;
        for (const auto& each : all)
            if (const auto listener = each.lock()) (*listener)();
    }

  private:
    void forget() {
        std::erase_if(all_, [](const auto& each) { return each.expired(); });
    }

    std::vector<std::weak_ptr<std::function<void()>>> all_;
};
