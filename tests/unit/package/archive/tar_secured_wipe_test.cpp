// Checks that a decrypted archive is wiped before its memory is freed. Replaces the array forms of
// the global operators, which allocate the decrypted archive, for this whole program.

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <new>
#include <string>

#include "support/heap.h"
#include "support/secured_file.h"
#include "unit/package/archive/tar_fixture.h"

namespace VelmoraQuavin::testing {
namespace {

// Inspects arrays of a given size just before they are freed. Only one instance may exist.
class FreedArrays {
public:
    explicit FreedArrays(std::size_t size);
    FreedArrays(const FreedArrays&) = delete;
    FreedArrays& operator=(const FreedArrays&) = delete;
    ~FreedArrays();

    // How many such arrays were freed.
    int count() const { return count_; }
    // How many of them held anything but zeros.
    int notWiped() const { return notWiped_; }

    void isFreed(const unsigned char* array) noexcept {
        // The allocator may have rounded the size up, by less than 64 bytes.
        const std::size_t usable = sizeOfBlock(const_cast<unsigned char*>(array));
        if (usable < size_ || usable >= size_ + 64) {
            return;
        }
        ++count_;
        if (std::any_of(array, array + size_, [](unsigned char byte) { return byte != 0; })) {
            ++notWiped_;
        }
    }

private:
    std::size_t size_;
    int count_ = 0;
    int notWiped_ = 0;
};

std::atomic<FreedArrays*> active{nullptr};

FreedArrays::FreedArrays(std::size_t size) : size_(size) {
    active = this;
}

FreedArrays::~FreedArrays() {
    active = nullptr;
}

void release(void* array) noexcept {
    FreedArrays* const watch = active;
    if (watch != nullptr && array != nullptr) {
        watch->isFreed(static_cast<unsigned char*>(array));
    }
    std::free(array);
}

}  // namespace
}  // namespace VelmoraQuavin::testing

void* operator new[](std::size_t size) {
    void* const array = std::malloc(size);
    if (array == nullptr) {
        throw std::bad_alloc();
    }
    return array;
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return std::malloc(size);
}
void operator delete[](void* array) noexcept {
    VelmoraQuavin::testing::release(array);
}
void operator delete[](void* array, std::size_t) noexcept {
    VelmoraQuavin::testing::release(array);
}
void operator delete[](void* array, const std::nothrow_t&) noexcept {
    VelmoraQuavin::testing::release(array);
}

namespace VelmoraQuavin {
namespace {

using testing::BlockFilling;
using testing::CryptoKey;
using testing::ExactBytes;
using testing::fileInTree;
using testing::FreedArrays;
using testing::IsOk;
using testing::secured;
using testing::tarDirectory;
using testing::tarEnd;
using testing::TarExtraction;
using testing::tarFile;

class TarSecuredWipe : public TarExtraction {
protected:
    // Extracts an archive and expects its plaintext to be wiped.
    QuavinStatus extract(const std::string& archive) {
        const CryptoKey key = testing::countingKey();
        const std::string component = secured(archive, key, BlockFilling::kPkcs7);
        const auto* const bytes = reinterpret_cast<const unsigned char*>(component.data());
        Filepath destination(to_.text());
        const FreedArrays freed(component.size() - 16);
        QuavinStatus status =
            FileUtils::extractSecuredTarball(bytes, component.size(), key.data(), destination);
        EXPECT_GE(freed.count(), 1);  // one more if decryption allocates a buffer of this size
        EXPECT_EQ(freed.notWiped(), 0);
        return status;
    }
};

// Shows that the check can fail.
TEST_F(TarSecuredWipe, UnwipedArraysAreDetected) {
    const FreedArrays freed(10000);
    { const ExactBytes bytes(std::string(9999, '\0') + "x"); }
    { const ExactBytes bytes(std::string(10000, '\0')); }
    { const ExactBytes bytes(std::string(20000, 'x')); }
    EXPECT_EQ(freed.count(), 2);
    EXPECT_EQ(freed.notWiped(), 1);
}

TEST_F(TarSecuredWipe, ThePlaintextIsWipedAfterExtraction) {
    EXPECT_THAT(
        extract(tarDirectory("root/") + tarFile("root/secret", std::string(9000, 's')) + tarEnd()),
        IsOk());
    EXPECT_EQ(to_.tree().at("root/secret"), fileInTree(std::string(9000, 's')));
}

TEST_F(TarSecuredWipe, ThePlaintextIsWipedAfterAFailure) {
    EXPECT_EQ(
        extract(tarFile("secret", std::string(9000, 's')) + tarFile("../bad") + tarEnd()).getCode(),
        INVALID_ARGUMENTS);
    EXPECT_EQ(extract(tarFile("secret", std::string(9000, 's'))).getCode(), INVALID_ARGUMENTS);
    to_.write("secret/file", "in the way");
    EXPECT_EQ(extract(tarFile("secret", std::string(9000, 's')) + tarEnd()).getCode(), FILE_ERROR);
}

}  // namespace
}  // namespace VelmoraQuavin
