#include "simulator/preview/preview_window.h"

#include <QAccessibleWidget>
#include <QHBoxLayout>
#include <QLabel>
#include <QLinearGradient>
#include <QLocale>
#include <QPainter>
#include <QPainterPath>
#include <QVBoxLayout>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <numbers>
#include <optional>
#include <utility>

#include "simulator/preview/lecture_room.h"

using namespace Qt::Literals::StringLiterals;

namespace simulator {

namespace {

constexpr std::chrono::milliseconds kPollInterval{33};
constexpr int kBarHeight = 70;
constexpr QRgb kBarColour = qRgb(0x20, 0x2B, 0x31);
constexpr QRgb kTextColour = qRgb(0xF4, 0xEE, 0xE0);
constexpr QRgb kDimTextColour = qRgb(0xA9, 0xB5, 0xBA);
constexpr QRgb kFaintColour = qRgb(0x5B, 0x6C, 0x74);
constexpr QStringView kMovingText = u"● En movimiento…";
constexpr QRgb kAccentColour = qRgb(0xF0, 0xA9, 0x4E);
constexpr QRgb kRestColour = qRgb(0x7C, 0xC4, 0x9B);

const QLocale &spanish() {
    static const QLocale locale = [] {
        QLocale spain(QLocale::Spanish, QLocale::Spain);
        spain.setNumberOptions(QLocale::OmitGroupSeparator);
        return spain;
    }();
    return locale;
}

QString number(double value, int decimals) {
    const double scale = std::pow(10.0, decimals);
    const double rounded = std::round(value * scale) / scale;
    const QString digits = spanish().toString(std::abs(rounded), 'f', decimals);
    return rounded < 0 ? u"\u2212"_s + digits : digits;
}

bool samePose(const Pose &a, const Pose &b) {
    return a.pan == b.pan && a.tilt == b.tilt && a.zoom == b.zoom;
}

QRect widescreenIn(const QRect &space) {
    QSize size(16, 9);
    size.scale(space.size(), Qt::KeepAspectRatio);
    QRect picture(QPoint(), size);
    picture.moveCenter(space.center());
    return picture;
}

/// A camera with its lens crossed out, 120 by 80 around 0,0.
void paintUnpluggedSymbol(QPainter &painter) {
    QPainterPath symbol;
    symbol.addRoundedRect(QRectF(-60, -36, 84, 72), 12, 12);
    symbol.moveTo(30, -10);
    symbol.lineTo(60, -28);
    symbol.lineTo(60, 28);
    symbol.lineTo(30, 10);
    painter.setPen(QPen(QColor(0x8A, 0x9A, 0xA2), 6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(symbol);
    painter.setPen(QPen(QColor(kAccentColour), 7, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(-64, 48), QPointF(60, -48));
}

void paintUnplugged(QPainter &painter, const QRect &picture, const QFont &font) {
    QLinearGradient dark(picture.topLeft(), picture.bottomLeft());
    dark.setColorAt(0, QColor(0x1B, 0x24, 0x2A));
    dark.setColorAt(1, QColor(0x0E, 0x13, 0x17));
    painter.fillRect(picture, dark);

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(picture.center().x(), picture.top() + picture.height() * 0.42);
    painter.scale(picture.height() / 360.0, picture.height() / 360.0);
    paintUnpluggedSymbol(painter);
    painter.restore();

    QFont large = font;
    large.setPixelSize(std::max(12, picture.height() / 15));
    painter.setFont(large);
    painter.setPen(QColor(0xC9, 0xD2, 0xD6));
    painter.drawText(picture.adjusted(0, picture.height() * 6 / 10, 0, 0), Qt::AlignHCenter | Qt::AlignTop,
                     u"Cámara desconectada"_s);
}

/// Tells screen readers what `widget` is: they take a plain one for a filler. Qt's cache owns the interface.
void presentAs(QAccessible::Role role, QWidget &widget, const QString &name) {
    widget.setAccessibleName(name);
    QAccessible::registerAccessibleInterface(new QAccessibleWidget(&widget, role));
}

}  // namespace

/// The picture, as large as fits at 16:9.
class PreviewPicture : public QWidget {
 public:
    PreviewPicture(double maximumZoom, QWidget *parent) : QWidget(parent), maximumZoom_(maximumZoom) {
        setMinimumSize(320, 180);
        setAttribute(Qt::WA_OpaquePaintEvent);
        presentAs(QAccessible::Graphic, *this, u"Imagen de la cámara simulada"_s);
    }

    /// Without a value: no camera.
    void setPose(const std::optional<Pose> &pose) {
        pose_ = pose;
        update();
    }
    [[nodiscard]] const std::optional<Pose> &pose() const { return pose_; }

 protected:
    void paintEvent(QPaintEvent * /*event*/) override {
        QPainter painter(this);
        const QRect picture = widescreenIn(rect());
        if (picture != rect()) painter.fillRect(rect(), QColor(0x12, 0x18, 0x1C));
        if (pose_)
            paintLectureRoom(painter, picture, *pose_, maximumZoom_);
        else
            paintUnplugged(painter, picture, font());
    }

 private:
    double maximumZoom_;
    std::optional<Pose> pose_;
};

/// The camera from above: the arc that it can reach and the sector that it sees.
class ReachDial : public QWidget {
 public:
    ReachDial(const CameraModel &camera, QWidget *parent)
        : QWidget(parent),
          leftmost_(camera.minimum().pan / model::kRawPerDegree),
          rightmost_(camera.maximum().pan / model::kRawPerDegree),
          maximumZoom_(camera.maximum().zoom) {
        setFixedSize(54, 54);
        presentAs(QAccessible::Graphic, *this, u"Orientación de la cámara vista desde arriba"_s);
    }

    void setPose(const std::optional<Pose> &pose) {
        pose_ = pose;
        update();
    }

 protected:
    void paintEvent(QPaintEvent * /*event*/) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF circle = QRectF(rect()).adjusted(5, 5, -5, -5);

        painter.setPen(QPen(QColor(kFaintColour), 3, Qt::SolidLine, Qt::RoundCap));
        painter.drawArc(circle, sixteenths(90 - rightmost_), sixteenths(rightmost_ - leftmost_));
        if (pose_) {
            const double pan = pose_->pan / model::kRawPerDegree;
            const double halfField =
                std::atan(std::tan(std::numbers::pi / 6) / magnification(pose_->zoom, maximumZoom_)) * 180 /
                std::numbers::pi;
            // Never too thin to see.
            const double half = std::max(halfField, 5.0);
            painter.setPen(Qt::NoPen);
            painter.setBrush(QColor(kAccentColour));
            painter.drawPie(circle, sixteenths(90 - pan - half), sixteenths(2 * half));
        }
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(kTextColour));
        painter.drawEllipse(circle.center(), 4, 4);
    }

 private:
    /// Counter-clockwise from three o'clock, as the painter counts.
    static int sixteenths(double degrees) { return static_cast<int>(std::lround(degrees * 16)); }

    double leftmost_;
    double rightmost_;
    double maximumZoom_;
    std::optional<Pose> pose_;
};

QString poseText(const Pose &pose, double maximumZoom) {
    return u"Giro %1°\u2002Inclinación %2°\u2002Zoom %3 (%4×)"_s.arg(
        number(pose.pan / model::kRawPerDegree, 1), number(pose.tilt / model::kRawPerDegree, 1),
        number(pose.zoom, 0), number(magnification(pose.zoom, maximumZoom), 1));
}

PreviewWindow::PreviewWindow(std::shared_ptr<CameraModel> camera, QWidget *parent)
    : QWidget(parent),
      camera_(std::move(camera)),
      picture_(new PreviewPicture(camera_->maximum().zoom, this)) {
    setWindowTitle(u"Vista previa de la cámara simulada"_s);
    presentAs(QAccessible::Window, *this, windowTitle());
    setAccessibleDescription(u"Muestra lo que ve la cámara simulada y su posición en números"_s);

    auto *const bar = new QWidget(this);
    buildBar(bar);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(picture_, 1);
    layout->addWidget(bar);
    // So that the picture fills its part, without bars.
    const int width = std::max(640, layout->minimumSize().width());
    resize(width, width * 9 / 16 + kBarHeight);

    connect(&timer_, &QTimer::timeout, this, &PreviewWindow::refresh);
    refresh();
}

PreviewWindow::~PreviewWindow() = default;

void PreviewWindow::buildBar(QWidget *bar) {
    bar->setFixedHeight(kBarHeight);
    bar->setAutoFillBackground(true);
    QPalette colours = bar->palette();
    colours.setColor(QPalette::Window, QColor(kBarColour));
    colours.setColor(QPalette::WindowText, QColor(kTextColour));
    bar->setPalette(colours);

    dial_ = new ReachDial(*camera_, bar);
    numbers_ = new QLabel(bar);
    // No accessible names: a screen reader reads the texts, which a name would replace.
    numbers_->setAccessibleDescription(u"Posición de la cámara"_s);
    QFont large = numbers_->font();
    large.setPixelSize(15);
    large.setWeight(QFont::DemiBold);
    numbers_->setFont(large);
    state_ = new QLabel(bar);
    state_->setAccessibleDescription(u"Estado de la cámara"_s);
    QFont small = state_->font();
    small.setPixelSize(13);
    state_->setFont(small);

    auto *const row = new QHBoxLayout(bar);
    row->setContentsMargins(12, 6, 16, 6);
    row->setSpacing(14);
    row->addWidget(dial_);
    row->addWidget(numbers_, 1);
    row->addWidget(state_);

    // Room for the longest texts, so that the window does not grow while the camera moves.
    const QString longest = poseText({-612000, -108000, camera_->maximum().zoom}, camera_->maximum().zoom);
    numbers_->setMinimumWidth(numbers_->fontMetrics().horizontalAdvance(longest));
    state_->setMinimumWidth(state_->fontMetrics().horizontalAdvance(kMovingText.toString()));
    state_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
}

void PreviewWindow::setConnected(bool connected) {
    connected_ = connected;
    refresh();
}

void PreviewWindow::showEvent(QShowEvent *event) {
    QWidget::showEvent(event);
    refresh();
    timer_.start(kPollInterval);
}

void PreviewWindow::hideEvent(QHideEvent *event) {
    timer_.stop();
    QWidget::hideEvent(event);
}

void PreviewWindow::refresh() {
    if (connected_ && !camera_->isUnplugged())
        showPose(camera_->pose(), camera_->isMoving());
    else
        showUnplugged();
}

void PreviewWindow::showUnplugged() {
    if (picture_->pose()) {
        picture_->setPose(std::nullopt);
        dial_->setPose(std::nullopt);
    }
    numbers_->setText(u"Giro –\u2002Inclinación –\u2002Zoom –"_s);
    showState(u"Desconectada"_s, QColor(kDimTextColour));
}

void PreviewWindow::showPose(const Pose &pose, bool moving) {
    if (!picture_->pose() || !samePose(*picture_->pose(), pose)) {
        picture_->setPose(pose);
        dial_->setPose(pose);
        numbers_->setText(poseText(pose, camera_->maximum().zoom));
    }
    if (moving)
        showState(kMovingText.toString(), QColor(kAccentColour));
    else
        showState(u"● En posición"_s, QColor(kRestColour));
}

void PreviewWindow::showState(const QString &text, const QColor &colour) {
    if (text == state_->text()) return;
    QPalette colours = state_->palette();
    colours.setColor(QPalette::WindowText, colour);
    state_->setPalette(colours);
    state_->setText(text);
}

}  // namespace simulator
