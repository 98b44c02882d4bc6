#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "uvc/uvc_component.h"

namespace uvc {

/// One field of a record.
struct Field {
    std::string name;
    std::uint32_t type = kInvalidComponent;  ///< component code, 0 to 9
};

/// Bits of the flags word of a scan: which lines go to standard error.
inline constexpr unsigned kShowWarnings = 1;
inline constexpr unsigned kShowInformation = 2;

}  // namespace uvc

/// The layout of a control's value: named fields packed back to back, without padding, in the order of their
/// declaration. Immutable, and shared by all values of the type.
///
/// Every record buffer given to a type holds at least byteSize() bytes, in host order unless said otherwise,
/// at any alignment. No function here blocks or throws.
class UVCType {
    struct Checked {};  // only the factories can name it

 public:
    /// Answer of the lookups that find no field.
    static constexpr std::size_t notFound = ~std::size_t{0};

    /// Parses a type description: "{S4 pan; S4 tilt}", "{U2}". Names are taken in lower case. Null when the
    /// text is not a description; a warning on standard error tells why, except for "{}", "{" and null.
    [[nodiscard]] static std::shared_ptr<const UVCType> uvcTypeWithCString(const char *text);

    /// A type of `fieldCount` fields; names are copied as they are. Null when there is no field, a name is
    /// null or a code is above 9.
    [[nodiscard]] static std::shared_ptr<const UVCType> uvcTypeWithFieldCount(std::size_t fieldCount,
                                                                              const char *const *names,
                                                                              const std::uint32_t *types);

    /// A type of the pairs before the first whose name is null or whose code is outside 1 to 9. Names are
    /// copied as they are. Null when no pair is left.
    [[nodiscard]] static std::shared_ptr<const UVCType> uvcTypeWithFieldNamesAndTypes(
        std::initializer_list<std::pair<const char *, std::uint32_t>> pairs);

    UVCType(Checked, std::vector<uvc::Field> fields);

    [[nodiscard]] std::size_t fieldCount() const { return fields_.size(); }
    /// Null for an index outside the record.
    [[nodiscard]] const std::string *fieldNameAtIndex(std::size_t index) const;
    /// 0 for an index outside the record.
    [[nodiscard]] std::uint32_t fieldTypeAtIndex(std::size_t index) const;
    /// The first field of this name, whatever its case; notFound if there is none.
    [[nodiscard]] std::size_t indexOfFieldWithName(std::string_view name) const;
    /// That field's code; 0 if there is none.
    [[nodiscard]] std::uint32_t typeWithName(std::string_view name) const;

    /// Size of the record in bytes.
    [[nodiscard]] std::size_t byteSize() const;
    /// Bytes before the field. An index equal to fieldCount() yields byteSize(), one above it notFound.
    [[nodiscard]] std::size_t offsetToFieldAtIndex(std::size_t index) const;
    [[nodiscard]] std::size_t offsetToFieldWithName(std::string_view name) const;

    /// Turn a record from host order into USB order (little-endian) and back, in place. Nothing to do on a
    /// little-endian host.
    void byteSwapHostToUSBEndian(void *buffer) const;
    void byteSwapUSBToHostEndian(void *buffer) const;

    /// Whether both have the same component codes in the same order; names are not compared.
    [[nodiscard]] bool isEqual(const UVCType *other) const;

    [[nodiscard]] std::string description() const;
    /// One line a field, for people; each line ends with a line feed.
    [[nodiscard]] std::string typeSummaryString() const;

    /// Reads a value string into `buffer`: "{10,12}", "{pan=10,tilt=12}", "default", "minimum", "maximum", or
    /// the bare value of a one-field type ("150", "0.5", "true"). A field may also be given as one of the
    /// three words, and as a fraction (0.0 to 1.0) of the control's range.
    ///
    /// The four record buffers are the control's range, step and default; each may be null. Numbers are
    /// clamped to the range, then rounded to a multiple of the step. A whole number is read at the field's
    /// width when that is unsigned, and wraps to it: "-5" in 16 bits is 65531. For a signed field of up to 4
    /// bytes it is read at twice the width, and one that does not fit is stored as the nearest that does.
    /// `flags` selects the lines printed on standard error. True when every field was assigned; otherwise the
    /// fields before the fault keep their new values.
    [[nodiscard]] bool scanCString(const char *text, void *buffer, unsigned flags) const;
    [[nodiscard]] bool scanCString(const char *text, void *buffer, unsigned flags, const void *minimum,
                                   const void *maximum) const;
    [[nodiscard]] bool scanCString(const char *text, void *buffer, unsigned flags, const void *minimum,
                                   const void *maximum, const void *stepSize) const;
    [[nodiscard]] bool scanCString(const char *text, void *buffer, unsigned flags, const void *minimum,
                                   const void *maximum, const void *stepSize, const void *defaultValue) const;

    /// The value string of a record: "{pan=-720,tilt=360}", or the bare value of a one-field type. Nothing
    /// for a one-field type of code 0.
    [[nodiscard]] std::optional<std::string> stringFromBuffer(const void *buffer) const;

 private:
    std::vector<uvc::Field> fields_;
    bool hostIsUSBEndian_;
};

namespace uvc {

/// Reverses the bytes of each multi-byte field: what a big-endian host does on its way to the wire and back.
void reverseFieldBytes(const UVCType &type, void *buffer);

}  // namespace uvc
