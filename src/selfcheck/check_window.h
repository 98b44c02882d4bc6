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

/// The one page: the verdict, the findings below it, and three buttons. A check begins by itself once the
/// window is on the screen. Object names: "verdict", "report", "checkAgain", "copyText", "closeWindow".
class CheckWindow final : public QWidget {
    Q_OBJECT

 public:
    using StartExamination = std::function<std::unique_ptr<Examination>()>;

    /// `start` makes a new examination for each check; `version` is told in the copied text.
    CheckWindow(StartExamination start, QString version, QWidget *parent = nullptr);
    ~CheckWindow() override;

    [[nodiscard]] bool isChecking() const { return examination_ != nullptr; }

 protected:
    void showEvent(QShowEvent *event) override;

 private:
    void addButtons(QVBoxLayout &column);
    void check();
    void continueCheck();
    void finishCheck();
    void copyAsText();
    void setVerdict(const Line &line);

    StartExamination start_;
    QString version_;
    std::unique_ptr<Examination> examination_;
    Report report_;
    QString checkedAt_;
    bool hasChecked_ = false;
    QTimer nextStep_;

    QVBoxLayout *verdictPlace_ = nullptr;
    QWidget *verdict_ = nullptr;
    ReportView *view_ = nullptr;
    QPushButton *checkAgain_ = nullptr;
    QPushButton *copy_ = nullptr;
    QLabel *copied_ = nullptr;
};

}  // namespace selfcheck
