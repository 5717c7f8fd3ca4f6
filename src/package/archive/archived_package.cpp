#include "package/archive/archived_package.h"

#include <optional>
#include <utility>

#include "package/manifest/manifest_path.h"
#include "package/path/package_path.h"
#include "quavin/status.h"

namespace VelmoraQuavin::internal {
namespace {

struct Listing {
    ArchivedFiles files;
    std::optional<std::string> root;  // of the first directory, with "/" at its end
};

Listing list(const unsigned char* data, uint64 length) {
    Listing listing;
    TarReader reader(data, length);
    for (TarEntry entry; reader.next(entry);) {
        requireTarEntryPath(entry);
        const std::string path = packagePath(entry.name);
        if (entry.kind == TarEntry::Kind::kFile) {
            listing.files[path] = entry;
        } else if (!listing.root.has_value()) {
            listing.root = path.empty() ? "" : path + "/";
        }
    }
    return listing;
}

// The prefix of the manifest, and of everything beside it.
std::string placeOfPackage(const Listing& listing) {
    for (const std::string& place : {listing.root.value_or(""), std::string()}) {
        if (listing.files.count(place + kManifestName) != 0) {
            return place;
        }
    }
    for (const auto& [path, entry] : listing.files) {
        std::string place = path.substr(0, path.find('/') + 1);  // empty without a separator
        if (path == place + kManifestName) {
            return place;
        }
    }
    throw ModelMetaDataException("The archive contains no manifest.json");
}

}  // namespace

ArchivedFiles readArchivedPackage(const unsigned char* data, uint64 length) {
    Listing listing = list(data, length);
    const std::string place = placeOfPackage(listing);
    ArchivedFiles files;
    for (auto& [path, entry] : listing.files) {
        if (path.compare(0, place.size(), place) == 0) {
            files.emplace(path.substr(place.size()), std::move(entry));
        }
    }
    return files;
}

}  // namespace VelmoraQuavin::internal
