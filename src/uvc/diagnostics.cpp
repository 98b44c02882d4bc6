#include "uvc/diagnostics.h"

#include <cstdio>
#include <string>

#include "uvc/uvc_type.h"

namespace uvc {
namespace {

void printLine(std::string line, std::initializer_list<std::string_view> pieces) {
    for (const std::string_view piece : pieces) line += piece;
    line += '\n';
    std::fputs(line.c_str(), stderr);
}

}  // namespace

void Diagnostics::warning(std::initializer_list<std::string_view> pieces) const {
    if ((flags_ & kShowWarnings) != 0) printLine("WARNING: ", pieces);
}

void Diagnostics::information(std::initializer_list<std::string_view> pieces) const {
    if ((flags_ & kShowInformation) != 0) printLine("INFO: ", pieces);
}

}  // namespace uvc
