// The registry, networks that are only described, archives and secured files, from C.

#include "integration/c/c_test.h"
#include "quavin/client.h"
#include "support/file_tree.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StrEq;

class CRegistry : public CInterface {
protected:
    CRegistry() {
        writePackage(directory_, affineNetwork());
        options_.registered = 1;
    }
    ~CRegistry() override {
        EXPECT_THAT(quavin_registry_release(registry_), Succeeds());
        for (const auto& model : QuavinClient::instance().queryRuntimeStatus().getLoadedModels()) {
            QuavinClient::instance().getModelManager().unloadModel(model);
        }
    }

    std::size_t takeSnapshot() {
        std::size_t count = 0;
        EXPECT_THAT(quavin_registry_release(registry_), Succeeds());
        EXPECT_THAT(quavin_query_registry(&registry_), Succeeds());
        EXPECT_THAT(quavin_registry_get_count(registry_, &count), Succeeds());
        return count;
    }

    quavin_load_options options_ = QUAVIN_LOAD_OPTIONS_INIT;
    quavin_registry* registry_ = nullptr;
};

TEST_F(CRegistry, HoldsOnlyModelsThatAskForIt) {
    ASSERT_THAT(load(), Succeeds());
    EXPECT_EQ(takeSnapshot(), 0U);
    ASSERT_THAT(load(&options_), Succeeds());
    EXPECT_EQ(takeSnapshot(), 1U);
}

TEST_F(CRegistry, HoldsModelsFromArchivesAndBuffers) {
    const PackageInMemory package(affineNetwork());
    const std::string archive = package.archive();
    const auto buffers = package.buffers();
    ASSERT_THAT(quavin_load_archive(archive.data(), archive.size(), &options_, &model_),
                Succeeds());
    release(model_);
    ASSERT_THAT(quavin_load_buffers(buffers.data(), buffers.size(), &options_, &model_),
                Succeeds());
    EXPECT_EQ(takeSnapshot(), 2U);
}

TEST_F(CRegistry, HoldsModelsWithKeys) {
    const quavin_keys keys = QUAVIN_KEYS_INIT;
    options_.keys = &keys;
    ASSERT_THAT(load(&options_), Succeeds());
    EXPECT_EQ(takeSnapshot(), 1U);
}

TEST_F(CRegistry, KeepsAModelWhoseHandleIsReleased) {
    ASSERT_THAT(load(&options_), Succeeds());
    release(model_);
    ASSERT_EQ(takeSnapshot(), 1U);
    ASSERT_THAT(quavin_registry_get_model(registry_, 0, &model_), Succeeds());
    EXPECT_EQ(predictFloats(model_, {0, 0, 0, 0}), (std::vector<float>{0.5F, 1, 1.5F, 2}));
}

TEST_F(CRegistry, GivesModelsUpWhenTheyAreUnregistered) {
    ASSERT_THAT(load(&options_), Succeeds());
    ASSERT_THAT(quavin_unregister(model_), Succeeds());
    EXPECT_EQ(takeSnapshot(), 0U);
    EXPECT_THAT(
        quavin_unregister(model_),
        FailsWith(QUAVIN_MODEL_NOT_LOADED, StrEq("Could not remove model from references")));
}

TEST_F(CRegistry, RecordsWhatHostsAccountFor) {
    ASSERT_THAT(load(&options_), Succeeds());
    ASSERT_THAT(quavin_model_set_memory(model_, 1234), Succeeds());
    ASSERT_EQ(takeSnapshot(), 1U);
    quavin_registry_entry entry = QUAVIN_REGISTRY_ENTRY_INIT;
    ASSERT_THAT(quavin_registry_get_entry(registry_, 0, &entry), Succeeds());
    EXPECT_STREQ(entry.name, "a model");
    EXPECT_EQ(entry.memory, 1234U);
    EXPECT_EQ(entry.memory_limit, UINT64_MAX);
    EXPECT_THAT(quavin_model_set_memory(model_, UINT64_MAX),
                FailsWith(QUAVIN_MEMORY_LIMIT_EXCEEDED,
                          StrEq("The account's limit is 18446744073709551615")));
    ASSERT_EQ(takeSnapshot(), 1U);
    ASSERT_THAT(quavin_registry_get_entry(registry_, 0, &entry), Succeeds());
    EXPECT_EQ(entry.memory, 1234U);
}

TEST_F(CRegistry, HasNoAccountForOtherModels) {
    ASSERT_THAT(load(), Succeeds());
    EXPECT_THAT(quavin_model_set_memory(model_, 1),
                FailsWith(QUAVIN_MODEL_NOT_LOADED, StrEq("The model is not registered")));
}

