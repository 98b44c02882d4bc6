#pragma once

#include <QTimer>
#include <QWidget>
#include <functional>
#include <memory>

#include "selfcheck/examination.h"
#include "selfcheck/findings.h"

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace selfcheck {

class ReportView;

/// The one page: the verdict, the findings below it, and four buttons. A check begins by itself once the
/// window is on the screen; it gives no order. "tryOrder" asks first, then sends the camera where it already
/// is, and adds to the page what came of it. Object names: "verdict", "report", "checkAgain", "tryOrder",
/// "copyText", "closeWindow".
class CheckWindow final : public QWidget {
    Q_OBJECT

 public:
    /// `registry` and `inspector` serve each check (see Examination); `version` is told in the copied text.
    CheckWindow(std::shared_ptr<const usb::DeviceRegistry> registry, AccessInspector inspector,
                QString version, QWidget *parent = nullptr);
    ~CheckWindow() override;

    /// Whether a check, or a trial of an order, is going on.
    [[nodiscard]] bool isBusy() const { return step_ != nullptr; }

 protected:
    void showEvent(QShowEvent *event) override;

 private:
    void addButtons(QVBoxLayout &column);
    void check();
    void tryOrder();
    /// Does `step` again and again until it answers false, then `finish`, and shows the page anew.
    void begin(const char *verdict, std::function<bool()> step, std::function<void()> finish);
    void continueWork();
    void showReport();
    void copyAsText();
    void setVerdict(const Line &line);

    std::shared_ptr<const usb::DeviceRegistry> registry_;
    AccessInspector inspector_;
    QString version_;
    std::function<bool()> step_;    // of the work that is going on; null when there is none
    std::function<void()> finish_;  // the same
    Facts facts_;
    Report report_;
    QString checkedAt_;
    bool hasChecked_ = false;
    QTimer nextStep_;

    QVBoxLayout *verdictPlace_ = nullptr;
    QWidget *verdict_ = nullptr;
    ReportView *view_ = nullptr;
    QPushButton *checkAgain_ = nullptr;
    QPushButton *tryOrder_ = nullptr;
    QPushButton *copy_ = nullptr;
    QLabel *copied_ = nullptr;
};

}  // namespace selfcheck
