#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string>

#include "package/archive/tar_header.h"
#include "quavin/files.h"
#include "quavin/status.h"

namespace VelmoraQuavin {
namespace {

using internal::kTarBlockSize;
using internal::TarHeader;
using internal::TarType;

// Anything but an octal digit ends the number; no digits at all mean 0.
unsigned int contentSize(const TarHeader& header) {
    const std::string digits(header.sizeField());
    return static_cast<unsigned int>(std::strtoull(digits.c_str(), nullptr, 8));
}

// A name that fills its field runs on into the fields after it.
Filepath fullPath(const Filepath& destination, const unsigned char* block) {
    const std::string_view prefix = TarHeader(block).prefix();
    const String name = internal::joinTarName(prefix, reinterpret_cast<const char*>(block));
    return Filepath(destination).append(Filepath(name));
}

// The white space of the "C" locale, whatever the current locale is.
bool isWhiteSpace(char character) {
    constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";
    return kWhiteSpace.find(character) != std::string_view::npos;
}

// A directory with white space anywhere in its path is not created: hosts rely on this.
void createDirectory(const Filepath& path) {
    const String text = path.c_str();
    const std::string_view characters = text.view();
    if (!FileUtils::pathExists(path) &&
        std::none_of(characters.begin(), characters.end(), isWhiteSpace)) {
        FileUtils::createDir(path);
    }
}

}  // namespace

QuavinStatus FileUtils::extractTarball(unsigned char* data, Filepath& destination) {
    if (data == nullptr) {
        return {INVALID_ARGUMENTS, ""};
    }
    std::optional<Filepath> root;
    const unsigned char* block = data;
    while (!TarHeader(block).isEnd()) {
        const TarHeader header(block);
        const uint64 size = contentSize(header);
        const Filepath path = fullPath(destination, block);
        if (!header.checksumMatches()) {
            return {TAR_CHECKSUM_MISMATCH, ""};
        }
        switch (header.type()) {
            case TarType::kFile:
                writeBinaryDataToFile(header.content(), size, path);
                break;
            case TarType::kDirectory:
                if (!root.has_value()) {
                    root = path;
                }
                createDirectory(path);
                break;
            default:
                return {TAR_UNSUPPORTED_ENTRY, ""};
        }
        block += (internal::tarBlocksOf(size) + 1) * kTarBlockSize;
    }
    destination = root.value_or(Filepath());
    return {SUCCESS, ""};
}

}  // namespace VelmoraQuavin
