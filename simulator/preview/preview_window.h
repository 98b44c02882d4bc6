#pragma once

#include <QTimer>
#include <QWidget>
#include <memory>

#include "simulator/camera_model.h"

class QLabel;

namespace simulator {

class PreviewPicture;
class ReachDial;

/// Shows what the simulated camera sees, and where it points in numbers. Asks the camera about 30 times a
/// second while visible, and paints only when the answer changed.
class PreviewWindow : public QWidget {
    Q_OBJECT

 public:
    /// Shares `camera` with the bus that it is plugged into.
    explicit PreviewWindow(std::shared_ptr<CameraModel> camera, QWidget *parent = nullptr);
    ~PreviewWindow() override;

    /// Plugged in (as at the start) or not. Unplugged, the picture is dark and there are no numbers; the same
    /// goes for a camera that says so itself (CameraModel::isUnplugged).
    void setConnected(bool connected);

 protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

 private:
    void buildBar(QWidget *bar);
    void refresh();
    void showUnplugged();
    void showPose(const Pose &pose, bool moving);
    void showState(const QString &text, const QColor &colour);

    std::shared_ptr<CameraModel> camera_;
    bool connected_ = true;
    PreviewPicture *picture_;
    ReachDial *dial_ = nullptr;
    QLabel *numbers_ = nullptr;
    QLabel *state_ = nullptr;
    QTimer timer_;
};

/// "Giro 12,5°  Inclinación −3,0°  Zoom 150 (1,4×)". `pose` in raw units; never depends on the locale.
[[nodiscard]] QString poseText(const Pose &pose, double maximumZoom);

}  // namespace simulator
