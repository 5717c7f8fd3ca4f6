// Structs that begin with their size: of hosts that were compiled for earlier and later versions.

#include <functional>

#include "integration/c/c_test.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::EndsWith;
using ::testing::StrEq;

/// A struct as a later version might define it.
template <typename Struct>
struct Later {
    Struct known;
    std::uint64_t added[2];
};

class CStructs : public CInterface {
protected:
    CStructs() { EXPECT_THAT(loadNetwork(affineNetwork()), Succeeds()); }

    // `call` passes the struct to a function that reads it.
    template <typename Struct>
    static void expectReading(const char* type, Struct defaults,
                              const std::function<quavin_status(const Struct*)>& call) {
        Later<Struct> later{defaults, {}};
        const auto callWithSize = [&](std::size_t size) {
            later.known.size = size;
            return call(&later.known);
        };
        for (const std::size_t size :
             {std::size_t{0}, std::size_t{4}, std::size_t{12}, sizeof(Struct) + 4,
              std::size_t{5000}, static_cast<std::size_t>(-1), static_cast<std::size_t>(-8)}) {
            EXPECT_THAT(callWithSize(size),
                        FailsWith(QUAVIN_INVALID_ARGUMENTS,
                                  StrEq(std::string(type) + ": no version has the size " +
                                        std::to_string(size))));
        }
        EXPECT_THAT(callWithSize(sizeof(std::size_t)), Succeeds());
        EXPECT_THAT(callWithSize(sizeof(Struct)), Succeeds());
        EXPECT_THAT(callWithSize(sizeof later), Succeeds());
        reinterpret_cast<unsigned char*>(&later)[sizeof later - 1] = 1;
        EXPECT_THAT(callWithSize(sizeof later),
                    FailsWith(QUAVIN_INVALID_ARGUMENTS,
                              StrEq(std::string(type) +
                                    ": a member that this version does not know is set")));
        EXPECT_THAT(callWithSize(sizeof later - 8), Succeeds());  // its last byte is outside
    }

    // `call` passes the struct to a function that fills it.
    template <typename Struct>
    static void expectFilling(const std::function<quavin_status(Struct*)>& call) {
        Later<Struct> later{};
        const auto callWithSize = [&](std::size_t size) {
            std::memset(static_cast<void*>(&later), 0x55, sizeof later);
            later.known.size = size;
            return call(&later.known);
        };
        const auto byte = [&](std::size_t index) {
            return static_cast<int>(reinterpret_cast<const unsigned char*>(&later)[index]);
        };
        for (const std::size_t size : {0U, 4U, 12U, 5000U}) {
            EXPECT_THAT(callWithSize(size),
                        FailsWith(QUAVIN_INVALID_ARGUMENTS,
                                  EndsWith(": no version has the size " + std::to_string(size))));
            EXPECT_EQ(byte(8), 0x55);
        }
        ASSERT_THAT(callWithSize(8), Succeeds());
        EXPECT_EQ(later.known.size, 8U);
        EXPECT_EQ(byte(8), 0x55);
        ASSERT_THAT(callWithSize(sizeof(Struct) - 8), Succeeds());
        const std::string before(8, 0x55);
        EXPECT_NE(std::memcmp(reinterpret_cast<const char*>(&later) + 8, before.data(), 8), 0);
        EXPECT_EQ(byte(sizeof(Struct) - 8), 0x55);
        ASSERT_THAT(callWithSize(sizeof(Struct)), Succeeds());
        EXPECT_EQ(later.known.size, sizeof(Struct));
        EXPECT_EQ(byte(sizeof(Struct)), 0x55);
        ASSERT_THAT(callWithSize(sizeof later), Succeeds());
        EXPECT_EQ(later.known.size, sizeof later);
        EXPECT_EQ(later.added[0], 0U);
        EXPECT_EQ(later.added[1], 0U);
    }
};

TEST_F(CStructs, AConfigMayBeOfAnotherVersion) {
    const quavin_config config = QUAVIN_CONFIG_INIT;
    expectReading<quavin_config>("quavin_config", config, [](const quavin_config* given) {
        quavin_terminate();
        return quavin_init(given);
    });
}

TEST_F(CStructs, LoadOptionsMayBeOfAnotherVersion) {
    const quavin_load_options options = QUAVIN_LOAD_OPTIONS_INIT;
    expectReading<quavin_load_options>(
        "quavin_load_options", options,
        [this](const quavin_load_options* given) { return load(given); });
}

