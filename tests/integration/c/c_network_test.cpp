// Describing networks without loading them, from C.

#include "integration/c/c_test.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::StrEq;

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

}  // namespace
}  // namespace VelmoraQuavin::testing
