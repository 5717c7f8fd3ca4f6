#include "package/archive/decrypted_archive.h"

#include <string>

#include "package/archive/tar_reader.h"
#include "package/secured/format.h"
#include "platform/large_pages.h"
#include "quavin/encryption.h"
#include "quavin/status.h"

namespace VelmoraQuavin::internal {
namespace {

// Checked before anything is allocated.
uint64 plainSize(const unsigned char* data, uint64 length, const unsigned char* key) {
    if (data == nullptr || key == nullptr) {
        throw InvalidArgumentsException("The archive and its key must not be null");
    }
    if (!isSecuredSize(length)) {
        throw InvalidArgumentsException(
            "A secured archive has a multiple of 16 bytes, at least 16 and less than 4 GiB, not " +
            std::to_string(length));
    }
    return length - kSecuredVectorSize;
}

}  // namespace

DecryptedArchive::DecryptedArchive(const unsigned char* data, uint64 length,
                                   const unsigned char* key)
    : size_(plainSize(data, length, key)), bytes_(new unsigned char[size_]) {
    wipe_.emplace(bytes_.get(), size_);
    platform::preferLargePages(bytes_.get(), size_);  // faster to fill
    unsigned char* output = bytes_.get();
    const QuavinStatus status =
        QuavinEncryption().AES_decrypt(data, static_cast<unsigned int>(length), output, key);
    if (!status.ok()) {
        throw FileException("Could not decrypt the archive");
    }
    if (isFalseTarEnd(bytes_.get(), size_)) {
        throw Exception("The archive makes no sense: it was encrypted with another key",
                        TAR_CHECKSUM_MISMATCH);
    }
}

}  // namespace VelmoraQuavin::internal
