// A plugin whose static object loads an image while the loader runs the plugin's constructors, after a pause in which
// another thread begins its first load.

#include <tarvos/core/cvdata/Image.h>

#include <chrono>
#include <thread>

namespace {

const tarvos::core::cvdata::Image IMAGE = [] {
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    return tarvos::core::cvdata::Image("colour.png");
}();

}  // namespace
