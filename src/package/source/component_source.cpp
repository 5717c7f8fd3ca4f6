#include "package/source/component_source.h"

#include <memory>
#include <optional>
#include <utility>

#include "package/manifest/metadata_access.h"
#include "package/source/network_components.h"
#include "package/source/sized_file.h"

namespace VelmoraQuavin::internal {
namespace {

class FileBytes : public StoredBytes {
public:
    explicit FileBytes(SizedFile file) : file_(std::move(file)) {}

    uint64 size() const override { return file_.size(); }
    void read(char* buffer) override { file_.read(buffer); }
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
    std::unique_ptr<StoredBytes> open(const NetworkComponentEntry& /*component*/) const override {
        throw FileException(
            "The package was in memory, which the library did not keep: load it from there again");
    }
};

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

std::unique_ptr<StoredBytes> DirectorySource::open(const NetworkComponentEntry& component) const {
    return std::make_unique<FileBytes>(SizedFile::open(Filepath(component.resolvedPath)));
}

std::shared_ptr<const ComponentSource> makeComponentSource(const ModelMetadata& metadata) {
    if (!MetadataAccess::isInMemory(metadata)) {
        return std::make_shared<DirectorySource>(metadata.getRootDir());
    }
    std::shared_ptr<const ComponentSource> source = MetadataAccess::memory(metadata);
    return source != nullptr ? source : std::make_shared<const ForgottenSource>();
}

}  // namespace VelmoraQuavin::internal
