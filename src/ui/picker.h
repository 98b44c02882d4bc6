#pragma once

#include <QComboBox>
#include <functional>
#include <string>
#include <vector>

namespace ui {

/// A combo box that shows a list of names and is bound to an index that somebody else keeps. Only a person's
/// choice of another entry is reported; filling it and setting its index are silent, since each report may
/// move a camera. A name that does not fit, in the box or in its popup, ends in an ellipsis or has one in its
/// middle, and shows as a whole in a tooltip.
class Picker : public QComboBox {
 public:
    explicit Picker(QWidget *parent = nullptr);

    /// Called with the index of the entry that the user chose, never with the index that was chosen already.
    void onChosen(std::function<void(int)> chosen) { chosen_ = std::move(chosen); }

    /// Shows `names` with the entry at `index` chosen (none, when it lies outside). Rebuilt from scratch when
    /// the names changed; a popup that is open then closes.
    void show(const std::vector<std::string> &names, int index);
    using QComboBox::show;

    /// At least as wide as the box and as wide as the longest name needs, up to kWidestPopup; at most 16
    /// entries high, however many there are.
    void showPopup() override;
    [[nodiscard]] QSize minimumSizeHint() const override;

    bool eventFilter(QObject *watched, QEvent *event) override;

 protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    /// Turning the wheel over a picker scrolls nothing and must not send the camera somewhere by accident.
    void wheelEvent(QWheelEvent *event) override;

 private:
    static constexpr int kWidestPopup = 480;

    [[nodiscard]] QString shownText() const;

    std::vector<std::string> names_;
    int index_ = -1;
    std::function<void(int)> chosen_;
};

}  // namespace ui
