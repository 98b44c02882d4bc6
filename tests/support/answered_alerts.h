#pragma once

#include <deque>
#include <memory>
#include <vector>

#include "platform/services.h"

namespace support {

/// Alerts whose answers were given beforehand. An alert that nobody expected is answered by its last button,
/// with an empty field. Installed as long as this object lives.
class AnsweredAlerts {
 public:
    AnsweredAlerts() : before_(platform::services()), alerts_(std::make_shared<Queue>()) {
        auto services = before_;
        services.alerts = alerts_;
        platform::installServices(services);
    }
    ~AnsweredAlerts() { platform::installServices(before_); }
    AnsweredAlerts(const AnsweredAlerts &) = delete;
    AnsweredAlerts &operator=(const AnsweredAlerts &) = delete;

    /// The next alert is answered by its first button, with `text` in its field.
    void accept(std::string text = {}) { alerts_->answers.push_back({0, std::move(text)}); }
    /// The next alert is answered by its second button; its field holds `text` all the same.
    void cancel(std::string text = {}) { alerts_->answers.push_back({1, std::move(text)}); }
    [[nodiscard]] const std::vector<platform::Alert> &shown() const { return alerts_->shown; }

 private:
    struct Queue : platform::Alerts {
        platform::AlertAnswer run(const platform::Alert &alert) override {
            shown.push_back(alert);
            if (answers.empty()) return {alert.buttons.size() - 1, {}};
            const auto answer = answers.front();
            answers.pop_front();
            return answer;
        }
        std::deque<platform::AlertAnswer> answers;
        std::vector<platform::Alert> shown;
    };

    platform::Services before_;
    std::shared_ptr<Queue> alerts_;
};

}  // namespace support
