#pragma once

#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

namespace support {

/// Takes the rights to files away: their mode, and root's privilege to ignore that.
class WithoutRights {
 public:
    /// `during`: the mode that the files have meanwhile, `afterwards` the one that they have then.
    explicit WithoutRights(std::vector<std::string> paths, mode_t during = 0, mode_t afterwards = 0600)
        : paths_(std::move(paths)), afterwards_(afterwards) {
        EXPECT_EQ(syscall(SYS_capget, &header_, before_.data()), 0);
        auto without = before_;
        without[0].effective &= ~(1u << CAP_DAC_OVERRIDE | 1u << CAP_DAC_READ_SEARCH);
        EXPECT_EQ(syscall(SYS_capset, &header_, without.data()), 0);
        for (const std::string &path : paths_) EXPECT_EQ(chmod(path.c_str(), during), 0);
    }
    ~WithoutRights() {
        for (const std::string &path : paths_) EXPECT_EQ(chmod(path.c_str(), afterwards_), 0);
        EXPECT_EQ(syscall(SYS_capset, &header_, before_.data()), 0);
    }
    WithoutRights(const WithoutRights &) = delete;
    WithoutRights &operator=(const WithoutRights &) = delete;

 private:
    std::vector<std::string> paths_;
    mode_t afterwards_;
    __user_cap_header_struct header_{_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> before_{};
};

}  // namespace support
