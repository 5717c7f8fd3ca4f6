// Packages in a tar archive in memory, plain and secured as a whole, without an engine.
#include "fuzz/memory_package.h"
#include "fuzz/promise.h"
#include "fuzz/quiet_diagnostics.h"
#include "fuzz/secured_form.h"
#include "quavin/status.h"

using VelmoraQuavin::PackageKeys;
using VelmoraQuavin::internal::MemorySource;

namespace {

void read(std::string_view archive, const PackageKeys& keys) {
    try {
        quavin_fuzz::readPackage(
            std::make_shared<const MemorySource>(archive.data(), archive.size(), keys));
    } catch (const VelmoraQuavin::Exception& exception) {
        quavin_fuzz::require(exception.getStatusCode() != VelmoraQuavin::SUCCESS,
                             "a refusal has a code");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const quavin_fuzz::QuietDiagnostics diagnostics;

    const std::string_view archive = quavin_fuzz::textOf(data, size);
    PackageKeys keys = quavin_fuzz::componentKeys();
    read(archive, keys);
    keys.setArchiveKey(quavin_fuzz::kKey.data());
    read(quavin_fuzz::securedForm(archive), keys);
    return 0;
}
