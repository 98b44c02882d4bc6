#include "ui/modal_prompts.h"

#include "platform/services.h"

std::string askStringDialog(const std::string &question, const std::string &text,
                            const std::string &defaultText) {
    const auto answer = platform::services().alerts->run({.messageText = question,
                                                          .informativeText = text,
                                                          .buttons = {"OK", "Cancelar"},
                                                          .windowTitle = std::nullopt,
                                                          .fieldText = defaultText});
    return answer.isFirstButton() ? answer.fieldText : std::string();
}

bool askConfirmDialog(const std::string &question, const std::string &text) {
    return platform::services()
        .alerts
        ->run({.messageText = question,
               .informativeText = text,
               .buttons = {"Confirmar", "Cancelar"},
               .windowTitle = std::nullopt,
               .fieldText = std::nullopt})
        .isFirstButton();
}
