#include <gtest/gtest.h>

#include <QImage>
#include <QLabel>
#include <QLocale>
#include <QPainter>
#include <QSvgRenderer>
#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <memory>

#include "simulator/preview/lecture_room.h"
#include "simulator/preview/preview_window.h"

namespace {

using namespace Qt::Literals::StringLiterals;
using simulator::CameraModel;
using simulator::Pose;

constexpr QSize kSize(320, 180);

Pose degrees(double pan, double tilt, double zoom = 0) {
    return {pan * 3600, tilt * 3600, zoom};
}

QImage view(const Pose &pose) {
    QImage image(kSize, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    simulator::paintLectureRoom(painter, image.rect(), pose);
    return image;
}

/// Where the blackboard's green is in a picture.
struct Patch {
    int count = 0;
    double x = 0;
    double y = 0;
};

Patch blackboardIn(const QImage &image) {
    Patch patch;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QColor colour = image.pixelColor(x, y);
            if (colour.green() < colour.red() + 30 || colour.green() < colour.blue() + 8) continue;
            ++patch.count;
            patch.x += x;
            patch.y += y;
        }
    if (patch.count == 0) return patch;
    patch.x /= patch.count;
    patch.y /= patch.count;
    return patch;
}

TEST(LectureRoom, TurningRightMovesThingsLeftAndLookingUpMovesThemDown) {
    const Patch home = blackboardIn(view(degrees(0, 0)));
    ASSERT_GT(home.count, 5000);
    EXPECT_NEAR(home.x, kSize.width() / 2.0, 10);

    EXPECT_LT(blackboardIn(view(degrees(10, 0))).x, home.x - 20);
    EXPECT_GT(blackboardIn(view(degrees(-10, 0))).x, home.x + 20);
    EXPECT_GT(blackboardIn(view(degrees(0, 8))).y, home.y + 20);
    EXPECT_LT(blackboardIn(view(degrees(0, -8))).y, home.y - 20);
}

TEST(LectureRoom, ZoomGrowsSteadilyFromOneToTen) {
    EXPECT_DOUBLE_EQ(simulator::magnification(0), 1);
    EXPECT_DOUBLE_EQ(simulator::magnification(1000), 10);
    EXPECT_DOUBLE_EQ(simulator::magnification(16384, 16384), 10);
    EXPECT_NEAR(simulator::magnification(500) * simulator::magnification(500), 10, 1e-9);

    // The sign above the door is the green thing there; twice as large is four times the area.
    const double doubled = 1000 * std::log10(2.0);
    const Patch sign = blackboardIn(view(degrees(-55, 6)));
    const Patch larger = blackboardIn(view(degrees(-55, 6, doubled)));
    ASSERT_GT(sign.count, 50);
    EXPECT_NEAR(static_cast<double>(larger.count) / sign.count, 4, 1);
}

TEST(LectureRoom, HasAWallInEveryDirection) {
    const QColor ground = QColor(0xA8, 0x8C, 0x6A);
    for (int pan = -170; pan <= 170; pan += 20)
        for (int tilt = -30; tilt <= 90; tilt += 30) {
            const QImage image = view(degrees(pan, tilt));
            int bare = 0;
            for (int y = 0; y < image.height(); ++y)
                for (int x = 0; x < image.width(); ++x) bare += image.pixelColor(x, y) == ground ? 1 : 0;
            EXPECT_LT(bare, 100) << "pan " << pan << ", tilt " << tilt;
        }
}

TEST(LectureRoom, PaintsOnlyInsideItsRectangleAndLeavesThePainterAsItWas) {
    QImage image(kSize, QImage::Format_RGB32);
    image.fill(Qt::black);
    image.fill(Qt::magenta);
    QPainter painter(&image);
    simulator::paintLectureRoom(painter, QRect(40, 20, 240, 135), degrees(140, -20, 700));
    EXPECT_TRUE(painter.transform().isIdentity());
    EXPECT_FALSE(painter.hasClipping());
    EXPECT_EQ(image.pixelColor(39, 90), QColor(Qt::magenta));
    EXPECT_EQ(image.pixelColor(160, 156), QColor(Qt::magenta));
    EXPECT_NE(image.pixelColor(41, 21), QColor(Qt::magenta));
}

TEST(PoseText, WritesSpanishNumbersInAnyLocale) {
    const QLocale before;
    for (const QLocale::Language language : {QLocale::English, QLocale::Spanish, QLocale::Arabic}) {
        QLocale::setDefault(QLocale(language));
        EXPECT_EQ(simulator::poseText(degrees(12.5, -3, 150), 1000),
                  u"Pan 12,5°\u2002Inclinación \u22123,0°\u2002Zoom 150 (1,4×)"_s);
        EXPECT_EQ(simulator::poseText(degrees(-0.01, 0, 1000), 1000),
                  u"Pan 0,0°\u2002Inclinación 0,0°\u2002Zoom 1000 (10,0×)"_s);
    }
    QLocale::setDefault(before);
}

class PreviewWindowTest : public testing::Test {
 protected:
    /// Sends the camera to `pan` degrees by a SET_CUR of pan-tilt-abs, as the product does.
    void turnTo(int pan) {
        const auto raw = static_cast<std::uint32_t>(pan * 3600);
        std::array<std::uint8_t, 8> data{};
        for (unsigned i = 0; i < 4; ++i) data.at(i) = static_cast<std::uint8_t>(raw >> (8 * i));
        usb::SetupPacket setup{};
        setup.requestType = 0x21;
        setup.request = 0x01;
        setup.value = 0x0D00;
        setup.index = 0x0100;
        setup.length = 8;
        ASSERT_TRUE(camera_->controlRequest(setup, data));
    }
    [[nodiscard]] bool says(const QString &text) const {
        const auto labels = window_.findChildren<QLabel *>();
        return std::any_of(labels.begin(), labels.end(),
                           [&](QLabel *each) { return each->text().contains(text); });
    }
    /// Lets the window ask the camera anew without waiting for its timer.
    QImage refreshed() {
        window_.hide();
        window_.show();
        return window_.grab().toImage();
    }

