#include "output/OutputWidth.h"

#include "ezPlatform/text/CString.h"
#include "output/Limits.h"

#include <algorithm>
#include <cstdlib>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

constexpr std::size_t kWidthWithoutTerminal = 100;

} // namespace

std::optional<std::size_t> StatedWidth(std::string_view aText) {
    uint32 width = 0;
    if (!ezReadDecimal32(aText, &width) || width == 0) {
        return std::nullopt;
    }
    return std::min(width, kOutput_MaxWidth);
}

std::size_t OutputWidth() {
    const char* const columns = std::getenv("COLUMNS");
    if (const std::optional<std::size_t> stated = StatedWidth(columns != nullptr ? columns : "")) {
        return *stated;
    }
    winsize size = {};
    // A terminal that was never given a size states 0.
    const bool fKnown = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col != 0;
    return fKnown ? std::min<std::size_t>(size.ws_col, kOutput_MaxWidth) : kWidthWithoutTerminal;
}
