#include "quavin/status.h"

#include <new>
#include <typeinfo>
#include <utility>

namespace VelmoraQuavin {
namespace {

const char* descriptionOf(const std::exception& exception) {
    const char* text = exception.what();
    // Each standard library has its own text for an exception created without one.
    const bool hasText =
        text != nullptr && *text != '\0' && typeid(exception) != typeid(std::exception);
    return hasText ? text : "Unknown exception";
}

QuavinStatus statusOf(STATUS_CODE code, const char* text) {
    try {
        return {code, text};
    } catch (const std::bad_alloc& lack) {
        return {code, lack.what()};  // short enough to need no memory
    }
}

}  // namespace

QuavinStatus::QuavinStatus() : code(FAILURE) {}

QuavinStatus::QuavinStatus(STATUS_CODE statusCode, const String& text)
    : code(statusCode), description(text) {}

void QuavinStatus::setDescription(String newDescription) {
    description = std::move(newDescription);
}

QuavinStatus getStatusFromCurrentException() {
    try {
        throw;
    } catch (const Exception& exception) {
        return statusOf(exception.getStatusCode(), exception.what());
    } catch (const std::exception& exception) {
        return statusOf(FAILURE, descriptionOf(exception));
    } catch (...) {
        return statusOf(FAILURE, "unknown error occured");
    }
}

}  // namespace VelmoraQuavin
