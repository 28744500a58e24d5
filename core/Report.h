#pragma once

#include <ostream>
#include <string>

namespace tarvos::core {

/// Writes @p line and a newline to one of the process's streams and flushes it. The whole is a single write, so that
/// concurrent lines do not interleave; the stream's width and format are ignored, and so is a failure where the
/// application lets the stream throw.
inline void report(std::ostream& stream, std::string line) {
    line += '\n';
    try {
        stream.write(line.data(), static_cast<std::streamsize>(line.size())).flush();
    } catch (const std::ios_base::failure&) {
    }
}

}  // namespace tarvos::core
