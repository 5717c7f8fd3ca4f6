#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace VelmoraQuavin::testing {

/// The steps of a decryption by the system's cryptography that can be made to fail.
enum class CngStep { kNone, kProvider, kObjectLength, kObjectMemory, kKey, kDecryption };

/// While an object of this class lives, the step `failing` fails in this program, and what is
/// released is recorded. Only one object may exist, and it follows one key at a time.
class FaultyCng {
public:
    explicit FaultyCng(CngStep failing);
    FaultyCng(const FaultyCng&) = delete;
    FaultyCng& operator=(const FaultyCng&) = delete;
    ~FaultyCng();

    /// How often the failing step was reached.
    int failures() const { return failures_; }
    /// What was released, in this order: "key", "wiped object" or "object", "provider".
    const std::vector<std::string>& released() const { return released_; }

    /// Called by this program's replacements for the system's functions.
    bool fails(CngStep step);
    void isOpened(const void* provider) { provider_ = provider; }
    void isClosed(const void* provider);
    void isAllocated(const void* object, std::size_t size);
    void isFreed(const void* object);
    void isMade(const void* key) { key_ = key; }
    void isDestroyed(const void* key);

private:
    CngStep failing_;
    int failures_ = 0;
    const void* provider_ = nullptr;
    const void* object_ = nullptr;
    std::size_t objectSize_ = 0;
    const void* key_ = nullptr;
    std::vector<std::string> released_;
};

}  // namespace VelmoraQuavin::testing
