#include "engine/openvino/network_reading.h"

#include <algorithm>

#include "allocation_watch.h"
#include "faulty_model_test.h"

namespace VelmoraQuavin::testing {
namespace {

using internal::NetworkComponentEntry;
using internal::StoredNetwork;
using ::testing::HasSubstr;

class NetworkReading : public ::testing::Test {
protected:
    NetworkReading() {
        faultyEngine() = FaultyEngine();
        reader_ =
            InferenceEngine::details::shared_from_irelease(InferenceEngine::CreateCNNNetReader());
    }

    NetworkComponentEntry entry(const std::string& name, bool secured = false) const {
        Encryption encryption;
        encryption.setKey(countingKey().data());
        return {directory_.entry(name), secured ? "secured_file" : "file", name, encryption};
    }
    void read(const NetworkComponentEntry& topology, const NetworkComponentEntry& weights) {
        const internal::DirectorySource source{Filepath()};
        const internal::NetworkComponents network{source, topology, weights};
        StoredNetwork(network).passTo(*reader_);
    }
    void readPlain() { read(entry("net.xml"), entry("net.bin")); }
    void readSecured() { read(entry("net.xml", true), entry("net.bin", true)); }
    std::string weights() const {
        const auto& blob = faultyEngine().weights;
        return {blob->cbuffer().as<const char*>(), blob->byteSize()};
    }

