#include "Table.h"

#include <iomanip>
#include <locale>

namespace skin_tracker {

Table::Table() {
    mText.imbue(std::locale::classic());
    mText << "frame,time,x,y,width,height,vx,vy,blobs,area,found\n" << std::fixed;
}

void Table::add(int frame, double time, const Tracker& tracker) {
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

}  // namespace skin_tracker
