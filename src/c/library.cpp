#include <memory>

#include "c/guard.h"
#include "c/options.h"
#include "c/sized_struct.h"
#include "quavin/c.h"
#include "quavin/client.h"
#include "quavin/version.h"

namespace VelmoraQuavin::internal {
namespace {

/// Passes records to a function of the host's.
class FunctionLogProcessor : public ILogProcessor {
public:
    FunctionLogProcessor(quavin_log log, void* user) : log_(log), user_(user) {}

    void process(const LogRecord& record) override {
        const quavin_log_record plain = {sizeof plain,
                                         reinterpret_cast<const char*>(record.message.c_str()),
                                         record.category,
                                         record.tag,
                                         record.time,
                                         record.level,
                                         0};
        log_(&plain, user_);
    }

private:
    quavin_log log_;
    void* user_;
};

std::vector<String> trustedKeysOf(const quavin_config& config) {
    std::vector<String> keys;
    if (config.trusted_key_count != 0) {
        requireGiven(config.trusted_keys, "trusted_keys");
    }
    for (std::size_t i = 0; i < config.trusted_key_count; ++i) {
        requireGiven(config.trusted_keys[i], "trusted_keys");
        keys.emplace_back(config.trusted_keys[i]);
    }
    return keys;
}

QuavinConfig configOf(const quavin_config* given) {
    const quavin_config plain = readStruct(given, "quavin_config");
    requireReservedZero(plain.reserved, "quavin_config");
    QuavinConfig config;
    if (plain.log != nullptr) {
        config.SetLogger(std::make_shared<FunctionLogProcessor>(plain.log, plain.user));
    }
    config.SetEngineOptions(engineOptionsOf(plain.engine));
    config.SetDiagnostics(plain.diagnostics != 0);
    config.SetTrustedKeys(trustedKeysOf(plain));
    return config;
}

}  // namespace

QuavinClient& client() {
    try {
        return QuavinClient::instance();
    } catch (const Exception& off) {
        throw Exception(off.what(), NOT_INITIALIZED);
    }
}

}  // namespace VelmoraQuavin::internal

using namespace VelmoraQuavin;
using namespace VelmoraQuavin::internal;

quavin_status quavin_init(const quavin_config* config) {
    return guarded([&] { require(QuavinClient::init(configOf(config))); });
}

quavin_status quavin_terminate(void) {
    return guarded([] { QuavinClient::terminate(); });
}

int32_t quavin_is_initialized(void) {
    return QuavinClient::isInitialized() ? 1 : 0;
}

const char* quavin_version(void) {
    return getVersion();
}
