#pragma once

#include <string>

namespace selfcheck {

enum class State {
    information,  ///< neither good nor bad
    good,
    warning,  ///< something to look at, which does not keep the camera from moving
    fault     ///< keeps the camera from moving, or the program from starting
};

/// "Bien", "Aviso", "Fallo", "Dato".
[[nodiscard]] std::string stateWord(State state);

/// One finding, in Spanish and UTF-8.
struct Line {
    State state = State::information;
    std::string text;
    std::string detail;  ///< figures, or what to do about it; may be empty
};

}  // namespace selfcheck
