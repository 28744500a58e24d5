#include "Interruption.h"

#include <csignal>

namespace skin_tracker {

namespace {

volatile std::sig_atomic_t noted = 0;

}  // namespace

Interruption::Interruption() {
    struct sigaction action {};
    action.sa_handler = [](int signal) { noted = signal; };
    action.sa_flags = static_cast<int>(SA_RESETHAND) | SA_RESTART;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

int Interruption::signal() const {
    return noted;
}

}  // namespace skin_tracker