    TempDirectory directory_;
    std::shared_ptr<InferenceEngine::ICNNNetReader> reader_;
};

TEST_F(NetworkReading, PassesOnExactlyTheFilesBytes) {
    const std::string topology("<net\0\n\r\x1A>", 9);
    const std::string bytes("\0\xFF\r\n", 4);
    directory_.write("net.xml", topology);
    directory_.write("net.bin", bytes);
    readPlain();
    EXPECT_EQ(faultyEngine().readTexts, (std::vector<std::string>{topology}));
    EXPECT_EQ(weights(), bytes);
}

TEST_F(NetworkReading, WeightsAreABlobOfBytesWithTheFilesSizeAsItsDimension) {
    directory_.write("net.xml", "<net>");
    directory_.write("net.bin", "12345");
    readPlain();
    const InferenceEngine::TensorDesc& description = faultyEngine().weights->getTensorDesc();
    EXPECT_EQ(description.getPrecision(), InferenceEngine::Precision::U8);
    EXPECT_EQ(description.getDims(), (InferenceEngine::SizeVector{5}));
    EXPECT_EQ(description.getLayout(), InferenceEngine::ANY);
}

TEST_F(NetworkReading, EmptyFilesArePassedOnEmpty) {
    directory_.write("net.xml", "");
    directory_.write("net.bin", "");
    readPlain();
    EXPECT_EQ(faultyEngine().readTexts, (std::vector<std::string>{""}));
    ASSERT_NE(faultyEngine().weights, nullptr);
    EXPECT_EQ(weights(), "");
}

TEST_F(NetworkReading, ASecuredTopologyIsPassedOnWithItsPadding) {
    const std::string topology = "<net/>";
    directory_.write("net.xml", secured(topology, countingKey(), BlockFilling::kPkcs7));
    directory_.write("net.bin", secured("", countingKey(), BlockFilling::kPkcs7));
    readSecured();
    // One block: the text and ten bytes of padding, which is kept.
    EXPECT_EQ(faultyEngine().readTexts,
              (std::vector<std::string>{topology + std::string(10, '\x0A')}));
}

TEST_F(NetworkReading, SecuredWeightsHaveTheFilesSizeAndEndWithSixteenZeros) {
    const std::string plain = "thirty-two bytes in the weights.";
    ASSERT_EQ(plain.size(), 32U);
    directory_.write("net.xml", secured("<net/>", countingKey(), BlockFilling::kPkcs7));
    directory_.write("net.bin", secured(plain, countingKey(), BlockFilling::kNone));
    readSecured();
    EXPECT_EQ(weights(), plain + std::string(16, '\0'));
    EXPECT_EQ(weights().size(), directory_.read("net.bin").size());
}

TEST_F(NetworkReading, OnlyTheComponentsNameDecidesOnDecryption) {
    const std::string topology = secured("<net/>", countingKey(), BlockFilling::kPkcs7);
    directory_.write("net.xml", topology);
    directory_.write("net.bin", secured("weights", countingKey(), BlockFilling::kPkcs7));
    // A key on a plain file changes nothing.
    read(entry("net.xml"), entry("net.bin", true));
    EXPECT_EQ(faultyEngine().readTexts, (std::vector<std::string>{topology}));
    EXPECT_EQ(weights(), "weights" + std::string(9, '\x09') + std::string(16, '\0'));
}

TEST_F(NetworkReading, AWrongKeyPassesOnMeaninglessBytes) {
    directory_.write("net.xml", secured("<net/>", CryptoKey{}, BlockFilling::kPkcs7));
    directory_.write("net.bin", secured("", CryptoKey{}, BlockFilling::kPkcs7));
    readSecured();
    ASSERT_EQ(faultyEngine().readTexts.size(), 1U);
    EXPECT_EQ(faultyEngine().readTexts[0].size(), 16U);
    EXPECT_THAT(faultyEngine().readTexts[0], Not(HasSubstr("<net/>")));
}

TEST_F(NetworkReading, ASecuredFileOfInvalidSizeThrowsWithItsPathAndReadsNothing) {
    const std::string whole = secured("<net/>", countingKey(), BlockFilling::kPkcs7);
    directory_.write("net.bin", whole);
    for (const std::size_t size : {0U, 1U, 15U, 17U, 31U}) {
        directory_.write("net.xml", whole.substr(0, size));
        try {
            readSecured();
            ADD_FAILURE() << "nothing was thrown for " << size;
        } catch (const FileException& exception) {
            EXPECT_THAT(exception.what(), HasSubstr(directory_.entry("net.xml")));
        }
    }
    EXPECT_TRUE(faultyEngine().readTexts.empty());
}

TEST_F(NetworkReading, MissingFilesThrowTheFileLayersText) {
    expectThrows<FileException>([&] { readPlain(); }, FILE_ERROR, "File error!");
    directory_.write("net.xml", "<net/>");
    expectThrows<FileException>([&] { readPlain(); }, FILE_ERROR, "File error!");
    EXPECT_EQ(faultyEngine().weights, nullptr);
}

TEST_F(NetworkReading, ReaderFailuresAreThrownWithTheirText) {
    directory_.write("net.xml", "<net/>");
    directory_.write("net.bin", "");
    const auto expectText = [&](const char* text) {
        try {
            readPlain();
            ADD_FAILURE() << "nothing was thrown";
        } catch (const std::exception& exception) {
            EXPECT_STREQ(exception.what(), text);
        }
    };
    faultyEngine().settingWeights = {InferenceEngine::GENERAL_ERROR, "these weights will not do"};
    expectText("these weights will not do");
    faultyEngine().reading = {InferenceEngine::NETWORK_NOT_READ, "this text will not do"};
    expectText("this text will not do");
}

TEST_F(NetworkReading, ADecryptedTopologyIsOverwrittenBeforeItsMemoryIsFreed) {
    directory_.write("net.xml", secured("<net/>", countingKey(), BlockFilling::kPkcs7));
    directory_.write("net.bin", secured("", countingKey(), BlockFilling::kPkcs7));
    for (const bool fails : {false, true}) {
        FreeWatch watch;
        faultyEngine().reading.status =
            fails ? InferenceEngine::GENERAL_ERROR : InferenceEngine::OK;
        faultyEngine().onRead = [&](const void* text, std::size_t size) {
            watch.watch(text, size);
        };
        try {
            readSecured();
            EXPECT_FALSE(fails);
        } catch (const std::exception&) {
            EXPECT_TRUE(fails);
        }
        EXPECT_TRUE(watch.wasFreed());
        EXPECT_TRUE(watch.wasZeroWhenFreed());
    }
    faultyEngine().onRead = nullptr;
}

TEST_F(NetworkReading, DecryptedWeightsAreOverwrittenWhenTheirLastHolderReleasesThem) {
    directory_.write("net.xml", secured("<net/>", countingKey(), BlockFilling::kPkcs7));
    directory_.write("net.bin", secured("weights", countingKey(), BlockFilling::kPkcs7));
    readSecured();
    auto& blob = faultyEngine().weights;
    FreeWatch watch;
    watch.watch(blob->cbuffer().as<const void*>(), blob->byteSize());
    blob.reset();
    EXPECT_TRUE(watch.wasFreed());
    EXPECT_TRUE(watch.wasZeroWhenFreed());
}

}  // namespace
}  // namespace VelmoraQuavin::testing
