// A type description: whatever the text, a type or none, and a type's own figures agree.
#include <string>
#include <vector>

#include "fuzz/input.h"
#include "uvc/uvc_type.h"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string text(data, data + size);
    const auto type = UVCType::uvcTypeWithCString(text.c_str());
    if (!type) return 0;

    std::vector<const char *> names;
    std::vector<std::uint32_t> codes;
    std::size_t offset = 0;
    for (std::size_t i = 0; i < type->fieldCount(); ++i) {
        fuzz::promise(type->offsetToFieldAtIndex(i) == offset, "fields stand back to back");
        names.push_back(type->fieldNameAtIndex(i)->c_str());
        codes.push_back(type->fieldTypeAtIndex(i));
        fuzz::promise(type->indexOfFieldWithName(names.back()) <= i, "a field is found by its name");
        const char *const name = names.back();
        const std::uint32_t code = codes.back();
        const auto alone = UVCType::uvcTypeWithFieldCount(1, &name, &code);
        fuzz::promise(alone != nullptr, "a field can be a type");
        offset += alone->byteSize();
    }
    fuzz::promise(type->fieldCount() > 0 && type->byteSize() == offset, "the fields are the record");
    const auto copy = UVCType::uvcTypeWithFieldCount(codes.size(), names.data(), codes.data());
    fuzz::promise(copy && copy->isEqual(type.get()), "a type of the same fields is equal");
    fuzz::promise(copy->typeSummaryString() == type->typeSummaryString(), "and reads the same");
    return 0;
}
