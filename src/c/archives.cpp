#include <cstring>

#include "c/guard.h"
#include "package/secured/format.h"
#include "quavin/c.h"
#include "quavin/encryption.h"
#include "quavin/files.h"

namespace VelmoraQuavin::internal {
namespace {

QuavinStatus extract(const unsigned char* data, std::size_t size, const uint8_t* key,
                     Filepath& destination) {
    return key == nullptr ? FileUtils::extractTarball(data, size, destination)
                          : FileUtils::extractSecuredTarball(data, size, key, destination);
}

// Part of a path would lead elsewhere, so it is all or nothing.
void tell(const Filepath& path, char* text, std::size_t room, std::size_t* needed) {
    const auto* const bytes = reinterpret_cast<const char*>(path.c_str());
    const std::size_t size = std::strlen(bytes) + 1;
    if (text != nullptr && room >= size) {
        std::memcpy(text, bytes, size);
    } else if (text != nullptr && room != 0) {
        *text = '\0';
    }
    if (needed != nullptr) {
        *needed = size;
    }
}

}  // namespace
}  // namespace VelmoraQuavin::internal

using namespace VelmoraQuavin;
using namespace VelmoraQuavin::internal;

quavin_status quavin_extract_archive(const void* data, size_t size, const uint8_t* key,
                                     const char* destination, char* first, size_t room,
                                     size_t* needed) {
    return guarded([&] {
        requireGiven(data, "data");
        requireGiven(destination, "destination");
        Filepath directory{String(destination)};
        require(extract(static_cast<const unsigned char*>(data), size, key, directory));
        tell(directory, first, room, needed);
    });
}

quavin_status quavin_decrypt(const void* input, size_t size, const uint8_t* key, void* output,
                             size_t room) {
    return guarded([&] {
        requireGiven(input, "input");
        requireGiven(key, "key");
        if (!isSecuredSize(size)) {
            throw InvalidArgumentsException("No secured file has " + std::to_string(size) +
                                            " bytes");
        }
        const std::size_t needed = size - kSecuredVectorSize;
        if (room < needed) {
            throw InvalidArgumentsException("\"output\" needs " + std::to_string(needed) +
                                            " bytes and has " + std::to_string(room));
        }
        if (needed != 0) {
            requireGiven(output, "output");
        }
        auto* plain = static_cast<unsigned char*>(output);
        require(QuavinEncryption().AES_decrypt(static_cast<const unsigned char*>(input),
                                               static_cast<unsigned int>(size), plain, key));
    });
}
