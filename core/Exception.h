#pragma once

#include <tarvos/core/Export.h>

#include <exception>
#include <string>

namespace tarvos::core {

/// The library's exception, thrown by value by the operations of util::Filesystem.
///
/// Building one reports it: "Exception Msg: ", the message and a newline go to standard error in a single write, so
/// that an error is seen even if nobody prints it. Copies print nothing.
///
/// @snippet services.cpp exception
/// @ingroup foundation
class TARVOS_CORE_EXPORT Exception : public std::exception {
public:
    /// Stores and reports @p msg. Never throws: if the line that is printed cannot be allocated, it terminates.
    Exception(std::string msg) noexcept;  // not explicit, so that a message can be thrown or passed as one

    /// The message as a C string, valid as long as the object lives.
    const char* what() const noexcept override { return mMsg.c_str(); }
    /// The stored message itself.
    virtual const std::string& whatString() const { return mMsg; }

private:
    std::string mMsg;
};

}  // namespace tarvos::core
