// Objects that destroy themselves.
#pragma once

#include <memory>

namespace InferenceEngine::details {

/** An object that comes as a raw pointer and goes by Release(), which destroys it. */
class IRelease {
public:
    IRelease() = default;
    IRelease(const IRelease&) = delete;
    IRelease& operator=(const IRelease&) = delete;

    virtual void Release() noexcept = 0;

protected:
    virtual ~IRelease() = default;
};

/** Takes the object over; the last holder of the result releases it. A null pointer gives an empty
 * result. */
template <class T>
std::shared_ptr<T> shared_from_irelease(T* object) {
    if (object == nullptr) {
        return nullptr;
    }
    return std::shared_ptr<T>(object, [](T* released) { released->Release(); });
}

}  // namespace InferenceEngine::details
