#include "uvc/uvc_control.h"

#include <cstdio>
#include <utility>

#include "uvc/uvc_catalogue.h"
#include "uvc/uvc_controller.h"

std::unique_ptr<UVCControl> UVCControl::initControlWithName(std::string name, UVCController &parent,
                                                            std::size_t controlIndex) {
    std::uint32_t capabilities = 0;
    if (!parent.capabilities(capabilities, controlIndex)) return nullptr;
    return std::make_unique<UVCControl>(Checked(), std::move(name), parent, controlIndex, capabilities);
}

UVCControl::UVCControl(Checked, std::string name, UVCController &parent, std::size_t controlIndex,
                       std::uint32_t capabilities)
    : parent_(parent), controlIndex_(controlIndex), name_(std::move(name)), capabilities_(capabilities) {
    const auto type = uvc::controlType(controlIndex);
    currentValue_ = UVCValue::uvcValueWithType(type);
    minimum_ = UVCValue::uvcValueWithType(type);
    maximum_ = UVCValue::uvcValueWithType(type);
    stepSize_ = UVCValue::uvcValueWithType(type);
    defaultValue_ = UVCValue::uvcValueWithType(type);
    parent_.getLowValue(minimum_, maximum_, stepSize_, defaultValue_, capabilities_, controlIndex_);
}

std::shared_ptr<UVCValue> UVCControl::currentValue() {
    return readIntoCurrentValue() ? currentValue_ : nullptr;
}

bool UVCControl::readIntoCurrentValue() {
    return parent_.getValue(*currentValue_, controlIndex_);
}

bool UVCControl::writeFromCurrentValue() {
    return parent_.setValue(*currentValue_, controlIndex_);
}

bool UVCControl::setCurrentValueFromCString(const char *text, unsigned flags) {
    return currentValue_->scanCString(text, flags, minimum_.get(), maximum_.get(), stepSize_.get(),
                                      defaultValue_.get());
}

bool UVCControl::resetToDefaultValue() {
    return defaultValue_ && parent_.setValue(*defaultValue_, controlIndex_);
}

std::string UVCControl::description() const {
    char part[96];
    std::snprintf(part, sizeof part, "]@%p { capabilities: %012x, byte-size: %zu",
                  static_cast<const void *>(this), unsigned{capabilities_}, currentValue_->byteSize());
    std::string text = "UVCControl[" + name_ + part;
    if (hasRange()) text += "; range: [" + minimum_->description() + "," + maximum_->description() + "]";
    if (hasStepSize()) text += "; step-size: " + stepSize_->description();
    if (hasDefaultValue()) text += "; default-value: " + defaultValue_->description();
    return text + " }";
}

std::string UVCControl::summaryString() const {
    std::string text =
        name_ + " {\n  type-description: {\n" + currentValue_->valueType()->typeSummaryString() + "  },";
    const auto line = [&text](const char *label, const UVCValue &value) {
        text.append("\n  ").append(label).append(": ").append(value.stringValue().value_or(""));
    };
    if (hasRange()) {
        line("minimum", *minimum_);
        line("maximum", *maximum_);
    }
    if (hasStepSize()) line("step-size", *stepSize_);
    if (hasDefaultValue()) line("default-value", *defaultValue_);
    return text + "\n}";
}
