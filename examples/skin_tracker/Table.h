#pragma once

#include "Tracker.h"

#include <sstream>
#include <string>

namespace skin_tracker {

/// The track as a table of comma-separated values, a row a frame. Without a track, its columns are empty.
class Table {
public:
    Table();

    void add(int frame, double time, const Tracker& tracker);
    std::string text() const { return mText.str(); }

private:
    std::ostringstream mText;
};

}  // namespace skin_tracker
