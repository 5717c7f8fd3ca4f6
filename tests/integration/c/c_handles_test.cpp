// Every function refuses null pointers, handles of another kind, and handles that were released.

#include <functional>
#include <utility>

#include "integration/c/c_test.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::StrEq;

template <typename Handle>
struct Use {
    const char* function;
    std::function<quavin_status(Handle*)> call;
};

// What the functions write to.
namespace into {
std::size_t count = 0;
quavin_port port = QUAVIN_PORT_INIT;
quavin_output output = QUAVIN_OUTPUT_INIT;
quavin_metadata metadata = QUAVIN_METADATA_INIT;
quavin_engine_details details = QUAVIN_ENGINE_DETAILS_INIT;
quavin_registry_entry entry = QUAVIN_REGISTRY_ENTRY_INIT;
quavin_model* model = nullptr;
quavin_outputs* outputs = nullptr;
quavin_engine_info* info = nullptr;
float values[4] = {};
}  // namespace into
const void* const kInputs[] = {into::values};
void* const kOutputs[] = {into::values};
const std::size_t kSizes[] = {sizeof into::values};

const std::vector<Use<quavin_model>> kModelUses = {
    {"metadata", [](auto* h) { return quavin_model_get_metadata(h, &into::metadata); }},
    {"input count", [](auto* h) { return quavin_model_get_input_count(h, &into::count); }},
    {"output count", [](auto* h) { return quavin_model_get_output_count(h, &into::count); }},
    {"input", [](auto* h) { return quavin_model_get_input(h, 0, &into::port); }},
    {"output", [](auto* h) { return quavin_model_get_output(h, 0, &into::port); }},
    {"predict", [](auto* h) { return quavin_predict(h, kInputs, kSizes, 1, &into::outputs); }},
    {"predict into",
     [](auto* h) { return quavin_predict_into(h, kInputs, kSizes, 1, kOutputs, kSizes, 1); }},
    {"clone", [](auto* h) { return quavin_clone(h, &into::model); }},
    {"engine info", [](auto* h) { return quavin_model_get_engine_info(h, &into::info); }},
    {"set memory", [](auto* h) { return quavin_model_set_memory(h, 1); }},
    {"unload", quavin_unload},
    {"unregister", quavin_unregister},
};
const std::vector<Use<quavin_outputs>> kOutputsUses = {
    {"count", [](auto* h) { return quavin_outputs_get_count(h, &into::count); }},
    {"get", [](auto* h) { return quavin_outputs_get(h, 0, &into::output); }},
};
const std::vector<Use<quavin_engine_info>> kInfoUses = {
    {"get", [](auto* h) { return quavin_engine_info_get(h, &into::details); }},
};
const std::vector<Use<quavin_registry>> kRegistryUses = {
    {"count", [](auto* h) { return quavin_registry_get_count(h, &into::count); }},
    {"entry", [](auto* h) { return quavin_registry_get_entry(h, 0, &into::entry); }},
    {"model", [](auto* h) { return quavin_registry_get_model(h, 0, &into::model); }},
};
const std::vector<Use<quavin_network>> kNetworkUses = {
    {"input count", [](auto* h) { return quavin_network_get_input_count(h, &into::count); }},
    {"output count", [](auto* h) { return quavin_network_get_output_count(h, &into::count); }},
    {"input", [](auto* h) { return quavin_network_get_input(h, 0, &into::port); }},
    {"output", [](auto* h) { return quavin_network_get_output(h, 0, &into::port); }},
};

class CHandles : public CInterface {
protected:
    CHandles() {
        EXPECT_THAT(loadNetwork(affineNetwork()), Succeeds());
        EXPECT_THAT(quavin_predict(model_, kInputs, kSizes, 1, &outputs_), Succeeds());
        EXPECT_THAT(quavin_get_engine_info(&info_), Succeeds());
        EXPECT_THAT(quavin_query_registry(&registry_), Succeeds());
        EXPECT_THAT(quavin_describe_directory(directory_.text().c_str(), nullptr, &network_),
                    Succeeds());
    }
    ~CHandles() override {
        EXPECT_THAT(quavin_outputs_release(outputs_), Succeeds());
        EXPECT_THAT(quavin_engine_info_release(info_), Succeeds());
        EXPECT_THAT(quavin_registry_release(registry_), Succeeds());
        EXPECT_THAT(quavin_network_release(network_), Succeeds());
    }