TEST_F(CRegistry, RefusesAnIndexPastTheEnd) {
    takeSnapshot();
    const auto refused = FailsWith(QUAVIN_OUT_OF_RANGE, StrEq("There is no index 0 among 0"));
    quavin_registry_entry entry = QUAVIN_REGISTRY_ENTRY_INIT;
    EXPECT_THAT(quavin_registry_get_entry(registry_, 0, &entry), refused);
    EXPECT_THAT(quavin_registry_get_model(registry_, 0, &model_), refused);
}

TEST_F(CRegistry, ShowsAModelThatFailedToLoad) {
    directory_.write("net.xml", "no network");
    EXPECT_NE(load(&options_), QUAVIN_SUCCESS);
    ASSERT_EQ(takeSnapshot(), 1U);
    ASSERT_THAT(quavin_registry_get_model(registry_, 0, &model_), Succeeds());
    EXPECT_THAT(quavin_unregister(model_), Succeeds());
    EXPECT_EQ(takeSnapshot(), 0U);
}

class CNetwork : public ::testing::Test {
protected:
    CNetwork() : package_(arithmeticNetwork()) {}
    ~CNetwork() override { EXPECT_THAT(quavin_network_release(network_), Succeeds()); }

    void expectArithmetic() {
        std::size_t count = 0;
        quavin_port port = QUAVIN_PORT_INIT;
        ASSERT_THAT(quavin_network_get_input_count(network_, &count), Succeeds());
        EXPECT_EQ(count, 2U);
        ASSERT_THAT(quavin_network_get_output_count(network_, &count), Succeeds());
        EXPECT_EQ(count, 3U);
        ASSERT_THAT(quavin_network_get_input(network_, 1, &port), Succeeds());
        EXPECT_STREQ(port.name, "right");
        EXPECT_EQ(port.bytes, 8U);
        ASSERT_THAT(quavin_network_get_output(network_, 0, &port), Succeeds());
        EXPECT_STREQ(port.name, "difference");
        EXPECT_THAT(quavin_network_get_output(network_, 3, &port),
                    FailsWith(QUAVIN_OUT_OF_RANGE, StrEq("There is no index 3 among 3")));
        EXPECT_THAT(quavin_network_release(network_), Succeeds());
        network_ = nullptr;
    }

    TempDirectory directory_;
    const PackageInMemory package_;
    quavin_network* network_ = nullptr;
};

// All without switching the library on.
TEST_F(CNetwork, IsDescribedFromADirectory) {
    writePackage(directory_, arithmeticNetwork());
    ASSERT_THAT(quavin_describe_directory(directory_.text().c_str(), nullptr, &network_),
                Succeeds());
    expectArithmetic();
}

TEST_F(CNetwork, IsDescribedFromASecuredDirectory) {
    writeSecuredPackage(directory_, arithmeticNetwork(), countingKey());
    const CryptoKey key = countingKey();
    quavin_keys keys = QUAVIN_KEYS_INIT;
    keys.component_key = key.data();
    ASSERT_THAT(quavin_describe_directory(directory_.text().c_str(), &keys, &network_), Succeeds());
    expectArithmetic();
}

TEST_F(CNetwork, IsDescribedFromAnArchive) {
    const std::string archive = package_.archive();
    ASSERT_THAT(quavin_describe_archive(archive.data(), archive.size(), nullptr, &network_),
                Succeeds());
    expectArithmetic();
}

TEST_F(CNetwork, IsDescribedFromBuffers) {
    const auto buffers = package_.buffers();
    ASSERT_THAT(quavin_describe_buffers(buffers.data(), buffers.size(), nullptr, &network_),
                Succeeds());
    expectArithmetic();
}

TEST_F(CNetwork, IsDescribedFromItsFiles) {
    writeNetwork(directory_, arithmeticNetwork());
    const std::string topology = directory_.entry("net.xml");
    ASSERT_THAT(quavin_describe_files(topology.c_str(), nullptr, &network_), Succeeds());
    expectArithmetic();
    const std::string weights = directory_.entry("net.bin");
    ASSERT_THAT(quavin_describe_files(topology.c_str(), weights.c_str(), &network_), Succeeds());
    expectArithmetic();
}

TEST_F(CNetwork, ThatCannotBeReadGivesNoHandle) {
    EXPECT_EQ(quavin_describe_files("nowhere", nullptr, &network_), QUAVIN_FILE_ERROR);
    EXPECT_EQ(network_, nullptr);
    EXPECT_THAT(quavin_describe_directory("nowhere", nullptr, &network_),
                FailsWith(QUAVIN_MODEL_METADATA_ERROR, HasSubstr("nowhere")));
    EXPECT_EQ(network_, nullptr);
}

