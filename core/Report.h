#pragma once

#include <exception>
#include <ostream>
#include <string>

namespace tarvos::core {

/// Writes @p line and a newline to one of the process's streams and flushes it. Issued as one write, so that concurrent
/// lines do not interleave; the stream's width and format are ignored, and a failure is never thrown, even if the
/// application lets the stream, or the one that is tied to it, throw.
inline void report(std::ostream& stream, std::string line) {
    line += '\n';
    try {
        if (stream.tie() != nullptr)
            stream.tie()->flush();
    } catch (const std::exception&) {
    }
    try {
        // Straight to the buffer: the stream's own output would flush the tied one again, and fail with it.
        const auto size = static_cast<std::streamsize>(line.size());
        if (stream.good() && (stream.rdbuf()->sputn(line.data(), size) != size || stream.rdbuf()->pubsync() != 0))
            stream.setstate(std::ios_base::badbit);
    } catch (const std::exception&) {
    }
}

}  // namespace tarvos::core