    // Uses a handle of a kind, one of another kind, and one that never was, in every way; then
    // releases the first and tries again.
    template <typename Handle, typename Other>
    static void expectRefusals(const std::string& kind, std::vector<Use<Handle>> uses,
                               quavin_status (*release)(Handle*), Handle*& handle, Other* other) {
        const auto refused =
            FailsWith(QUAVIN_INVALID_ARGUMENTS,
                      StrEq("This is not the handle of " + kind + ", or it was released"));
        EXPECT_THAT(release(nullptr), Succeeds());
        for (const Use<Handle>& use : uses) {
            SCOPED_TRACE(use.function);
            EXPECT_THAT(use.call(nullptr), FailsWith(QUAVIN_INVALID_ARGUMENTS,
                                                     StrEq("The handle of " + kind + " is null")));
        }
        uses.push_back({"release", release});
        Handle* const released = std::exchange(handle, nullptr);
        ASSERT_THAT(release(released), Succeeds());
        double somewhere = 0;
        for (const Use<Handle>& use : uses) {
            SCOPED_TRACE(use.function);
            EXPECT_THAT(use.call(released), refused);
            EXPECT_THAT(use.call(reinterpret_cast<Handle*>(other)), refused);
            EXPECT_THAT(use.call(reinterpret_cast<Handle*>(&somewhere)), refused);
        }
    }

    quavin_outputs* outputs_ = nullptr;
    quavin_engine_info* info_ = nullptr;
    quavin_registry* registry_ = nullptr;
    quavin_network* network_ = nullptr;
};

TEST_F(CHandles, OfModelsAreChecked) {
    expectRefusals("a model", kModelUses, quavin_model_release, model_, outputs_);
}

TEST_F(CHandles, OfOutputsAreChecked) {
    expectRefusals("outputs", kOutputsUses, quavin_outputs_release, outputs_, model_);
}

TEST_F(CHandles, OfEngineInfosAreChecked) {
    expectRefusals("an engine info", kInfoUses, quavin_engine_info_release, info_, registry_);
}

TEST_F(CHandles, OfRegistriesAreChecked) {
    expectRefusals("a registry", kRegistryUses, quavin_registry_release, registry_, network_);
}

TEST_F(CHandles, OfNetworksAreChecked) {
    expectRefusals("a network", kNetworkUses, quavin_network_release, network_, info_);
}

TEST_F(CHandles, AreNeverUsedAgain) {
    quavin_registry* const first = registry_;
    for (int i = 0; i < 1000; ++i) {
        EXPECT_THAT(quavin_registry_release(registry_), Succeeds());
        EXPECT_THAT(quavin_query_registry(&registry_), Succeeds());
        EXPECT_NE(registry_, first);
    }
}

