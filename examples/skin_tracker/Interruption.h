#pragma once

#include <csignal>

namespace skin_tracker {

/// Lets SIGINT and SIGTERM end the program in order: the first of them is noted; a second one ends it at once.
class Interruption {
public:
    Interruption() {
        struct sigaction action {};
        action.sa_handler = [](int signal) { noted = signal; };
        action.sa_flags = static_cast<int>(SA_RESETHAND) | SA_RESTART;
        sigaction(SIGINT, &action, nullptr);
        sigaction(SIGTERM, &action, nullptr);
    }

    /// The signal that came, 0 for none.
    int signal() const { return noted; }

private:
    static inline volatile std::sig_atomic_t noted = 0;
};

}  // namespace skin_tracker
