#include "scenes/scene_json.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>

namespace scenes {
namespace {

using Json = nlohmann::json;
using OrderedJson = nlohmann::ordered_json;

/// The library would turn 5.5 into 5 and wrap 9223372036854775808. A scene with such a number is damaged.
std::optional<std::int64_t> wholeNumber(const Json &value) {
    if (value.is_number_unsigned()) {
        const auto number = value.get<std::uint64_t>();
        if (number > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()))
            return std::nullopt;
        return static_cast<std::int64_t>(number);
    }
    if (value.is_number_integer()) return value.get<std::int64_t>();
    if (!value.is_number_float()) return std::nullopt;
    const double number = value.get<double>();
    // The lower limit is refused, too: the library rounds an integer just below the range to it.
    if (!(number > -0x1p63 && number < 0x1p63) || number != std::trunc(number)) return std::nullopt;
    return static_cast<std::int64_t>(number);
}

/// Reads the members of one scene and keeps the first error.
class SceneReader {
 public:
    explicit SceneReader(const Json &object) : object_(object) {}

    void text(const char *key, std::string &field) {
        const auto found = object_.find(key);
        if (found == object_.end() || !found->is_string()) {
            complain(key, "a text");
        } else {
            field = found->get_ref<const std::string &>();
        }
    }

    void integer(const char *key, std::int64_t &field) {
        const auto found = object_.find(key);
        const auto number = found == object_.end() ? std::nullopt : wholeNumber(*found);
        if (!number) {
            complain(key, "an integer");
        } else {
            field = *number;
        }
    }

    [[nodiscard]] const std::string &error() const { return error_; }

 private:
    void complain(const std::string &key, const std::string &wanted) {
        if (error_.empty()) error_ = "\"" + key + "\" is missing or not " + wanted;
    }

    const Json &object_;
    std::string error_;
};

std::optional<ManualPreset> presetFromObject(const Json &object, std::string &error) {
    if (!object.is_object()) {
        error = "not an object";
        return std::nullopt;
    }
    ManualPreset preset;
    SceneReader reader(object);
    reader.text("Name", preset.Name);
    reader.text("DS_Path", preset.DS_Path);
    reader.text("HID_Path", preset.HID_Path);
    reader.text("HID_SerialNumber", preset.HID_SerialNumber);
    reader.integer("Tilt", preset.Tilt);
    reader.integer("Pan", preset.Pan);
    reader.integer("Zoom", preset.Zoom);
    if (!reader.error().empty()) {
        error = reader.error();
        return std::nullopt;
    }
    return preset;
}

OrderedJson objectFromPreset(const ManualPreset &preset) {
    OrderedJson object = OrderedJson::object();
    object["Name"] = preset.Name;
    object["DS_Path"] = preset.DS_Path;
    object["HID_Path"] = preset.HID_Path;
    object["HID_SerialNumber"] = preset.HID_SerialNumber;
    object["Tilt"] = preset.Tilt;
    object["Pan"] = preset.Pan;
    object["Zoom"] = preset.Zoom;
    return object;
}

/// Scene files have "\/" for a solidus, which JSON allows; it occurs only inside strings here.
std::string withEscapedSolidus(const std::string &json) {
    std::string escaped;
    escaped.reserve(json.size());
    for (const char character : json) {
        if (character == '/') escaped += '\\';
        escaped += character;
    }
    return escaped;
}

}  // namespace

std::optional<std::string> jsonFromPresets(const std::vector<ManualPreset> &presets, std::string &error) {
    OrderedJson array = OrderedJson::array();
    for (const ManualPreset &preset : presets) array.push_back(objectFromPreset(preset));
    try {
        return withEscapedSolidus(array.dump());
    } catch (const OrderedJson::exception &failure) {
        error = failure.what();
        return std::nullopt;
    }
}

std::optional<std::vector<ManualPreset>> presetsFromJson(std::string_view json, std::string &error) {
    try {
        const Json array = Json::parse(json);
        if (!array.is_array()) {
            error = "not an array of scenes";
            return std::nullopt;
        }
        std::vector<ManualPreset> presets;
        presets.reserve(array.size());
        for (const Json &element : array) {
            auto preset = presetFromObject(element, error);
            if (!preset) {
                error.insert(0, "scene " + std::to_string(presets.size() + 1) + ": ");
                return std::nullopt;
            }
            presets.push_back(*std::move(preset));
        }
        return presets;
    } catch (const Json::exception &failure) {
        error = failure.what();
        return std::nullopt;
    }
}

std::string withoutNulls(std::string_view json) {
    constexpr std::string_view word = "null";
    std::string result;
    result.reserve(json.size());
    bool inString = false;
    while (!json.empty()) {
        if (json.starts_with(word)) {
            result += inString ? R"(\"\")" : R"("")";
            json.remove_prefix(word.size());
            continue;
        }
        if (json.front() == '"') inString = !inString;
        // An escape is taken whole: its second character does not end the string or begin the word ("\null"
        // is a line break and "ull").
        const std::size_t taken = inString && json.front() == '\\' && json.size() > 1 ? 2 : 1;
        result += json.substr(0, taken);
        json.remove_prefix(taken);
    }
    return result;
}

}  // namespace scenes
