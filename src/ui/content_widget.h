#pragma once

#include <QWidget>
#include <vector>

class ContentView;
class QPushButton;

namespace ui {

class Picker;

/// Draws a ContentView: logos and nudge buttons on the left, the three pickers with their add and delete
/// buttons on the right. 600 to 800 wide, exactly 200 high: where the desktop's font is too large for
/// that, a smaller one is used. However many fields a refresh writes, it redraws once.
class ContentWidget : public QWidget {
 public:
    static constexpr int kMinimumWidth = 600;
    static constexpr int kMaximumWidth = 800;
    static constexpr int kHeight = 200;

    /// `view` and this widget belong together for the life of the process: from here on the view's fields
    /// tell this widget of every write.
    explicit ContentWidget(ContentView &view, QWidget *parent = nullptr);

 protected:
    bool event(QEvent *event) override;

 private:
    struct Row {
        Picker *picker = nullptr;
        QPushButton *add = nullptr;
        QPushButton *remove = nullptr;
    };

    QWidget *makeLeftColumn();
    QWidget *makeRightColumn();
    void connectRows();
    void setTabOrderLikeTheEye();

    void fitFont();
    void setFontSize(double pointSize);
    [[nodiscard]] bool contentsFit() const;

    void scheduleRedraw();
    void redraw();
    void keepFocusInReach();

    ContentView &view_;
    QWidget *leftColumn_ = nullptr;
    QWidget *rightColumn_ = nullptr;
    Row centre_;
    Row room_;
    Row scene_;
    std::vector<QPushButton *> nudges_;
    bool redrawPending_ = false;
};

}  // namespace ui
