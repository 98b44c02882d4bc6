#include "uvc/uvc_type.h"

#include <algorithm>
#include <bit>
#include <cstdio>

#include "uvc/ascii.h"
#include "uvc/uvc_type_parser.h"

std::shared_ptr<const UVCType> UVCType::uvcTypeWithCString(const char *text) {
    if (text == nullptr) return nullptr;

    auto fields = uvc::parseTypeDescription(text);
    if (!fields) return nullptr;
    return std::make_shared<const UVCType>(Checked(), std::move(*fields));
}

std::shared_ptr<const UVCType> UVCType::uvcTypeWithFieldCount(std::size_t fieldCount,
                                                              const char *const *names,
                                                              const std::uint32_t *types) {
    if (fieldCount == 0 || names == nullptr || types == nullptr) return nullptr;

    std::vector<uvc::Field> fields;
    for (std::size_t i = 0; i < fieldCount; ++i) {
        if (names[i] == nullptr || types[i] > uvc::kLastComponent) return nullptr;
        fields.push_back({names[i], types[i]});
    }
    return std::make_shared<const UVCType>(Checked(), std::move(fields));
}

std::shared_ptr<const UVCType> UVCType::uvcTypeWithFieldNamesAndTypes(
    std::initializer_list<std::pair<const char *, std::uint32_t>> pairs) {
    std::vector<uvc::Field> fields;
    for (const auto &[name, type] : pairs) {
        if (name == nullptr || !uvc::isValidComponent(type)) break;
        fields.push_back({name, type});
    }
    if (fields.empty()) return nullptr;
    return std::make_shared<const UVCType>(Checked(), std::move(fields));
}

UVCType::UVCType(Checked, std::vector<uvc::Field> fields)
    : fields_(std::move(fields)), hostIsUSBEndian_(std::endian::native == std::endian::little) {}

const std::string *UVCType::fieldNameAtIndex(std::size_t index) const {
    return index < fields_.size() ? &fields_[index].name : nullptr;
}

std::uint32_t UVCType::fieldTypeAtIndex(std::size_t index) const {
    return index < fields_.size() ? fields_[index].type : uvc::kInvalidComponent;
}

std::size_t UVCType::indexOfFieldWithName(std::string_view name) const {
    const auto found = std::find_if(fields_.begin(), fields_.end(), [name](const uvc::Field &field) {
        return uvc::ascii::equalsIgnoringCase(field.name, name);
    });
    return found == fields_.end() ? notFound : static_cast<std::size_t>(found - fields_.begin());
}

std::uint32_t UVCType::typeWithName(std::string_view name) const {
    return fieldTypeAtIndex(indexOfFieldWithName(name));
}

std::size_t UVCType::byteSize() const {
    return offsetToFieldAtIndex(fields_.size());
}

std::size_t UVCType::offsetToFieldAtIndex(std::size_t index) const {
    if (index > fields_.size()) return notFound;

    std::size_t offset = 0;
    for (std::size_t i = 0; i < index; ++i) offset += UVCTypeComponentByteSize(fields_[i].type);
    return offset;
}

std::size_t UVCType::offsetToFieldWithName(std::string_view name) const {
    return offsetToFieldAtIndex(indexOfFieldWithName(name));
}

void UVCType::byteSwapHostToUSBEndian(void *buffer) const {
    if constexpr (std::endian::native == std::endian::big) uvc::reverseFieldBytes(*this, buffer);
    static_cast<void>(buffer);
}

void UVCType::byteSwapUSBToHostEndian(void *buffer) const {
    byteSwapHostToUSBEndian(buffer);  // reversing bytes is its own inverse
}

bool UVCType::isEqual(const UVCType *other) const {
    if (other == nullptr) return false;

    return std::equal(fields_.begin(), fields_.end(), other->fields_.begin(), other->fields_.end(),
                      [](const uvc::Field &a, const uvc::Field &b) { return a.type == b.type; });
}

std::string UVCType::description() const {
    char head[128];
    std::snprintf(head, sizeof head,
                  "UVCType@%p { field-count: %zu; byte-size: %zu; needs-byte-swap: %s; fields: {",
                  static_cast<const void *>(this), fieldCount(), byteSize(), hostIsUSBEndian_ ? "no" : "yes");
    std::string text = head;
    for (const uvc::Field &field : fields_)
        text.append(" ")
            .append(__UVCTypeComponentTypeString(field.type))
            .append(" ")
            .append(field.name)
            .append(";");
    return text + " } }";
}

std::string UVCType::typeSummaryString() const {
    if (fields_.size() == 1)
        return std::string("    single value, ") + __UVCTypeComponentVerboseTypeString(fields_[0].type) +
               "\n";

    constexpr std::size_t kColumn = 32;
    std::string text;
    for (const uvc::Field &field : fields_) {
        std::string verboseName = __UVCTypeComponentVerboseTypeString(field.type);
        verboseName.resize(std::max(kColumn, verboseName.size()), ' ');
        text.append("    ").append(verboseName).append(" ").append(field.name).append(";\n");
    }
    return text;
}

namespace {

std::string valueText(std::uint32_t code, const void *field) {
    if (code == uvc::kBooleanComponent) return uvc::loadUnsigned(code, field) != 0 ? "true" : "false";
    if (uvc::isSignedComponent(code)) return std::to_string(uvc::loadSigned(code, field));
    return std::to_string(uvc::loadUnsigned(code, field));
}

}  // namespace

std::optional<std::string> UVCType::stringFromBuffer(const void *buffer) const {
    if (fields_.size() == 1) {
        if (!uvc::isValidComponent(fields_[0].type)) return std::nullopt;
        return valueText(fields_[0].type, buffer);
    }

    std::string text = "{";
    const auto *at = static_cast<const std::uint8_t *>(buffer);
    const char *separator = "";
    for (const uvc::Field &field : fields_) {
        if (!uvc::isValidComponent(field.type)) continue;

        text.append(separator).append(field.name).append("=").append(valueText(field.type, at));
        at += UVCTypeComponentByteSize(field.type);
        separator = ",";
    }
    return text + "}";
}

void uvc::reverseFieldBytes(const UVCType &type, void *buffer) {
    auto *at = static_cast<std::uint8_t *>(buffer);
    for (std::size_t i = 0; i < type.fieldCount(); ++i) {
        const std::size_t size = UVCTypeComponentByteSize(type.fieldTypeAtIndex(i));
        std::reverse(at, at + size);
        at += size;
    }
}
