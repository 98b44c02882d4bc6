#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "uvc/uvc_value.h"

class UVCController;

/// One control of one device: what it can do, its range, step and default as far as the device reports them,
/// and a buffer through which its current value is read and written. Made by UVCController::controlWithName()
/// only.
class UVCControl {
    struct Checked {};  // only the factory can name it

 public:
    /// Asks the device (several requests). Null when it does not answer GET_INFO. The control belongs to
    /// `parent`, which must outlive it: what UVCController::controlWithName() hands out owns both.
    [[nodiscard]] static std::unique_ptr<UVCControl> initControlWithName(std::string name,
                                                                         UVCController &parent,
                                                                         std::size_t controlIndex);

    UVCControl(Checked, std::string name, UVCController &parent, std::size_t controlIndex,
               std::uint32_t capabilities);

    [[nodiscard]] const std::string &controlName() const { return name_; }
    [[nodiscard]] bool supportsGetValue() const { return hasCapability(0); }
    [[nodiscard]] bool supportsSetValue() const { return hasCapability(1); }
    [[nodiscard]] bool hasRange() const { return hasCapability(8); }
    [[nodiscard]] bool hasStepSize() const { return hasCapability(9); }
    [[nodiscard]] bool hasDefaultValue() const { return hasCapability(10); }

    /// Null when the device did not report it.
    [[nodiscard]] std::shared_ptr<const UVCValue> minimum() const { return minimum_; }
    [[nodiscard]] std::shared_ptr<const UVCValue> maximum() const { return maximum_; }
    [[nodiscard]] std::shared_ptr<const UVCValue> stepSize() const { return stepSize_; }
    [[nodiscard]] std::shared_ptr<const UVCValue> defaultValue() const { return defaultValue_; }

    /// Reads the value from the device, at every call. The buffer that it was read into, null when the read
    /// failed.
    [[nodiscard]] std::shared_ptr<UVCValue> currentValue();
    /// Device to buffer. On failure the buffer stays as it was.
    [[nodiscard]] bool readIntoCurrentValue();
    /// Buffer to device.
    [[nodiscard]] bool writeFromCurrentValue();
    /// Text to buffer (UVCType::scanCString with this control's range, step and default). Nothing is sent.
    [[nodiscard]] bool setCurrentValueFromCString(const char *text, unsigned flags);
    /// Default value to device; the buffer stays as it was. False without a default.
    [[nodiscard]] bool resetToDefaultValue();

    [[nodiscard]] std::string description() const;
    /// The control's layout and range, a line each. Programs cut numbers out of it: its layout is fixed.
    [[nodiscard]] std::string summaryString() const;

 private:
    [[nodiscard]] bool hasCapability(unsigned bit) const { return ((capabilities_ >> bit) & 1u) != 0; }

    UVCController &parent_;
    std::size_t controlIndex_;
    std::string name_;
    std::uint32_t capabilities_;  // bits 0 to 7: the device's GET_INFO byte
    std::shared_ptr<UVCValue> currentValue_;
    std::shared_ptr<UVCValue> minimum_;
    std::shared_ptr<UVCValue> maximum_;
    std::shared_ptr<UVCValue> stepSize_;
    std::shared_ptr<UVCValue> defaultValue_;
};
