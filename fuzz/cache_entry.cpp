// Entries of the cache of compiled networks. The input is first a whole file, then the content of
// a proper entry, one of whose bytes is changed.
#include <array>
#include <memory>
#include <utility>

#include "engine/cache/compiled_cache.h"
#include "engine/cache/entry_header.h"
#include "fuzz/promise.h"
#include "support/temp_directory.h"

using namespace VelmoraQuavin::internal;
using quavin_fuzz::require;

namespace {

class Cache {
public:
    explicit Cache(std::unique_ptr<CacheSeal> seal)
        : seal_(std::move(seal)), cache_(directory_.text(), 0), name_(ContentHash().digest()) {}

    void tryAsFile(std::string_view file) const {
        directory_.write(name_.fileName(), file);
        const std::optional<EntryBuffer> found = find();
        require(!found || (found->size() + EntryBuffer::kHeaderSize == file.size() &&
                           file.substr(EntryBuffer::kHeaderSize) == textOf(*found)),
                "an entry holds what the file does");
    }

    void tryAsContent(std::string_view content) const {
        EntryBuffer buffer = seal_->makeBuffer();
        buffer.append(content.data(), content.size());
        require(cache_.store(name_, *seal_, std::move(buffer)).empty(), "an entry is stored");
        const std::optional<EntryBuffer> found = find();
        require(found && textOf(*found) == content, "what is stored is found");

        std::string file = directory_.read(name_.fileName());
        const std::size_t place = content.empty() ? 0 : static_cast<unsigned char>(content.front());
        file[place % file.size()] ^= 1;
        directory_.write(name_.fileName(), file);
        require(!find(), "a damaged entry is not used");
    }

private:
    std::optional<EntryBuffer> find() const {
        std::string problem;
        std::optional<EntryBuffer> found = cache_.find(name_, *seal_, problem);
        require(found.has_value() == problem.empty(), "an unusable entry is reported");
        return found;
    }
    static std::string_view textOf(const EntryBuffer& buffer) {
        return quavin_fuzz::textOf(buffer.content(), buffer.size());
    }

    std::unique_ptr<CacheSeal> seal_;
    VelmoraQuavin::testing::TempDirectory directory_;
    CompiledCache cache_;
    EntryName name_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input = quavin_fuzz::textOf(data, size);
    static const Cache plain(makeChecksumSeal());
    plain.tryAsFile(input);
    plain.tryAsContent(input);
    if (canSealSecrets()) {
        const VelmoraQuavin::Encryption key;
        static const Cache secret(makeSecretSeal({&key}));
        secret.tryAsFile(input);
        secret.tryAsContent(input);
    }
    return 0;
}
