#pragma once

#include <cstddef>

namespace VelmoraQuavin::testing {

/// Watches the large blocks that the global operators allocate: the scratch memory of a decryption.
/// Only one instance may exist, and it watches one block at a time.
class AesScratchWatch {
public:
    /// @param least the number of bytes from which a block counts as large.
    explicit AesScratchWatch(std::size_t least);
    AesScratchWatch(const AesScratchWatch&) = delete;
    AesScratchWatch& operator=(const AesScratchWatch&) = delete;
    ~AesScratchWatch();

    /// How many large blocks were allocated.
    int made() const { return made_; }
    /// The size of the last one.
    std::size_t size() const { return size_; }
    /// Whether the last one was freed and held nothing but zeros at that time.
    bool wasWiped() const { return wiped_; }

    /// Called by the operators.
    void isMade(void* block, std::size_t size) noexcept;
    void isFreed(const void* block) noexcept;

private:
    std::size_t least_;
    int made_ = 0;
    const void* block_ = nullptr;
    std::size_t size_ = 0;
    bool wiped_ = false;
};

}  // namespace VelmoraQuavin::testing
