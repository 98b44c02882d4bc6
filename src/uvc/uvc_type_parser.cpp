#include "uvc/uvc_type_parser.h"

#include <cstdio>
#include <set>
#include <string>

#include "uvc/ascii.h"

namespace uvc {
namespace {

/// A field as it stands in the text.
struct ParsedField {
    std::string name;
    std::uint32_t type = kInvalidComponent;
    long endOfName = 0;  ///< position just behind the name
};

constexpr bool isNameCharacter(char c) {
    return ascii::isLetter(c) || ascii::isDigit(c) || c == '-';
}

/// Walks a type description from its opening brace on. The warnings end without a line feed, as they
/// always have; only the one about repeated names has one.
class DescriptionReader {
 public:
    explicit DescriptionReader(const char *text) : text_(text), at_(ascii::skipBlanks(text)) {}

    bool readOpeningBrace() {
        if (*at_ != '{') {
            std::fprintf(stderr, "WARNING: No opening brace found: %s", text_);
            return false;
        }
        ++at_;
        return true;
    }

    /// False on a fault; the fields read so far are then of no use.
    bool readFields(std::vector<ParsedField> &fields) {
        while (*at_ != '\0' && *at_ != '}') {
            ParsedField field;
            field.type = readComponent();
            if (field.type == kInvalidComponent) return false;
            if (!readName(field)) return false;

            // A text that breaks off behind its very first name is taken for a fragment; from the second
            // field on only the closing brace is missing, and that is accepted.
            if (*at_ == '\0' && fields.empty()) return earlyEnd();

            while (*at_ == ';' || ascii::isBlank(*at_)) ++at_;
            fields.push_back(std::move(field));
        }
        return true;
    }

 private:
    [[nodiscard]] long position() const { return static_cast<long>(at_ - text_); }

    bool earlyEnd() const {
        std::fprintf(stderr, "WARNING: Early end to type string at %ld in: %s", position(), text_);
        return false;
    }

    /// Steps over the next token and answers its code; 0, with a warning, when there is none.
    std::uint32_t readComponent() {
        while (*at_ != '\0' && !ascii::isLetter(*at_)) ++at_;

        if (*at_ == 'B') {
            ++at_;
            return kBooleanComponent;
        }
        const std::uint32_t code = integerComponent();
        if (code == kInvalidComponent)
            std::fprintf(stderr, "WARNING: Invalid type string at %ld in: %s", position(), text_);
        else
            at_ += 2;
        return code;
    }

    /// The code of the integer token here, 0 if it is none.
    [[nodiscard]] std::uint32_t integerComponent() const {
        const char sign = ascii::toLower(*at_);
        if (sign != 's' && sign != 'u') return kInvalidComponent;

        const std::uint32_t isUnsigned = sign == 'u' ? 1 : 0;
        switch (at_[1]) {
            case '1':
                return 2 + isUnsigned;
            case '2':
                return 4 + isUnsigned;
            case '4':
                return 6 + isUnsigned;
            case '8':
                return 8 + isUnsigned;
            default:
                return kInvalidComponent;
        }
    }

    bool readName(ParsedField &field) {
        at_ = ascii::skipBlanks(at_);
        if (*at_ == '\0') return earlyEnd();

        const char *name = at_;
        while (isNameCharacter(*at_)) ++at_;
        field.name = ascii::toLower(std::string_view(name, static_cast<std::size_t>(at_ - name)));
        field.endOfName = position();
        return true;
    }

    const char *text_;
    const char *at_;
};

}  // namespace

std::optional<std::vector<Field>> parseTypeDescription(const char *text) {
    DescriptionReader reader(text);
    std::vector<ParsedField> parsed;
    if (!reader.readOpeningBrace() || !reader.readFields(parsed) || parsed.empty()) return std::nullopt;

    // Names are compared only when the whole text has proved to be well-formed: a fault behind a repeated
    // name is the one that is reported.
    std::vector<Field> fields;
    std::set<std::string> taken;
    for (ParsedField &field : parsed) {
        if (!taken.insert(field.name).second) {
            std::fprintf(stderr, "WARNING: Repeated use of type name at index %ld in '%s'\n", field.endOfName,
                         text);
            return std::nullopt;
        }
        fields.push_back({std::move(field.name), field.type});
    }
    return fields;
}

}  // namespace uvc
