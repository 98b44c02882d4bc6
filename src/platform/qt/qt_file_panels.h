#pragma once

#include <QPointer>

#include "platform/services.h"

class QFileDialog;

namespace platform {

/// File panels drawn by Qt itself, so that they are in Spanish whatever the desktop's language. Object names:
/// "savePanel" and "openPanel".
class QtFilePanels final : public FilePanels {
 public:
    /// The panel belongs to the window in front, stays above the others and does not block them; it asks
    /// before an existing file is chosen. `chosen` runs from the event loop once the panel has left the
    /// screen.
    void beginSavePanel(const std::string &name, const std::optional<std::string> &folder,
                        std::function<void(std::string)> chosen) override;

    /// Application-modal, above the window in front and above an open save panel. Every file that is not
    /// hidden can be chosen.
    [[nodiscard]] std::optional<std::string> runOpenPanel(const std::string &title,
                                                          const std::optional<std::string> &folder) override;

 private:
    QPointer<QFileDialog> savePanel_;
};

}  // namespace platform
