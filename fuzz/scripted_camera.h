#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "fuzz/input.h"
#include "model/camera_models.h"
#include "usb/usb.h"

namespace fuzz {

/// A supported camera whose every answer and outcome is taken from the input.
class Camera : public usb::Device {
 public:
    struct State {
        Input *input;
        std::vector<std::uint8_t> descriptors;
        int open = 0;  ///< interfaces that are open now
    };
    explicit Camera(std::shared_ptr<State> state) : state_(std::move(state)) {}

    [[nodiscard]] std::optional<std::uint16_t> vendorId() const override {
        return model::kRecords.front().vendorId;
    }
    [[nodiscard]] std::optional<std::uint16_t> productId() const override {
        return model::kRecords.front().productId;
    }
    [[nodiscard]] std::optional<std::uint32_t> locationId() const override { return 0x01200000; }
    [[nodiscard]] std::optional<std::string> registryName() const override { return std::nullopt; }
    [[nodiscard]] std::unique_ptr<usb::VideoControl> videoControl() const override {
        return std::make_unique<Interface>(state_);
    }

 private:
    static usb::Outcome outcome(Input &input) {
        // Mostly done, or little would be tried.
        const int kind = input.byte();
        return kind > static_cast<int>(usb::Outcome::failed) ? usb::Outcome::done
                                                             : static_cast<usb::Outcome>(kind);
    }

    class Interface : public usb::VideoControl {
     public:
        explicit Interface(std::shared_ptr<State> state) : state_(std::move(state)) {}
        ~Interface() override { setOpen(false); }
        Interface(const Interface &) = delete;
        Interface &operator=(const Interface &) = delete;

        [[nodiscard]] std::uint8_t interfaceNumber() const override { return 0; }
        [[nodiscard]] std::span<const std::uint8_t> classDescriptors() const override {
            return state_->descriptors;
        }
        [[nodiscard]] usb::Outcome open() override {
            const usb::Outcome result = outcome(*state_->input);
            if (result == usb::Outcome::done) setOpen(true);
            return result;
        }
        [[nodiscard]] usb::Outcome close() override {
            const usb::Outcome result = outcome(*state_->input);
            if (result == usb::Outcome::done) setOpen(false);
            return result;
        }
        [[nodiscard]] usb::Outcome controlRequest(const usb::SetupPacket &setup,
                                                  std::span<std::uint8_t> data) override {
            promise(isOpen_, "requests go to an open interface");
            promise(setup.length == data.size(), "wLength is the data's size");
            promise(setup.requestType == usb::request::kSetRequestType ||
                        setup.requestType == usb::request::kGetRequestType,
                    "requests are of the class and to an interface");
            const usb::Outcome result = outcome(*state_->input);
            if (setup.requestType == usb::request::kGetRequestType)
                std::ranges::copy(state_->input->bytes(data.size()), data.begin());
            return result;
        }

     private:
        void setOpen(bool open) {
            state_->open += static_cast<int>(open) - static_cast<int>(isOpen_);
            isOpen_ = open;
        }
        std::shared_ptr<State> state_;
        bool isOpen_ = false;
    };

    std::shared_ptr<State> state_;
};

}  // namespace fuzz
