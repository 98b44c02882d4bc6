#pragma once

#include <string>
#include <utility>

#include "platform/services.h"

namespace platform {

/// Alerts as Qt dialogs. Needs a QApplication, but neither a main window nor a running event loop.
///
/// Object names: the dialog is "alert", its text field "alertField", its buttons "alertButton0",
/// "alertButton1"... Texts are shown as they are, never as rich text. An alert without any button gets
/// "Aceptar". Where several buttons are given and none is "Cancelar", Escape and closing the window do
/// nothing.
class QtAlerts final : public Alerts {
 public:
    /// `defaultTitle`: window title of alerts without one.
    explicit QtAlerts(std::string defaultTitle = {}) : defaultTitle_(std::move(defaultTitle)) {}

    [[nodiscard]] AlertAnswer run(const Alert &alert) override;

 private:
    std::string defaultTitle_;
};

}  // namespace platform
