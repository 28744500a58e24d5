#pragma once

#include <ostream>
#include <string>

namespace tarvos::core {

/// Writes @p line and a newline to one of the process's streams and flushes it. The whole is a single write, so that
/// concurrent lines do not interleave; the stream's width and format are ignored.
inline void report(std::ostream& stream, std::string line) {
    line += '\n';
    stream.write(line.data(), static_cast<std::streamsize>(line.size())).flush();
}

}  // namespace tarvos::core
