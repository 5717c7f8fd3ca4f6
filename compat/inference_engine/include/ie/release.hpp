// Objects that destroy themselves.
#pragma once

#include <memory>

namespace InferenceEngine::details {

/** An object passed as a raw pointer and destroyed by calling Release(). */
class IRelease {
public:
    IRelease() = default;
    IRelease(const IRelease&) = delete;
    IRelease& operator=(const IRelease&) = delete;

    virtual void Release() noexcept = 0;

protected:
    virtual ~IRelease() = default;
};

/** Takes ownership of the object; the last owner of the result releases it. Empty for null. */
template <class T>
std::shared_ptr<T> shared_from_irelease(T* object) {
    if (object == nullptr) {
        return nullptr;
    }
    return std::shared_ptr<T>(object, [](T* released) { released->Release(); });
}

}  // namespace InferenceEngine::details
