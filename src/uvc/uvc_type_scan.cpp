// The value strings that hold a whole record: UVCType::scanCString.

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "uvc/ascii.h"
#include "uvc/uvc_component_scan.h"
#include "uvc/uvc_type.h"

namespace {

using uvc::Diagnostics;
using uvc::ScanLimits;

struct RecordKeyword {
    std::string_view word;
    const void *ScanLimits::*source;
};

constexpr std::array<RecordKeyword, 3> kRecordKeywords = {{
    {"default", &ScanLimits::defaultValue},
    {"minimum", &ScanLimits::minimum},
    {"maximum", &ScanLimits::maximum},
}};

/// One scan of one record: what all its steps need.
struct RecordScan {
    const UVCType &type;
    void *buffer;
    ScanLimits limits;
    Diagnostics diagnostics;

    /// Scans field `index` at `text` and moves `text` behind it and what separates it from the next.
    bool scanField(std::size_t index, const char *&text) const {
        const std::size_t offset = type.offsetToFieldAtIndex(index);
        const auto consumed = uvc::scanComponent(type.fieldTypeAtIndex(index), text,
                                                 static_cast<std::uint8_t *>(buffer) + offset,
                                                 limits.atOffset(offset), diagnostics);
        if (!consumed) return false;

        text += *consumed;
        while (*text == ',' || uvc::ascii::isBlank(*text)) ++text;
        return true;
    }

    /// A keyword for the whole record, or the value of its only field.
    bool scanBareText(const char *text) const {
        bool copied = false;
        for (const RecordKeyword &keyword : kRecordKeywords)
            if (uvc::ascii::beginsWith(text, keyword.word)) copied = copyRecord(keyword);

        // A one-field type reads keywords a second time as its field's value, and that outcome counts.
        return type.fieldCount() == 1 ? scanField(0, text) : copied;
    }

    bool copyRecord(const RecordKeyword &keyword) const {
        const void *source = limits.*keyword.source;
        if (source == nullptr) {
            diagnostics.warning({"No ", keyword.word, " value provided by this control"});
            return false;
        }
        diagnostics.information({"Copying ", keyword.word, " value provided by this control"});
        std::memcpy(buffer, source, type.byteSize());
        return true;
    }

    bool scanFieldsInOrder(const char *text) const {
        std::size_t index = 0;
        while (*text != '\0' && index < type.fieldCount()) {
            diagnostics.information({"Processing substring '", text, "'"});
            if (!scanField(index, text)) break;
            ++index;
            if (*text == '}') break;
        }
        return index == type.fieldCount();
    }

    bool scanNamedFields(const char *text) const {
        std::vector<bool> assigned(type.fieldCount());
        while (*text != '\0') {
            diagnostics.information({"Processing substring '", text, "'"});
            const std::size_t index = scanName(text);
            if (index == UVCType::notFound) return false;
            if (!scanField(index, text)) break;
            assigned[index] = true;
            if (*text == '}') break;
        }
        return allAssigned(assigned);
    }

    /// Moves `text` behind "name=" and answers the field's index, or notFound. Blanks before the "=" belong
    /// to the name.
    std::size_t scanName(const char *&text) const {
        text = uvc::ascii::skipBlanks(text);
        const std::size_t length = std::strcspn(text, "=");
        const std::string name = uvc::ascii::toLower(std::string_view(text, length));
        const std::size_t index = type.indexOfFieldWithName(name);
        if (index == UVCType::notFound)
            diagnostics.warning({"Field name '", name, "' not defined for this type"});

        text += length;
        if (*text == '=') ++text;
        return index;
    }

    bool allAssigned(const std::vector<bool> &assigned) const {
        const auto missing = std::count(assigned.begin(), assigned.end(), false);
        if (missing == 0) return true;

        diagnostics.warning({std::to_string(missing), " named field", missing == 1 ? "" : "s", " ",
                             missing == 1 ? "was" : "were", " not provided"});
        return false;
    }

    bool scan(const char *text) const {
        text = uvc::ascii::skipBlanks(text);
        if (*text != '{') return scanBareText(text);

        const bool isNamed = std::strchr(text, '=') != nullptr;
        diagnostics.information({"Using ", isNamed ? "named-value" : "in-order", " field assignments"});
        return isNamed ? scanNamedFields(text + 1) : scanFieldsInOrder(text + 1);
    }
};

}  // namespace

bool UVCType::scanCString(const char *text, void *buffer, unsigned flags) const {
    return scanCString(text, buffer, flags, nullptr, nullptr, nullptr, nullptr);
}

bool UVCType::scanCString(const char *text, void *buffer, unsigned flags, const void *minimum,
                          const void *maximum) const {
    return scanCString(text, buffer, flags, minimum, maximum, nullptr, nullptr);
}

bool UVCType::scanCString(const char *text, void *buffer, unsigned flags, const void *minimum,
                          const void *maximum, const void *stepSize) const {
    return scanCString(text, buffer, flags, minimum, maximum, stepSize, nullptr);
}

bool UVCType::scanCString(const char *text, void *buffer, unsigned flags, const void *minimum,
                          const void *maximum, const void *stepSize, const void *defaultValue) const {
    if (text == nullptr || buffer == nullptr) return false;

    const Diagnostics diagnostics(flags);
    const RecordScan scan{*this, buffer, {minimum, maximum, stepSize, defaultValue}, diagnostics};
    if (!scan.scan(text)) return false;

    diagnostics.information({"Successfully scanned all fields for this type"});
    return true;
}
