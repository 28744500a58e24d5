#include "core/Exception.h"

#include <iostream>
#include <utility>

namespace tarvos::core {

Exception::Exception(std::string msg) noexcept : mMsg(std::move(msg)) {
    std::cerr << "Exception Msg: " << mMsg.c_str() << std::endl;
}

Exception::~Exception() = default;

const char* Exception::what() const noexcept {
    return mMsg.c_str();
}

const std::string& Exception::whatString() const {
    return mMsg;
}

}  // namespace tarvos::core
