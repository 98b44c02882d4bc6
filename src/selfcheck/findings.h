#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "selfcheck/facts.h"

/// What a check has to say, in Spanish, before anything of it is drawn. Plain values, UTF-8.
namespace selfcheck {

enum class State {
    Information,  ///< neither good nor bad
    Good,
    Warning,  ///< something to look at, which does not keep the camera from moving
    Fault     ///< keeps the camera from moving, or the program from starting
};

struct Line {
    State state = State::Information;
    std::string text;
    std::string detail;  ///< figures, or what to do about it; may be empty
};

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

/// "Bien", "Aviso", "Fallo", "Dato".
[[nodiscard]] std::string stateWord(State state);

/// The parts of the report.
[[nodiscard]] Section trialFindings(const Facts &facts);
[[nodiscard]] Section busFindings(const Facts &facts);
[[nodiscard]] Section accessFindings(const Facts &facts);
[[nodiscard]] Section panTiltFindings(const Facts &facts);
[[nodiscard]] Section zoomFindings(const Facts &facts);
[[nodiscard]] Section storeFindings(const scenes::StoreCheck &store);

}  // namespace selfcheck
