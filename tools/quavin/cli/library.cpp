#include "tools/quavin/cli/library.h"

#include "tools/quavin/cli/notes.h"
#include "tools/quavin/io/require.h"

namespace quavin_tool {
namespace {

using VelmoraQuavin::QuavinClient;
using VelmoraQuavin::String;

std::vector<String>& storedKeys() {
    static std::vector<String> keys;
    return keys;
}

}  // namespace

VelmoraQuavin::QuavinConfig libraryConfig(const std::vector<String>& trustedKeys) {
    VelmoraQuavin::QuavinConfig config;
    config.SetDiagnostics(true);
    config.SetLogger(noteKeeper());
    config.SetTrustedKeys(trustedKeys);
    return config;
}

void trustKeys(const std::vector<String>& pems) {
    QuavinClient::terminate();
    require(QuavinClient::init(libraryConfig(pems)));
    storedKeys() = pems;
}

const std::vector<String>& trustedKeys() {
    return storedKeys();
}

}  // namespace quavin_tool
