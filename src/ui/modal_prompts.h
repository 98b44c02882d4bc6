#pragma once

#include <string>

/// Both block until the user has answered, application-modal.

/// Asks for one line of text. The text exactly as typed, blanks included; empty when the user cancelled
/// (which the caller cannot tell from an empty answer).
[[nodiscard]] std::string askStringDialog(const std::string &question, const std::string &text,
                                          const std::string &defaultText);

/// Asks for confirmation. True only when the user chose "Confirmar".
[[nodiscard]] bool askConfirmDialog(const std::string &question, const std::string &text);
