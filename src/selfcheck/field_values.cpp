#include "selfcheck/field_values.h"

#include "uvc/uvc_component.h"
#include "uvc/uvc_value.h"

namespace selfcheck {

FieldValues numbersOf(const UVCValue &value) {
    const UVCType &type = *value.valueType();
    const auto *record = static_cast<const std::uint8_t *>(value.valuePtr());
    FieldValues numbers;
    for (std::size_t field = 0; field < type.fieldCount(); ++field) {
        const std::uint32_t code = type.fieldTypeAtIndex(field);
        const std::uint8_t *bytes = record + type.offsetToFieldAtIndex(field);
        numbers.push_back(uvc::isSignedComponent(code)
                              ? uvc::loadSigned(code, bytes)
                              : static_cast<std::int64_t>(uvc::loadUnsigned(code, bytes)));
    }
    return numbers;
}

}  // namespace selfcheck
