#pragma once

#include "platform/services.h"

namespace platform {

/// The user's browser, asked through the desktop. An address that is no URL is a fatal stop.
class QtWebPages final : public WebPages {
 public:
    void open(const std::string &address) override;
};

}  // namespace platform