TEST_F(CStructs, EngineOptionsMayBeOfAnotherVersion) {
    const quavin_engine_options engine = QUAVIN_ENGINE_OPTIONS_INIT;
    expectReading<quavin_engine_options>("quavin_engine_options", engine,
                                         [this](const quavin_engine_options* given) {
                                             quavin_load_options options = QUAVIN_LOAD_OPTIONS_INIT;
                                             options.engine = given;
                                             return load(&options);
                                         });
}

TEST_F(CStructs, KeysMayBeOfAnotherVersion) {
    const quavin_keys keys = QUAVIN_KEYS_INIT;
    expectReading<quavin_keys>("quavin_keys", keys, [this](const quavin_keys* given) {
        quavin_load_options options = QUAVIN_LOAD_OPTIONS_INIT;
        options.keys = given;
        return load(&options);
    });
}

TEST_F(CStructs, MembersThatAnEarlierVersionLacksAreNotRead) {
    quavin_engine_options engine = QUAVIN_ENGINE_OPTIONS_INIT;
    engine.precision = -1;
    engine.size = sizeof engine.size;
    quavin_load_options options = QUAVIN_LOAD_OPTIONS_INIT;
    options.engine = &engine;
    EXPECT_THAT(load(&options), Succeeds());
    engine.size = sizeof engine;
    EXPECT_EQ(load(&options), QUAVIN_INVALID_ARGUMENTS);
}

TEST_F(CStructs, MembersThatAnEarlierVersionHasAreRead) {
    quavin_engine_options engine = QUAVIN_ENGINE_OPTIONS_INIT;
    engine.threads = -1;
    engine.size = offsetof(quavin_engine_options, hint);
    quavin_load_options options = QUAVIN_LOAD_OPTIONS_INIT;
    options.engine = &engine;
    EXPECT_EQ(load(&options), QUAVIN_INVALID_ARGUMENTS);
    engine.threads = 1;
    EXPECT_THAT(load(&options), Succeeds());
}

TEST_F(CStructs, APortMayBeOfAnotherVersion) {
    expectFilling<quavin_port>(
        [this](quavin_port* port) { return quavin_model_get_input(model_, 0, port); });
}

TEST_F(CStructs, MetadataMayBeOfAnotherVersion) {
    expectFilling<quavin_metadata>(
        [this](quavin_metadata* metadata) { return quavin_model_get_metadata(model_, metadata); });
}

TEST_F(CStructs, AnOutputMayBeOfAnotherVersion) {
    const float x[4] = {};
    const void* const inputs[] = {x};
    const std::size_t sizes[] = {sizeof x};
    quavin_outputs* outputs = nullptr;
    ASSERT_THAT(quavin_predict(model_, inputs, sizes, 1, &outputs), Succeeds());
    expectFilling<quavin_output>(
        [outputs](quavin_output* output) { return quavin_outputs_get(outputs, 0, output); });
    EXPECT_THAT(quavin_outputs_release(outputs), Succeeds());
}

TEST_F(CStructs, EngineDetailsMayBeOfAnotherVersion) {
    quavin_engine_info* info = nullptr;
    ASSERT_THAT(quavin_get_engine_info(&info), Succeeds());
    expectFilling<quavin_engine_details>(
        [info](quavin_engine_details* details) { return quavin_engine_info_get(info, details); });
    EXPECT_THAT(quavin_engine_info_release(info), Succeeds());
}

TEST_F(CStructs, ARegistryEntryMayBeOfAnotherVersion) {
    quavin_load_options options = QUAVIN_LOAD_OPTIONS_INIT;
    options.registered = 1;
    ASSERT_THAT(load(&options), Succeeds());
    quavin_registry* registry = nullptr;
    ASSERT_THAT(quavin_query_registry(&registry), Succeeds());
    expectFilling<quavin_registry_entry>([registry](quavin_registry_entry* entry) {
        return quavin_registry_get_entry(registry, 0, entry);
    });
    EXPECT_THAT(quavin_registry_release(registry), Succeeds());
    EXPECT_THAT(quavin_unregister(model_), Succeeds());
}

}  // namespace
}  // namespace VelmoraQuavin::testing