TEST_F(CHandles, NullResultsAreRefused) {
    const std::vector<quavin_buffer> buffers = PackageInMemory(affineNetwork()).buffers();
    const auto refused = FailsWith(QUAVIN_INVALID_ARGUMENTS, ::testing::EndsWith("\" is null"));
    EXPECT_THAT(quavin_load_directory("a", nullptr, nullptr), refused);
    EXPECT_THAT(quavin_load_archive("a", 1, nullptr, nullptr), refused);
    EXPECT_THAT(quavin_load_buffers(buffers.data(), 3, nullptr, nullptr), refused);
    EXPECT_THAT(quavin_clone(model_, nullptr), refused);
    EXPECT_THAT(quavin_model_get_metadata(model_, nullptr), refused);
    EXPECT_THAT(quavin_model_get_input_count(model_, nullptr), refused);
    EXPECT_THAT(quavin_model_get_output_count(model_, nullptr), refused);
    EXPECT_THAT(quavin_model_get_input(model_, 0, nullptr), refused);
    EXPECT_THAT(quavin_model_get_output(model_, 0, nullptr), refused);
    EXPECT_THAT(quavin_predict(model_, kInputs, kSizes, 1, nullptr), refused);
    EXPECT_THAT(quavin_outputs_get_count(outputs_, nullptr), refused);
    EXPECT_THAT(quavin_outputs_get(outputs_, 0, nullptr), refused);
    EXPECT_THAT(quavin_get_engine_info(nullptr), refused);
    EXPECT_THAT(quavin_model_get_engine_info(model_, nullptr), refused);
    EXPECT_THAT(quavin_engine_info_get(info_, nullptr), refused);
    EXPECT_THAT(quavin_query_registry(nullptr), refused);
    EXPECT_THAT(quavin_registry_get_count(registry_, nullptr), refused);
    EXPECT_THAT(quavin_registry_get_model(registry_, 0, nullptr), refused);
    EXPECT_THAT(quavin_describe_directory("a", nullptr, nullptr), refused);
    EXPECT_THAT(quavin_describe_archive("a", 1, nullptr, nullptr), refused);
    EXPECT_THAT(quavin_describe_buffers(buffers.data(), 3, nullptr, nullptr), refused);
    EXPECT_THAT(quavin_describe_files("a", nullptr, nullptr), refused);
    EXPECT_THAT(quavin_network_get_input_count(network_, nullptr), refused);
    EXPECT_THAT(quavin_network_get_output_count(network_, nullptr), refused);
    EXPECT_THAT(quavin_network_get_input(network_, 0, nullptr), refused);
    EXPECT_THAT(quavin_network_get_output(network_, 0, nullptr), refused);
}

TEST_F(CHandles, NullArgumentsAreRefused) {
    const auto refused = FailsWith(QUAVIN_INVALID_ARGUMENTS, ::testing::EndsWith("\" is null"));
    const CryptoKey key = countingKey();
    std::array<char, 32> block{};
    quavin_network* network = nullptr;
    quavin_model* model = nullptr;
    quavin_outputs* outputs = nullptr;
    EXPECT_THAT(quavin_load_directory(nullptr, nullptr, &model), refused);
    EXPECT_THAT(quavin_load_archive(nullptr, 0, nullptr, &model), refused);
    EXPECT_THAT(quavin_load_buffers(nullptr, 3, nullptr, &model), refused);
    EXPECT_THAT(quavin_predict(model_, nullptr, kSizes, 1, &outputs), refused);
    EXPECT_THAT(quavin_predict(model_, kInputs, nullptr, 1, &outputs), refused);
    EXPECT_THAT(quavin_predict_into(model_, nullptr, kSizes, 1, kOutputs, kSizes, 1), refused);
    EXPECT_THAT(quavin_predict_into(model_, kInputs, nullptr, 1, kOutputs, kSizes, 1), refused);
    EXPECT_THAT(quavin_predict_into(model_, kInputs, kSizes, 1, nullptr, kSizes, 1), refused);
    EXPECT_THAT(quavin_predict_into(model_, kInputs, kSizes, 1, kOutputs, nullptr, 1), refused);
    EXPECT_THAT(quavin_describe_directory(nullptr, nullptr, &network), refused);
    EXPECT_THAT(quavin_describe_archive(nullptr, 0, nullptr, &network), refused);
    EXPECT_THAT(quavin_describe_buffers(nullptr, 3, nullptr, &network), refused);
    EXPECT_THAT(quavin_describe_files(nullptr, nullptr, &network), refused);
    EXPECT_THAT(quavin_extract_archive(nullptr, 0, nullptr, "a", nullptr, 0, nullptr), refused);
    EXPECT_THAT(quavin_extract_archive("a", 1, nullptr, nullptr, nullptr, 0, nullptr), refused);
    EXPECT_THAT(quavin_decrypt(nullptr, 16, key.data(), block.data(), 16), refused);
    EXPECT_THAT(quavin_decrypt(block.data(), 16, nullptr, block.data(), 16), refused);
    EXPECT_THAT(quavin_decrypt(block.data(), 32, key.data(), nullptr, 16), refused);
}

}  // namespace
}  // namespace VelmoraQuavin::testing
