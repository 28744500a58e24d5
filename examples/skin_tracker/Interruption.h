#pragma once

namespace skin_tracker {

/// Lets SIGINT and SIGTERM end the program in order: the first of them is noted; a second one ends it at once.
class Interruption {
public:
    Interruption();

    /// The signal that came, 0 for none.
    int signal() const;
};

}  // namespace skin_tracker
