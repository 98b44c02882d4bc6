#pragma once

#include <QDialog>
#include <optional>
#include <vector>

#include "platform/services.h"

class QBoxLayout;
class QLineEdit;
class QPushButton;

namespace platform {

/// The window of one alert: warning icon, message, informative text, perhaps a text field, buttons.
class AlertDialog final : public QDialog {
    Q_OBJECT

 public:
    /// `defaultTitle` is for alerts without a title of their own.
    AlertDialog(const Alert &alert, const QString &defaultTitle, QWidget *parent);

    /// What the user answered; before that, what Escape would answer.
    [[nodiscard]] AlertAnswer answer() const;

    /// Escape and the window's close button arrive here.
    void reject() override;

 private:
    void addTexts(const Alert &alert, QBoxLayout &column);
    void addField(const Alert &alert, QBoxLayout &column);
    void addButtons(const Alert &alert, QBoxLayout &column);
    void finish(std::size_t button);

    QLineEdit *field_ = nullptr;
    std::vector<QPushButton *> buttons_;
    std::optional<std::size_t> escapeButton_;
    std::size_t answered_ = 0;
};

}  // namespace platform