    std::chrono::steady_clock::time_point now_;
    std::shared_ptr<CameraModel> camera_ =
        std::make_shared<CameraModel>(simulator::CameraOptions{}, [this] { return now_; });
    simulator::PreviewWindow window_{camera_};
};

TEST_F(PreviewWindowTest, FollowsTheMovingCamera) {
    const QImage home = refreshed();
    EXPECT_TRUE(says(u"En posición"_s));

    turnTo(90);
    now_ += std::chrono::milliseconds(100);
    refreshed();
    EXPECT_TRUE(says(u"En movimiento…"_s));

    now_ += std::chrono::minutes(1);
    const QImage turned = refreshed();
    EXPECT_TRUE(says(u"En posición"_s));
    EXPECT_TRUE(says(u"Pan 90,0°"_s));
    EXPECT_NE(home, turned);
}

TEST_F(PreviewWindowTest, GoesDarkWithoutItsCameraAndComesBack) {
    const QImage connected = refreshed();
    window_.setConnected(false);
    const QImage dark = window_.grab().toImage();
    EXPECT_TRUE(says(u"Desconectada"_s));
    EXPECT_FALSE(says(u"°"_s));
    EXPECT_LT(dark.pixelColor(320, 20).lightness(), 60);

    window_.setConnected(true);
    EXPECT_EQ(window_.grab().toImage(), connected);

    camera_->unplugAfter(0);
    EXPECT_EQ(refreshed(), dark);
}

TEST(Artwork, FillsItsSpaceAtOrdinaryAndDoubleResolution) {
    struct Asset {
        QString name;
        QSize size;
    };
    for (const Asset &asset : {Asset{u":/LogoZEL"_s, {80, 60}}, Asset{u":/LogoKAV"_s, {100, 40}},
                               Asset{u":/AppIcon.svg"_s, {32, 32}}})
        for (const int scale : {1, 2}) {
            QSvgRenderer drawing(asset.name);
            ASSERT_TRUE(drawing.isValid()) << asset.name.toStdString();
            EXPECT_EQ(drawing.defaultSize().width() * asset.size.height(),
                      drawing.defaultSize().height() * asset.size.width());
            QImage image(asset.size * scale, QImage::Format_ARGB32);
            image.fill(Qt::transparent);
            QPainter painter(&image);
            drawing.render(&painter);
            int inked = 0;
            for (int y = 0; y < image.height(); ++y)
                for (int x = 0; x < image.width(); ++x) inked += image.pixelColor(x, y).alpha() > 200 ? 1 : 0;
            EXPECT_GT(inked, image.width() * image.height() / 10)
                << asset.name.toStdString() << " x" << scale;
        }
}

}  // namespace
