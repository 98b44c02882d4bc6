#pragma once

#include <QComboBox>
#include <functional>
#include <string>
#include <vector>

/// A combo box that shows a list of names and is bound to an index somebody else keeps. Only a person's
/// choice of another entry is reported; filling it and setting its index are silent, since each report may
/// move a camera.
class Picker : public QComboBox {
 public:
    explicit Picker(QWidget *parent = nullptr);

    /// Called with the index of the entry that the user chose, never with the index that was chosen already.
    void onChosen(std::function<void(int)> chosen) { chosen_ = std::move(chosen); }

    /// Shows `names` with the entry at `index` chosen (none, when it lies outside). Rebuilt from scratch when
    /// the names changed; a popup that is open then closes.
    void show(const std::vector<std::string> &names, int index);
    using QComboBox::show;

    /// Not wider than kWidestPopup and not higher than a handful of entries, however many and long the names
    /// are.
    void showPopup() override;

 protected:
    /// A name too long for the box ends in an ellipsis.
    void paintEvent(QPaintEvent *event) override;
    /// Turning the wheel over a picker scrolls nothing and must not send the camera somewhere by accident.
    void wheelEvent(QWheelEvent *event) override;

 private:
    static constexpr int kWidestPopup = 480;

    std::vector<std::string> names_;
    int index_ = -1;
    std::function<void(int)> chosen_;
};
