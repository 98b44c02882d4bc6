#pragma once

#include <cstdio>
#include <memory>

namespace scenes {

struct CloseFile {
    void operator()(std::FILE *file) const { std::fclose(file); }
};
using FileHandle = std::unique_ptr<std::FILE, CloseFile>;

}  // namespace scenes
