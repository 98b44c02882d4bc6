#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "selfcheck/examination.h"
#include "selfcheck/findings.h"
#include "selfcheck/order_trial.h"
#include "selfcheck/report_text.h"
#include "simulator/camera_model.h"
#include "simulator/simulated_registry.h"
#include "support/store.h"

/// A bus, a store and an inspector of their own for each check.
class SelfcheckBench : public testing::Test, protected support::Store {
 protected:
    using Options = simulator::CameraOptions;

    std::shared_ptr<simulator::CameraModel> plug(Options options = {}, std::uint8_t bus = 1,
                                                 std::vector<std::uint8_t> ports = {1}) {
        auto camera = std::make_shared<simulator::CameraModel>(std::move(options));
        bus_->plug(camera, bus, std::move(ports));
        return camera;
    }

    selfcheck::AccessInspector inspector() {
        return [this](std::uint32_t location) {
            inspected_ = location;
            return access_;
        };
    }

    selfcheck::Facts examine() {
        selfcheck::Examination check(bus_, inspector());
        while (check.step()) {
        }
        return check.facts();
    }

    /// `facts` after an order to their camera.
    selfcheck::Facts tried(selfcheck::Facts facts) {
        selfcheck::OrderTrial trial(bus_, facts);
        while (trial.step()) {
        }
        facts.trial = trial.facts();
        return facts;
    }

    static std::string textOf(const selfcheck::Facts &facts) {
        return selfcheck::textOf(selfcheck::findings(facts), "01/02/2025 10:00:00", "1.0");
    }
    selfcheck::Report report() { return selfcheck::findings(examine()); }
    /// The report as it would be copied.
    std::string text() { return textOf(examine()); }

    std::shared_ptr<simulator::SimulatedRegistry> bus_ = std::make_shared<simulator::SimulatedRegistry>();
    std::optional<usb::InterfaceReport> access_ = usb::InterfaceReport{
        .interfaceNumber = 0,
        .holder = usb::Holder::cameraDriver,
        .holderName = "uvcvideo",
        .backend = usb::Backend::driver,
        .path = "/dev/video0",
        .access = usb::Outcome::done,
        .programs = {},
        .sawEveryProgram = true,
    };
    std::uint32_t inspected_ = 0;
};
