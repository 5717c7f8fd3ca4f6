// Secured tar archives, extracted into a directory that must not be left. The archive that comes
// out of the decryption goes through the same code as a plain one with a length.
#include "fuzz/guarded_destination.h"
#include "fuzz/promise.h"
#include "fuzz/secured_form.h"
#include "quavin/files.h"
#include "quavin/status.h"

using quavin_fuzz::GuardedDestination;
using quavin_fuzz::require;
using VelmoraQuavin::Filepath;
using VelmoraQuavin::FileUtils;

namespace {

void extract(std::string_view archive) {
    static const GuardedDestination guarded(GuardedDestination::Links::kOutside);
    Filepath destination = guarded.path();
    const VelmoraQuavin::QuavinStatus status =
        FileUtils::extractSecuredTarball(reinterpret_cast<const unsigned char*>(archive.data()),
                                         archive.size(), quavin_fuzz::kKey.data(), destination);
    require(status.ok() || !status.getDescription().empty(), "a refusal says why");
    guarded.checkAndEmpty();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input = quavin_fuzz::textOf(data, size);
    extract(input);
    extract(quavin_fuzz::securedForm(input));
    return 0;
}
