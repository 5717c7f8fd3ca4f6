// Which weights lie over the memory of where they come from, and for how long.

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "engine/openvino/network_reading.h"
#include "faulty_model_test.h"

namespace VelmoraQuavin::testing {
namespace {

using internal::ComponentSource;
using internal::MappedBytes;
using internal::NetworkComponentEntry;
using internal::StoredBytes;

enum class Mapping { kPossible, kImpossible, kFails, kInMemory };

class BytesInMemory : public StoredBytes {
public:
    BytesInMemory(std::shared_ptr<const std::string> bytes, Mapping mapping)
        : bytes_(std::move(bytes)), mapping_(mapping) {}

    uint64 size() const override { return bytes_->size(); }
    void read(char* buffer, uint64 count) override {
        std::copy_n(bytes_->data() + read_, count, buffer);
        read_ += count;
    }
    std::optional<MappedBytes> map() override {
        if (mapping_ == Mapping::kFails) {
            throw FileException("File error!");
        }
        return mapping_ == Mapping::kPossible || mapping_ == Mapping::kInMemory
                   ? std::optional(MappedBytes{{bytes_, bytes_->data()}, bytes_->size()})
                   : StoredBytes::map();
    }
    bool isInMemory() const noexcept override { return mapping_ == Mapping::kInMemory; }

private:
    std::shared_ptr<const std::string> bytes_;
    Mapping mapping_;
    uint64 read_ = 0;
};

class SourceInMemory : public ComponentSource {
public:
    String name() const override { return "memory"; }
    String resolve(const String& path) const override { return path; }
    bool contains(const String& path) const override { return contents.count(path.str()) != 0; }
    std::unique_ptr<StoredBytes> open(const NetworkComponentEntry& component) const override {
        return std::make_unique<BytesInMemory>(contents.at(component.path.str()), mapping);
    }

    std::map<std::string, std::shared_ptr<const std::string>> contents;
    Mapping mapping = Mapping::kPossible;
};

class WeightsMapping : public ::testing::Test {
protected:
    WeightsMapping() {
        faultyEngine() = FaultyEngine();
        store("topology", "<net/>");
        store("weights", "the weights");
    }

    void store(const std::string& name, const std::string& content) {
        source_.contents[name] = std::make_shared<const std::string>(content);
    }
    void read(bool mapWeights, const std::string& kind = "file") {
        const auto reader =
            InferenceEngine::details::shared_from_irelease(InferenceEngine::CreateCNNNetReader());
        Encryption encryption;
        encryption.setKey(countingKey().data());
        const auto entry = [&](const char* name) {
            return NetworkComponentEntry{name, kind, name, encryption};
        };
        const internal::NetworkComponents network{source_, entry("topology"), entry("weights")};
        internal::StoredNetwork(network, mapWeights).passTo(*reader);
    }
    // Where the engine's weights are.
    static const char* address() { return faultyEngine().weights->cbuffer().as<const char*>(); }
    static std::string weights() { return {address(), faultyEngine().weights->byteSize()}; }

    SourceInMemory source_;
};

TEST_F(WeightsMapping, MappedWeightsAreTheSourcesOwnMemory) {
    read(true);
    EXPECT_EQ(address(), source_.contents.at("weights")->data());
    EXPECT_EQ(weights(), "the weights");
    const InferenceEngine::TensorDesc& description = faultyEngine().weights->getTensorDesc();
    EXPECT_EQ(description.getPrecision(), InferenceEngine::Precision::U8);
    EXPECT_EQ(description.getDims(), (InferenceEngine::SizeVector{11}));
}

TEST_F(WeightsMapping, MappedWeightsAreKeptByTheirLastHolder) {
    read(true);
    const std::weak_ptr<const std::string> bytes = source_.contents.at("weights");
    source_.contents.clear();
    auto other = faultyEngine().weights;
    faultyEngine().weights.reset();
    EXPECT_FALSE(bytes.expired());
    EXPECT_EQ(other->cbuffer().as<const char*>(), bytes.lock()->data());
    other.reset();
    EXPECT_TRUE(bytes.expired());
}

TEST_F(WeightsMapping, WeightsAreReadUnlessMappingIsAskedFor) {
    read(false);
    EXPECT_NE(address(), source_.contents.at("weights")->data());
    EXPECT_EQ(weights(), "the weights");
}

TEST_F(WeightsMapping, WeightsAreReadIfTheirSourceCannotMap) {
    source_.mapping = Mapping::kImpossible;
    read(true);
    EXPECT_NE(address(), source_.contents.at("weights")->data());
    EXPECT_EQ(weights(), "the weights");
}

TEST_F(WeightsMapping, WeightsInMemoryAreMappedUnasked) {
    source_.mapping = Mapping::kInMemory;
    read(false);
    EXPECT_EQ(address(), source_.contents.at("weights")->data());
    EXPECT_EQ(weights(), "the weights");
}

TEST_F(WeightsMapping, SecuredWeightsInMemoryAreDecryptedInACopy) {
    source_.mapping = Mapping::kInMemory;
    store("topology", secured("<net/>", countingKey(), BlockFilling::kPkcs7));
    const std::string stored = secured("sixteen weights.", countingKey(), BlockFilling::kNone);
    store("weights", stored);
    read(false, "secured_file");
    EXPECT_EQ(weights(), "sixteen weights." + std::string(16, '\0'));
    EXPECT_EQ(*source_.contents.at("weights"), stored);
}

TEST_F(WeightsMapping, EmptyWeightsHaveMemoryOfTheirOwn) {
    store("weights", "");
    read(true);
    EXPECT_NE(address(), nullptr);
    EXPECT_NE(address(), source_.contents.at("weights")->data());
    EXPECT_EQ(weights(), "");
}

TEST_F(WeightsMapping, AFailureToMapIsThrownAndTheEngineGetsNothing) {
    source_.mapping = Mapping::kFails;
    expectThrows<FileException>([&] { read(true); }, FILE_ERROR, "File error!");
    EXPECT_EQ(faultyEngine().weights, nullptr);
}

TEST_F(WeightsMapping, SecuredWeightsAreNeverMapped) {
    source_.mapping = Mapping::kFails;
    store("topology", secured("<net/>", countingKey(), BlockFilling::kPkcs7));
    const std::string stored = secured("sixteen weights.", countingKey(), BlockFilling::kNone);
    store("weights", stored);
    read(true, "secured_file");
    EXPECT_EQ(weights(), "sixteen weights." + std::string(16, '\0'));
    EXPECT_EQ(*source_.contents.at("weights"), stored);
}

}  // namespace
}  // namespace VelmoraQuavin::testing
