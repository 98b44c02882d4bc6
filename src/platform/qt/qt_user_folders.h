#pragma once

#include "platform/services.h"

namespace platform {

/// The user folders of the desktop (user-dirs.dirs, else ~/Documents and ~/Downloads). Read anew at every
/// call. The home folder is HOME or, where that is unset or empty, the password database's. A folder that
/// comes out relative, or as the root of the file system, counts as unknown.
class QtUserFolders final : public UserFolders {
 public:
    [[nodiscard]] std::optional<std::string> documents() const override;
    [[nodiscard]] std::optional<std::string> downloads() const override;
};

}  // namespace platform
