#pragma once

#include "Tracker.h"

#include <iomanip>
#include <locale>
#include <sstream>
#include <string>

namespace skin_tracker {

/// The track as a table of comma-separated values, a row a frame. Without a track, its columns are empty.
class Table {
public:
    Table() {
        mText.imbue(std::locale::classic());
        mText << "frame,time,x,y,width,height,vx,vy,blobs,area,found\n" << std::fixed;
    }
    void add(int frame, double time, const Tracker& tracker) {
        mText << frame << ',' << std::setprecision(4) << time << std::setprecision(2);
        if (tracker.tracking()) {
            const MotionFilter& motion = tracker.motion();
            mText << ',' << motion.centre().x << ',' << motion.centre().y << ',' << motion.box().width << ','
                  << motion.box().height << ',' << motion.velocity().x << ',' << motion.velocity().y;
        } else {
            mText << ",,,,,,";
        }
        mText << ',' << tracker.blobs().dimension() << ',' << tracker.area() << ',' << tracker.found() << '\n';
    }
    std::string text() const { return mText.str(); }

private:
    std::ostringstream mText;
};

}  // namespace skin_tracker
