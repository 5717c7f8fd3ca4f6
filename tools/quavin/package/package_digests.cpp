#include "tools/quavin/package/package_digests.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>
#include <vector>

#include "package/path/package_path.h"
#include "package/signature/signing.h"
#include "package/signature/verify_signature.h"
#include "package/source/network_components.h"
#include "platform/input_file.h"
#include "quavin/status.h"
#include "tools/quavin/io/file.h"
#include "tools/quavin/io/new_path.h"
#include "tools/quavin/io/path_text.h"

namespace quavin_tool {
namespace {

namespace fs = std::filesystem;
namespace platform = VelmoraQuavin::internal::platform;
using VelmoraQuavin::FileException;
using VelmoraQuavin::internal::kSignatureName;
using VelmoraQuavin::internal::SignedFiles;
using VelmoraQuavin::internal::Statement;

[[noreturn]] void failCryptography() {
    throw VelmoraQuavin::Exception("The system's cryptography fails");
}

// In steps, because weights may be large.
platform::Sha256Digest digestOfFile(const std::string& path) {
    constexpr std::uint64_t kStep = std::uint64_t{256} << 10;
    std::string problem;
    std::optional<platform::InputFile> file = platform::InputFile::open(path, problem);
    platform::MessageDigest hash(platform::HashAlgorithm::kSha256);
    std::vector<char> buffer(kStep);
    for (std::uint64_t left = file.has_value() ? file->size() : 0; left > 0 && problem.empty();) {
        const std::uint64_t step = std::min(left, kStep);
        std::uint64_t got = 0;
        problem = file->read(buffer.data(), step, got);
        if (problem.empty() && got < step) {
            problem = "became shorter while it was read";
        }
        hash.add(buffer.data(), got);
        left -= got;
    }
    if (!problem.empty()) {
        throw FileException(path + " " + problem);
    }
    platform::Sha256Digest digest{};
    if (!hash.finish(digest.data())) {
        failCryptography();
    }
    return digest;
}

void addFile(const fs::directory_entry& entry, const fs::path& package, const Statement& statement,
             SignedFiles& files) {
    const std::string path = entry.path().u8string();
    const std::string name = entry.path().lexically_relative(package).generic_u8string();
    std::error_code ignored;
    const fs::file_type type = entry.symlink_status(ignored).type();
    if (type == fs::file_type::directory || name == kSignatureName) {
        return;
    }
    if (type != fs::file_type::regular) {
        throw VelmoraQuavin::InvalidArgumentsException(
            path + " is neither a regular file nor a directory, and cannot be signed");
    }
    if (statement.leavesOut(name)) {
        return;
    }
    VelmoraQuavin::internal::requireSignableName(name);
    files.emplace(name, digestOfFile(path));
}

}  // namespace

platform::Sha256Digest digestOf(std::string_view content) {
    platform::Sha256Digest digest{};
    if (!platform::sha256(content.data(), content.size(), digest)) {
        failCryptography();
    }
    return digest;
}

SignedFiles digestsInDirectory(const std::string& package, const Statement& statement) {
    const fs::path directory = fs::u8path(package);
    SignedFiles files;
    std::error_code problem;
    fs::recursive_directory_iterator entry(directory, problem);
    for (; !problem && entry != fs::recursive_directory_iterator(); entry.increment(problem)) {
        addFile(*entry, directory, statement, files);
    }
    if (problem) {
        throw FileException("The directory " + package + " cannot be read: " + problem.message());
    }
    return files;
}

SignedFiles digestsInArchive(const VelmoraQuavin::internal::ArchivedFiles& files,
                             const Statement& statement) {
    SignedFiles digests;
    for (const auto& [name, entry] : files) {
        if (name != kSignatureName && !statement.leavesOut(name)) {
            digests.emplace(name,
                            digestOf({reinterpret_cast<const char*>(entry.content), entry.size}));
        }
    }
    return digests;
}

std::optional<WipedBytes> signatureInDirectory(const std::string& package) {
    const std::string path = join(package, kSignatureName);
    if (!isThere(path)) {
        return std::nullopt;
    }
    std::error_code unknown;
    const std::uintmax_t size = fs::file_size(fs::u8path(path), unknown);
    VelmoraQuavin::internal::requireSignatureSize(unknown ? 0 : size);
    return readFile(path);
}

std::vector<std::string> componentsMissingIn(const SignedFiles& files,
                                             const VelmoraQuavin::ModelMetadata& metadata) {
    std::vector<std::string> missing;
    const auto& targets = metadata.getTargets();
    const auto target = targets.find(VelmoraQuavin::QuavinModelType::Openvino);
    if (target == targets.end()) {
        return missing;
    }
    for (const VelmoraQuavin::ModelComponent& component : target->second.components) {
        if (VelmoraQuavin::internal::isNetworkFile(component) &&
            files.count(VelmoraQuavin::internal::packagePath(component.path.view())) == 0) {
            missing.push_back(component.path.str());
        }
    }
    return missing;
}

}  // namespace quavin_tool
