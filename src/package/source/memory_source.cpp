#include "package/source/memory_source.h"

#include <cstdint>
#include <cstring>
#include <utility>

#include "core/diagnostics.h"
#include "package/archive/archived_package.h"
#include "package/archive/decrypted_archive.h"
#include "package/manifest/manifest_path.h"
#include "package/manifest/metadata_access.h"
#include "package/path/package_path.h"
#include "package/secured/package_keys_access.h"
#include "package/source/network_components.h"
#include "platform/large_pages.h"
#include "quavin/status.h"

namespace VelmoraQuavin::internal {
namespace {

class BufferBytes : public StoredBytes {
public:
    explicit BufferBytes(PackageBuffer buffer) : buffer_(std::move(buffer)) {}

    uint64 size() const override { return buffer_.size; }
    void read(char* buffer, uint64 count) override {
        if (count != 0) {  // else there may be no memory
            // The buffer is usually new, and most of the time goes into its pages.
            platform::preferLargePages(buffer, count);
            std::memcpy(buffer, static_cast<const char*>(buffer_.data) + read_, count);
            read_ += count;
        }
    }
    std::optional<MappedBytes> map() override {
        if (!isInMemory()) {
            return std::nullopt;
        }
        return MappedBytes{{buffer_.owner, static_cast<const char*>(buffer_.data)}, buffer_.size};
    }
    bool isInMemory() const noexcept override {
        return buffer_.owner != nullptr &&
               reinterpret_cast<std::uintptr_t>(buffer_.data) % PackageBuffer::kWeightsAlignment ==
                   0;
    }

private:
    const PackageBuffer buffer_;
    uint64 read_ = 0;
};

[[noreturn]] void refuse(const PackageBuffer& buffer, const char* problem) {
    throw InvalidArgumentsException("Buffer " + inQuotes(buffer.name) + ": " + problem);
}

}  // namespace

MemorySource::MemorySource(const std::vector<PackageBuffer>& buffers) {
    for (const PackageBuffer& buffer : buffers) {
        const std::string path = packagePath(buffer.name.view());
        if (path.empty()) {
            refuse(buffer, "it has no name");
        }
        if (buffer.data == nullptr && buffer.size != 0) {
            refuse(buffer, "its bytes must not be null");
        }
        if (!files_.emplace(path, buffer).second) {
            refuse(buffer, "there is another one of this name");
        }
    }
    if (files_.count(kManifestName) == 0) {
        throw ModelMetaDataException("No buffer is named manifest.json");
    }
}

MemorySource::MemorySource(const void* archive, uint64 size, const PackageKeys& keys) {
    const auto* bytes = static_cast<const unsigned char*>(archive);
    if (bytes == nullptr) {
        throw InvalidArgumentsException("The archive must not be null");
    }
    std::shared_ptr<const DecryptedArchive> decrypted;
    if (const Encryption* const key = PackageKeysAccess::archiveKey(keys)) {
        sealed_.emplace(SealedPackage{*key, {static_cast<const char*>(archive), size}});
        decrypted = std::make_shared<const DecryptedArchive>(bytes, size, key->getKey());
        bytes = decrypted->data();
        size = decrypted->size();
    }
    for (const auto& [path, entry] : readArchivedPackage(bytes, size)) {
        files_.emplace(path, PackageBuffer{path, entry.content, entry.size, decrypted});
    }
}

String MemorySource::name() const {
    return kPackageInMemory;
}

String MemorySource::resolve(const String& path) const {
    return path;
}

bool MemorySource::contains(const String& path) const {
    return files_.count(packagePath(path.view())) != 0;
}

std::unique_ptr<StoredBytes> MemorySource::open(const NetworkComponentEntry& component) const {
    const auto file = files_.find(packagePath(component.path.view()));
    if (file == files_.end()) {
        throw FileException("The package in memory does not contain " + inQuotes(component.path));
    }
    return std::make_unique<BufferBytes>(file->second);
}

const SealedPackage* MemorySource::sealed() const noexcept {
    return sealed_.has_value() ? &*sealed_ : nullptr;
}

const PackageBuffer& MemorySource::manifest() const {
    return files_.at(kManifestName);
}

std::shared_ptr<ModelMetadata> readMetadata(const std::shared_ptr<const MemorySource>& source,
                                            const PackageKeys& keys) {
    const PackageBuffer& manifest = source->manifest();
    auto metadata = std::make_shared<ModelMetadata>();
    const QuavinStatus status = metadata->loadFromMemory(manifest.data, manifest.size);
    if (!status.ok()) {
        throw Exception(status.getDescription(), status.getCode());
    }
    keys.applyTo(*metadata);
    MetadataAccess::setMemory(*metadata, source);
    return metadata;
}

}  // namespace VelmoraQuavin::internal
