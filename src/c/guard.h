#pragma once

#include <string>

#include "c/last_error.h"
#include "quavin/client.h"
#include "quavin/status.h"

namespace VelmoraQuavin::internal {

/// Runs the body of a function of the C interface, which no exception leaves: whatever the body
/// throws becomes this thread's last error.
/// @return QUAVIN_SUCCESS, or the code of what was thrown.
template <typename Body>
quavin_status guarded(const Body& body) noexcept {
    try {
        body();
        return QUAVIN_SUCCESS;
    } catch (...) {
        return settleCurrentException();
    }
}

/// @throws Exception with the status's code and text, or its code's name, if it is not a success.
inline void require(const QuavinStatus& status) {
    if (!status.ok()) {
        throw Exception(status.description, status.code);
    }
}

/// @throws InvalidArgumentsException that names the argument if it is null.
inline void requireGiven(const void* argument, const char* name) {
    if (argument == nullptr) {
        throw InvalidArgumentsException(std::string("\"") + name + "\" is null");
    }
}

/// One of several things; valid as long as the list.
/// @throws RangeException if there is none at the index.
template <typename List>
const auto& elementAt(const List& list, std::size_t index) {
    if (index >= list.size()) {
        throw RangeException("There is no index " + std::to_string(index) + " among " +
                             std::to_string(list.size()));
    }
    return list[index];
}

/// The client.
/// @throws Exception NOT_INITIALIZED if the library is off.
QuavinClient& client();

}  // namespace VelmoraQuavin::internal
