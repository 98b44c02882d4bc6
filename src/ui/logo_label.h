#pragma once

#include <QPixmap>
#include <QString>
#include <QWidget>

namespace ui {

/// One of the two logos: the picture at a fixed size with 4 pixels of white around it, in dark palettes too
/// (the artwork is drawn for white).
class LogoLabel : public QWidget {
 public:
    LogoLabel(const QString &asset, QSize pictureSize, QWidget *parent = nullptr);

 protected:
    void paintEvent(QPaintEvent *event) override;

 private:
    QString asset_;
};

}  // namespace ui