class CArchives : public ::testing::Test {
protected:
    TempDirectory directory_;
    const std::string archive_ = PackageInMemory(affineNetwork()).archive();
};

TEST_F(CArchives, AreExtractedAndTellTheirFirstDirectory) {
    std::array<char, 1024> first{};
    std::size_t needed = 0;
    ASSERT_THAT(
        quavin_extract_archive(archive_.data(), archive_.size(), nullptr, directory_.text().c_str(),
                               first.data(), first.size(), &needed),
        Succeeds());
    EXPECT_EQ(needed, std::strlen(first.data()) + 1);
    EXPECT_EQ(directory_.read("model/net.xml"), affineNetwork().topology());

    ASSERT_THAT(quavin_init(nullptr), Succeeds());
    quavin_model* model = nullptr;
    const std::string package(first.data());
    EXPECT_THAT(
        quavin_load_directory(package.substr(0, package.find_last_not_of("/\\") + 1).c_str(),
                              nullptr, &model),
        Succeeds());
    EXPECT_THAT(quavin_model_release(model), Succeeds());
    quavin_terminate();
}

TEST_F(CArchives, TellNothingWhereThereIsNoRoom) {
    std::array<char, 4> first = {'a', 'b', 'c', 'd'};
    std::size_t needed = 0;
    ASSERT_THAT(
        quavin_extract_archive(archive_.data(), archive_.size(), nullptr, directory_.text().c_str(),
                               first.data(), first.size(), &needed),
        Succeeds());
    EXPECT_THAT(first, ElementsAre('\0', 'b', 'c', 'd'));
    EXPECT_GT(needed, directory_.text().size());
    EXPECT_THAT(quavin_extract_archive(archive_.data(), archive_.size(), nullptr,
                                       directory_.text().c_str(), first.data(), 0, nullptr),
                Succeeds());
    EXPECT_THAT(quavin_extract_archive(archive_.data(), archive_.size(), nullptr,
                                       directory_.text().c_str(), nullptr, 1024, nullptr),
                Succeeds());
}

TEST_F(CArchives, MayBeSecured) {
    const std::string archive = secured(archive_, countingKey(), BlockFilling::kPkcs7);
    const CryptoKey key = countingKey();
    ASSERT_THAT(quavin_extract_archive(archive.data(), archive.size(), key.data(),
                                       directory_.text().c_str(), nullptr, 0, nullptr),
                Succeeds());
    EXPECT_EQ(directory_.read("model/net.xml"), affineNetwork().topology());
    const CryptoKey other = anotherKey();
    EXPECT_EQ(quavin_extract_archive(archive.data(), archive.size(), other.data(),
                                     directory_.text().c_str(), nullptr, 0, nullptr),
              QUAVIN_TAR_CHECKSUM_MISMATCH);
}

TEST_F(CArchives, ThatAreCutAreRefused) {
    EXPECT_EQ(quavin_extract_archive(archive_.data(), 700, nullptr, directory_.text().c_str(),
                                     nullptr, 0, nullptr),
              QUAVIN_INVALID_ARGUMENTS);
    EXPECT_TRUE(treeOf(directory_.path()).empty());
}

TEST(CDecrypt, GivesThePlainBytesAndTheirPadding) {
    const std::string plain = "exactly 16 bytes";
    const std::string file = secured(plain, countingKey(), BlockFilling::kNone);
    const CryptoKey key = countingKey();
    std::string output(16, '?');
    ASSERT_THAT(quavin_decrypt(file.data(), file.size(), key.data(), output.data(), output.size()),
                Succeeds());
    EXPECT_EQ(output, plain);
}

TEST(CDecrypt, RefusesSizesThatNoSecuredFileHas) {
    const std::string file = secured("exactly 16 bytes", countingKey(), BlockFilling::kNone);
    const CryptoKey key = countingKey();
    std::string output(32, '?');
    for (const std::size_t size : {std::size_t{0}, std::size_t{15}, std::size_t{17},
                                   std::size_t{31}, std::size_t{1} << 32U}) {
        EXPECT_THAT(quavin_decrypt(file.data(), size, key.data(), output.data(), output.size()),
                    FailsWith(QUAVIN_INVALID_ARGUMENTS,
                              StrEq("No secured file has " + std::to_string(size) + " bytes")));
    }
    EXPECT_THAT(quavin_decrypt(file.data(), 32, key.data(), output.data(), 15),
                FailsWith(QUAVIN_INVALID_ARGUMENTS, StrEq("\"output\" needs 16 bytes and has 15")));
    EXPECT_EQ(output, std::string(32, '?'));
}

}  // namespace
}  // namespace VelmoraQuavin::testing
