// What becomes of the content of an archive that is secured as a whole: its plain components are
// secrets too.

#include "allocation_watch.h"
#include "engine/openvino/network_reading.h"
#include "faulty_model_test.h"
#include "package/source/memory_source.h"

namespace VelmoraQuavin::testing {
namespace {

using internal::MemorySource;
using internal::NetworkComponentEntry;

class SealedPackage : public ::testing::Test {
protected:
    SealedPackage() {
        faultyEngine() = FaultyEngine();
        keys_.setArchiveKey(countingKey().data());
        const std::string archive =
            archiveOf({{"manifest.json", PackageText().manifest()},
                       {"net.xml", "<net/>"},
                       {"net.bin", "the weights"},
                       {"secured.bin", secured("", anotherKey(), BlockFilling::kPkcs7)}});
        const std::string stored = secured(archive, countingKey(), BlockFilling::kPkcs7);
        source_ = std::make_shared<const MemorySource>(stored.data(), stored.size(), keys_);
    }

    void read(const std::string& weights = "net.bin", const std::string& kind = "file") {
        const auto reader =
            InferenceEngine::details::shared_from_irelease(InferenceEngine::CreateCNNNetReader());
        Encryption encryption;
        encryption.setKey(anotherKey().data());
        const internal::NetworkComponents network{*source_,
                                                  {"net.xml", "file", "net.xml", Encryption()},
                                                  {weights, kind, weights, encryption}};
        internal::StoredNetwork(network).passTo(*reader);
    }

    PackageKeys keys_;
    std::shared_ptr<const MemorySource> source_;
};

TEST_F(SealedPackage, ItsTopologyIsOverwrittenBeforeItsMemoryIsFreed) {
    FreeWatch watch;
    faultyEngine().onRead = [&](const void* text, std::size_t size) { watch.watch(text, size); };
    read();
    EXPECT_TRUE(watch.wasFreed());
    EXPECT_TRUE(watch.wasZeroWhenFreed());
    faultyEngine().onRead = nullptr;
}

TEST_F(SealedPackage, ItsWeightsAreUsedWhereTheyWereDecryptedAndOverwrittenInTheEnd) {
    read();
    auto& blob = faultyEngine().weights;
    const char* const weights = blob->cbuffer().as<const char*>();
    EXPECT_EQ(std::string(weights, blob->byteSize()), "the weights");
    FreeWatch watch;
    watch.watch(weights, blob->byteSize());
    source_.reset();
    EXPECT_FALSE(watch.wasFreed());
    EXPECT_EQ(*weights, 't');
    blob.reset();
    EXPECT_TRUE(watch.wasFreed());
    EXPECT_TRUE(watch.wasZeroWhenFreed());
}

TEST_F(SealedPackage, ItsSecuredComponentsAreDecryptedInMemoryOfTheirOwn) {
    read("secured.bin", "secured_file");
    const auto& blob = faultyEngine().weights;
    EXPECT_EQ(std::string(blob->cbuffer().as<const char*>(), blob->byteSize()),
              std::string(16, '\x10') + std::string(16, '\0'));
    const NetworkComponentEntry component{"secured.bin", "file", "secured.bin", Encryption()};
    const auto stored = source_->open(component)->map();
    ASSERT_TRUE(stored.has_value());
    EXPECT_NE(stored->data.get(), blob->cbuffer().as<const char*>());
    EXPECT_NE(std::string(stored->data.get(), stored->size).substr(16), std::string(16, '\x10'));
}

TEST_F(SealedPackage, IsOverwrittenWithItsSource) {
    const NetworkComponentEntry component{"net.xml", "file", "net.xml", Encryption()};
    auto mapped = source_->open(component)->map();
    ASSERT_TRUE(mapped.has_value());
    FreeWatch watch;
    watch.watch(mapped->data.get(), mapped->size);
    mapped.reset();
    EXPECT_FALSE(watch.wasFreed());
    source_.reset();
    EXPECT_TRUE(watch.wasFreed());
    EXPECT_TRUE(watch.wasZeroWhenFreed());
}

}  // namespace
}  // namespace VelmoraQuavin::testing
