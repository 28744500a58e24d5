#pragma once

#include <ostream>
#include <string>

namespace tarvos::core {

/// Writes @p text to one of the process's streams and flushes it: in one piece, also while other threads write, and
/// without a look at the width or the format that the application has set there.
inline void report(std::ostream& stream, const std::string& text) {
    stream.write(text.data(), static_cast<std::streamsize>(text.size())).flush();
}

}  // namespace tarvos::core
