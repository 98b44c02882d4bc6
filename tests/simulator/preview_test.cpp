#include <gtest/gtest.h>

#include <QImage>
#include <QLabel>
#include <QLocale>
#include <algorithm>
#include <chrono>
#include <memory>

#include "simulator/preview/preview_window.h"
#include "simulator/usbip/room_picture.h"

namespace {

using namespace Qt::Literals::StringLiterals;
using simulator::CameraModel;

class PreviewWindowTest : public testing::Test {
 protected:
    /// As the product does, by a SET_CUR of pan-tilt-abs.
    void turnTo(int pan, int tilt) {
        const auto raw = [](int angle) { return static_cast<std::uint32_t>(3600 * angle); };
        simulator::Bytes data =
            simulator::ByteWriter(std::endian::little).u4(raw(pan)).u4(raw(tilt)).finished();
        ASSERT_TRUE(camera_->controlRequest({0x21, 0x01, 0x0D00, 0x0100, 8}, data));
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

TEST_F(PreviewWindowTest, FollowsTheMovingCameraAsItsVideoDoes) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Arabic));
    const QImage home = refreshed();
    simulator::usbip::RoomPicture video;
    const simulator::Bytes frame = video.of(*camera_);

    turnTo(90, -3);
    now_ += std::chrono::milliseconds(100);
    refreshed();
    EXPECT_TRUE(says(u"En movimiento…"_s));

    now_ += std::chrono::minutes(1);
    const QImage turned = refreshed();
    EXPECT_TRUE(says(u"En posición"_s));
    EXPECT_TRUE(says(u"Giro 90,0°\u2002Inclinación \u22123,0°\u2002Zoom 0 (1,0×)"_s));
    EXPECT_NE(home, turned);
    EXPECT_NE(video.of(*camera_), frame);
    QLocale::setDefault(before);
}

TEST_F(PreviewWindowTest, GoesDarkWithoutItsCameraAndComesBack) {
    const QImage connected = refreshed();
    window_.setConnected(false);
    const QImage dark = window_.grab().toImage();
    EXPECT_TRUE(says(u"Desconectada"_s));
    EXPECT_FALSE(says(u"°"_s));

    window_.setConnected(true);
    EXPECT_EQ(window_.grab().toImage(), connected);

    camera_->unplugAfter(0);
    EXPECT_EQ(refreshed(), dark);
}

}  // namespace
