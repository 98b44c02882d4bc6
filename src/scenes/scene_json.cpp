#include "scenes/scene_json.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <utility>

#include "scenes/utf8.h"

namespace scenes {
namespace {

using Json = nlohmann::json;
using OrderedJson = nlohmann::ordered_json;

/// One member of a scene: a text or a number.
struct Field {
    const char *key;
    std::string ManualPreset::*text;
    std::int64_t ManualPreset::*number;
};

constexpr std::array kFields{
    Field{"Name", &ManualPreset::Name, nullptr},
    Field{"DS_Path", &ManualPreset::DS_Path, nullptr},
    Field{"HID_Path", &ManualPreset::HID_Path, nullptr},
    Field{"HID_SerialNumber", &ManualPreset::HID_SerialNumber, nullptr},
    Field{"Tilt", nullptr, &ManualPreset::Tilt},
    Field{"Pan", nullptr, &ManualPreset::Pan},
    Field{"Zoom", nullptr, &ManualPreset::Zoom},
};

/// Takes the scenes out of the text while the library reads it (its SAX interface), so that no tree of a
/// large file stands in memory. What is wrong with a scene is kept, the first of it, and told only when all
/// of the text turns out to be JSON.
class SceneReader {
 public:
    [[nodiscard]] bool isArray() const { return isArray_; }
    [[nodiscard]] const std::string &error() const { return error_; }
    [[nodiscard]] std::vector<ManualPreset> takePresets() { return std::move(presets_); }

    // The names are the library's.
    bool null() { return value(); }
    bool boolean(bool /*value*/) { return value(); }
    bool binary(const Json::binary_t & /*value*/) { return value(); }
    bool string(std::string &text) {
        auto *const field = member(&Field::text);
        if (field != nullptr) *field = std::move(text);
        return value(field != nullptr);
    }
    bool number_integer(std::int64_t number) { return integer(number); }
    bool number_unsigned(std::uint64_t number) {
        // The library would wrap 9223372036854775808. A scene with such a number is damaged.
        if (number > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) return value();
        return integer(static_cast<std::int64_t>(number));
    }
    bool number_float(double number, const std::string & /*text*/) {
        // The lower limit is refused, too: an integer just below the range is rounded to it.
        if (!(number > -0x1p63 && number < 0x1p63) || number != std::trunc(number)) return value();
        return integer(static_cast<std::int64_t>(number));
    }
    bool key(const std::string &key) {
        if (depth_ != kInScene) return true;
        const auto found = std::find_if(kFields.begin(), kFields.end(),
                                        [&](const Field &field) { return key == field.key; });
        member_ = static_cast<std::size_t>(found - kFields.begin());
        return true;
    }
    bool start_object(std::size_t /*size*/) {
        if (depth_ == kInArray) {
            addScene();
        } else {
            value();
        }
        ++depth_;
        return true;
    }
    bool end_object() {
        if (--depth_ == kInArray) checkScene();
        return true;
    }
    bool start_array(std::size_t /*size*/) {
        if (depth_ == 0) {
            isArray_ = true;
        } else {
            value();
        }
        ++depth_;
        return true;
    }
    bool end_array() {
        --depth_;
        return true;
    }
    bool parse_error(std::size_t /*position*/, const std::string & /*token*/,
                     const Json::exception &failure) {
        // It quotes what was read last, which may be long.
        constexpr std::size_t kLongestReason = 200;
        error_ = repairUtf8(std::string_view(failure.what()).substr(0, kLongestReason));
        return false;
    }

 private:
    static constexpr std::size_t kInArray = 1;
    static constexpr std::size_t kInScene = 2;
    static constexpr std::size_t kNoMember = kFields.size();

    /// Where the value of the scene's present member goes; null when it is not of that kind.
    template <typename Kind>
    [[nodiscard]] Kind *member(Kind ManualPreset::*Field::*kind) {
        if (depth_ != kInScene || member_ == kNoMember || kFields[member_].*kind == nullptr) return nullptr;
        return &(presets_.back().*(kFields[member_].*kind));
    }

    bool integer(std::int64_t number) {
        auto *const field = member(&Field::number);
        if (field != nullptr) *field = number;
        return value(field != nullptr);
    }

    /// A value or the start of one; `isRight`: of the kind that the scene's present member has.
    bool value(bool isRight = false) {
        if (depth_ == kInArray) {
            addScene();
            complain("not an object");
        } else if (depth_ == kInScene && member_ != kNoMember) {
            isRight_[member_] = isRight;
        }
        return true;
    }

    void addScene() {
        // Once a scene is wrong none is wanted: those that follow take its place.
        if (error_.empty()) presets_.emplace_back();
        isRight_.reset();
        member_ = kNoMember;
    }

    void checkScene() {
        for (std::size_t i = 0; i < kFields.size() && error_.empty(); ++i) {
            const char *const wanted = kFields[i].text != nullptr ? "a text" : "an integer";
            if (!isRight_[i]) complain(std::string("\"") + kFields[i].key + "\" is missing or not " + wanted);
        }
    }

    void complain(const std::string &fault) {
        if (error_.empty()) error_ = "scene " + std::to_string(presets_.size()) + ": " + fault;
    }

    std::vector<ManualPreset> presets_;
    std::string error_;
    std::bitset<kFields.size()> isRight_;
    std::size_t depth_ = 0;  // of the containers around the next value
    std::size_t member_ = kNoMember;
    bool isArray_ = false;
};

OrderedJson objectFromPreset(const ManualPreset &preset) {
    OrderedJson object = OrderedJson::object();
    for (const Field &field : kFields) {
        if (field.text != nullptr) {
            object[field.key] = preset.*field.text;
        } else {
            object[field.key] = preset.*field.number;
        }
    }
    return object;
}

/// True of a text with more than a megabyte between two quotes. The library holds a text or a number whole,
/// several times over; names are typed, and are never so long.
bool hasEndlessToken(std::string_view json) {
    constexpr std::size_t kLongestToken = std::size_t{1} << 20;
    if (json.size() <= kLongestToken) return false;
    std::size_t begin = 0;
    for (std::size_t i = 0; i < json.size(); ++i) {
        if (i - begin > kLongestToken) return true;
        if (json[i] == '"') begin = i;
        if (json[i] == '\\') ++i;
    }
    return false;
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
    if (hasEndlessToken(json)) {
        error = "a text of more than a megabyte";
        return std::nullopt;
    }
    SceneReader reader;
    const bool isJson = Json::sax_parse(json, &reader);
    if (isJson && reader.isArray() && reader.error().empty()) return reader.takePresets();
    error = isJson && !reader.isArray() ? "not an array of scenes" : reader.error();
    return std::nullopt;
}

std::string withoutNulls(std::string text) {
    constexpr std::string_view word = "null";
    const std::string_view json = text;
    if (json.find(word) == std::string_view::npos) return text;
    std::string result;
    result.reserve(json.size());
    bool inString = false;
    std::size_t copied = 0;
    for (std::size_t i = 0; i < json.size(); ++i) {
        switch (json[i]) {
            case '"':
                inString = !inString;
                break;
            case '\\':
                // An escape is taken whole: its second character does not end the string or begin the word
                // ("\null" is a line break and "ull").
                if (inString) ++i;
                break;
            case 'n':
                if (!json.substr(i).starts_with(word)) break;
                result += json.substr(copied, i - copied);
                result += inString ? R"(\"\")" : R"("")";
                copied = i + word.size();
                i = copied - 1;
                break;
            default:
                break;
        }
    }
    result += json.substr(std::min(copied, json.size()));
    return result;
}

}  // namespace scenes
