#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "selfcheck/examination.h"
#include "selfcheck/findings.h"
#include "selfcheck/order_trial.h"
#include "selfcheck/report_text.h"
#include "support/simulated_camera.h"
#include "support/store.h"

/// A room with a camera, a store and an inspector that says how the camera is reached.
class SelfcheckBench : public testing::Test, protected support::Store {
 protected:
    simulator::CameraModel &camera() { return *room_->camera; }
    simulator::SimulatedRegistry &bus() { return *room_->bus; }
    /// How many requests have reached the camera.
    std::size_t asked() { return camera().transfers().size(); }
    /// Another room, whose camera is of this kind.
    simulator::CameraModel &plug(simulator::CameraOptions options) {
        room_.emplace(std::move(options));
        return camera();
    }
    /// One more camera, at a port behind that of the first.
    std::shared_ptr<simulator::CameraModel> plugAnother(simulator::CameraOptions options,
                                                        std::vector<std::uint8_t> ports) {
        auto another = std::make_shared<simulator::CameraModel>(std::move(options));
        bus().plug(another, 1, std::move(ports));
        return another;
    }

    /// A whole check; `before` is called before each step.
    selfcheck::Facts examine(
        const std::function<void()> &before = [] {},
        std::chrono::milliseconds patience = std::chrono::milliseconds(usb::kRequestTimeout)) {
        selfcheck::Examination check(
            room_->bus,
            [this](std::uint32_t locationId) {
                inspected_ = locationId;
                return access_;
            },
            patience);
        do before();
        while (check.step());
        return check.facts();
    }
    /// `facts` after an order to their camera.
    selfcheck::Facts tried(selfcheck::Facts facts) {
        selfcheck::OrderTrial trial(room_->bus, facts);
        while (trial.step())
            ;
        facts.trial = trial.facts();
        return facts;
    }

    /// The report as it would be copied has these pieces, and not what stands behind a "!".
    using Pieces = std::vector<std::string>;
    static void expectSaid(const selfcheck::Facts &facts, const Pieces &pieces) {
        const std::string told = selfcheck::textOf(selfcheck::findings(facts), "01/02/2025 10:00:00", "1.0");
        for (const std::string &piece : pieces)
            EXPECT_EQ(told.find(piece.substr(piece[0] == '!')) == std::string::npos, piece[0] == '!')
                << piece << " in:\n"
                << told;
    }

    std::uint32_t inspected_ = 0;  ///< whose access was looked at last
    std::optional<support::SimulatedCamera> room_{std::in_place};
    std::optional<usb::InterfaceReport> access_{{.holder = usb::Holder::cameraDriver,
                                                 .holderName = "uvcvideo",
                                                 .backend = usb::Backend::driver,
                                                 .path = "/dev/video0",
                                                 .access = usb::Outcome::done,
                                                 .programs = {}}};
};
