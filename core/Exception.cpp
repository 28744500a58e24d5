#include <tarvos/core/Exception.h>
#include <tarvos/core/Report.h>

#include <iostream>
#include <utility>

namespace tarvos::core {

Exception::Exception(std::string msg) noexcept : mMsg(std::move(msg)) {
    report(std::cerr, std::string("Exception Msg: ") + Exception::what());
}

}  // namespace tarvos::core
