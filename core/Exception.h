#pragma once

#include "Export.h"

#include <exception>
#include <string>

namespace tarvos::core {

/// The library's exception, thrown by value by the operations of util::Filesystem.
///
/// Building one reports it: "Exception Msg: ", the message and a newline go to standard error at once and in one piece,
/// so that an error is seen even if nobody prints it. Copies print nothing.
///
/// @snippet services.cpp exception
/// @ingroup foundation
class TARVOS_CORE_EXPORT Exception : public std::exception {
public:
    /// Stores and reports @p msg. Never throws: a failure in here ends the process.
    explicit Exception(std::string msg) noexcept;
    /// A silent copy of the message.
    Exception(const Exception& other) = default;
    /// A silent copy of the message.
    Exception& operator=(const Exception& other) = default;
    ~Exception() override;

    /// The message as a C string, valid as long as the object lives.
    const char* what() const noexcept override;
    /// The stored message itself.
    virtual const std::string& whatString() const;

private:
    std::string mMsg;
};

}  // namespace tarvos::core
