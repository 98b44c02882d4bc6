#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "selfcheck/facts.h"
#include "selfcheck/line.h"

/// What a check has to say, in Spanish, before anything of it is drawn. Plain values, UTF-8.
namespace selfcheck {

struct Section {
    std::string title;
    std::vector<Line> lines;

    /// The worst of its lines.
    [[nodiscard]] State state() const;
};

struct Report {
    Line verdict;  ///< the whole in one sentence
    std::vector<Section> sections;
};

/// From here on one transfer is slow.
inline constexpr std::chrono::milliseconds kSlowTransfer{500};

/// Turns what was found into a report. Pure.
[[nodiscard]] Report findings(const Facts &facts);

/// The parts of the report.
[[nodiscard]] Section trialFindings(const Facts &facts);
[[nodiscard]] Section busFindings(const Facts &facts);
[[nodiscard]] Section accessFindings(const Facts &facts);
[[nodiscard]] Section panTiltFindings(const Facts &facts);
[[nodiscard]] Section zoomFindings(const Facts &facts);
[[nodiscard]] Section storeFindings(const scenes::StoreCheck &store);

}  // namespace selfcheck
