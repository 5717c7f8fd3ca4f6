#include "package/source/component_source.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>

#include "package/manifest/metadata_access.h"
#include "package/signature/trusted_keys.h"
#include "package/source/network_components.h"
#include "package/source/signed_source.h"
#include "package/source/sized_file.h"
#include "platform/file_system.h"

namespace VelmoraQuavin::internal {
namespace {

class FileBytes : public StoredBytes {
public:
    explicit FileBytes(SizedFile file) : file_(std::move(file)) {}

    uint64 size() const override { return file_.size(); }
    void read(char* buffer, uint64 count) override { file_.read(buffer, count); }
    std::optional<MappedBytes> map() override {
        const auto file = std::make_shared<const platform::MappedFile>(file_.map());
        return MappedBytes{{file, file->data()}, file->size()};
    }

private:
    SizedFile file_;
};

// A package that was in memory. A model that keeps its network can do without its components.
class ForgottenSource : public ComponentSource {
public:
    String name() const override { return kPackageInMemory; }
    String resolve(const String& path) const override { return path; }
    bool contains(const String& /*path*/) const override { fail(); }
    std::unique_ptr<StoredBytes> open(const NetworkComponentEntry& /*component*/) const override {
        fail();
    }

private:
    [[noreturn]] static void fail() {
        throw FileException(
            "The package was in memory, which the library did not keep: load it from there again");
    }
};

// Null if the package was in memory and is gone.
std::shared_ptr<const ComponentSource> findSource(const ModelMetadata& metadata) {
    return MetadataAccess::isInMemory(metadata)
               ? MetadataAccess::memory(metadata)
               : std::make_shared<const DirectorySource>(metadata.getRootDir());
}

}  // namespace

DirectorySource::DirectorySource(Filepath directory) : directory_(std::move(directory)) {}

String DirectorySource::name() const {
    return directory_.c_str();
}

String DirectorySource::resolve(const String& path) const {
    Filepath resolved(directory_);
    resolved.append(Filepath(path));
    return resolved.c_str();
}

bool DirectorySource::contains(const String& path) const {
    std::error_code ignored;
    return std::filesystem::symlink_status(platform::standardPath(resolve(path)), ignored).type() !=
           std::filesystem::file_type::not_found;
}

std::unique_ptr<StoredBytes> DirectorySource::open(const NetworkComponentEntry& component) const {
    return std::make_unique<FileBytes>(SizedFile::open(Filepath(component.resolvedPath)));
}

std::shared_ptr<const ComponentSource> makeComponentSource(const ModelMetadata& metadata,
                                                           const VerifiedManifest& earlier) {
    std::shared_ptr<const ComponentSource> source = findSource(metadata);
    const std::shared_ptr<const ManifestDigest>& manifest = MetadataAccess::manifest(metadata);
    SharedTrustedKeys keys = trustedKeys();
    const bool isKnown = keys == nullptr || (source == nullptr && keys == earlier.keys &&
                                             manifest == earlier.manifest);
    if (source == nullptr) {
        source = std::make_shared<const ForgottenSource>();
    }
    if (isKnown) {
        return source;
    }
    return std::make_shared<const SignedSource>(std::move(source), manifest.get(), std::move(keys));
}

}  // namespace VelmoraQuavin::internal
