#include "quavin/status.h"

#include <typeinfo>
#include <utility>

namespace VelmoraQuavin {
namespace {

String descriptionOf(const std::exception& exception) {
    const char* text = exception.what();
    // Each standard library has its own text for an exception created without one.
    const bool hasText =
        text != nullptr && *text != '\0' && typeid(exception) != typeid(std::exception);
    return hasText ? text : "Unknown exception";
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
        return {exception.getStatusCode(), exception.what()};
    } catch (const std::exception& exception) {
        return {FAILURE, descriptionOf(exception)};
    } catch (...) {
        return {FAILURE, "unknown error occured"};
    }
}

}  // namespace VelmoraQuavin
