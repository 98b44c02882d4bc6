#include "scenes/name_order.h"

#include <QByteArrayView>
#include <QString>
#include <QStringDecoder>
#include <algorithm>
#include <cstddef>
#include <utility>

#include "scenes/utf8.h"

namespace scenes {
namespace {

bool isAscii(std::string_view name) {
    return std::all_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

enum class Case { asWritten, lowered };

/// What is compared, bytewise, in place of `name`.
std::string sortKey(std::string_view name, Case letters) {
    if ((letters == Case::asWritten && isAscii(name)) || !isValidUtf8(name)) return std::string(name);
    // Not QString::fromUtf8, which would drop a leading byte order mark and make two names one.
    QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    QString text = decode(QByteArrayView(name.data(), static_cast<qsizetype>(name.size())));
    if (letters == Case::lowered) text = text.toLower();
    return text.normalized(QString::NormalizationForm_C).toUtf8().toStdString();
}

void stableSort(std::vector<std::string> &names, Case letters) {
    std::vector<std::pair<std::string, std::string>> keyed;
    keyed.reserve(names.size());
    for (std::string &name : names) {
        std::string key = sortKey(name, letters);
        keyed.emplace_back(std::move(key), std::move(name));
    }
    std::stable_sort(keyed.begin(), keyed.end(),
                     [](const auto &a, const auto &b) { return a.first < b.first; });
    std::transform(keyed.begin(), keyed.end(), names.begin(),
                   [](auto &pair) { return std::move(pair.second); });
}

}  // namespace

bool sameName(std::string_view a, std::string_view b) {
    return a == b || sortKey(a, Case::asWritten) == sortKey(b, Case::asWritten);
}

bool NameLess::operator()(const std::string &a, const std::string &b) const {
    return sortKey(a, Case::asWritten) < sortKey(b, Case::asWritten);
}

void sortCentreNames(std::vector<std::string> &names) {
    stableSort(names, Case::asWritten);
}

void sortRoomNames(std::vector<std::string> &names) {
    stableSort(names, Case::lowered);
}

}  // namespace scenes
