// Trusted keys, and the packages of tests/data/signature, from C.

#include <memory>

#include "integration/c/c_test.h"
#include "support/signature_data.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::StrEq;

const std::string kNotTrusted = "model.sig is not signed by a trusted key";

class CSignature : public CInterface {
protected:
    CSignature() {
        for (const char* const name : {"manifest.json", "net.xml", "net.bin", "model.sig"}) {
            directory_.write(name, readSignatureData("package/" + std::string(name)));
        }
    }
    // Keys that are trusted must not outlast the test.
    ~CSignature() override { restart(nullptr); }

    static quavin_status restart(const quavin_config* config) {
        quavin_terminate();
        return quavin_init(config);
    }
    static void trust(const std::vector<std::string>& pems) {
        std::vector<const char*> keys;
        keys.reserve(pems.size());
        for (const std::string& pem : pems) {
            keys.push_back(pem.c_str());
        }
        quavin_config config = QUAVIN_CONFIG_INIT;
        config.trusted_keys = keys.data();
        config.trusted_key_count = keys.size();
        EXPECT_THAT(restart(&config), Succeeds());
    }
    std::vector<quavin_buffer> buffers() {
        std::vector<quavin_buffer> buffers;
        for (const char* const name : {"manifest.json", "net.xml", "net.bin", "model.sig"}) {
            contents_.push_back(std::make_unique<std::string>(directory_.read(name)));
            buffers.push_back(
                {name, contents_.back()->data(), contents_.back()->size(), nullptr, nullptr});
        }
        return buffers;
    }

    std::vector<std::unique_ptr<std::string>> contents_;
};

TEST_F(CSignature, APackageThatATrustedKeySignedLoads) {
    const std::string pem = readPem("p256");
    const char* const keys[] = {pem.c_str()};
    quavin_config config = QUAVIN_CONFIG_INIT;
    config.trusted_keys = keys;
    config.trusted_key_count = 1;
    ASSERT_THAT(restart(&config), Succeeds());
    EXPECT_THAT(load(), Succeeds());
    trust({readPem("other"), pem});
    EXPECT_THAT(load(), Succeeds());
}

TEST_F(CSignature, APackageOfAnotherKeyIsRefusedInEveryForm) {
    trust({readPem("other")});
    const auto refused = FailsWith(QUAVIN_SIGNATURE_ERROR, StrEq(kNotTrusted));
    EXPECT_THAT(load(), refused);
    EXPECT_EQ(model_, nullptr);
    const std::vector<quavin_buffer> files = buffers();
    EXPECT_THAT(quavin_load_buffers(files.data(), files.size(), nullptr, &model_), refused);
    std::string archive = tarDirectory("model/");
    for (const quavin_buffer& file : files) {
        archive += tarFile("model/" + std::string(file.name),
                           {static_cast<const char*>(file.data), file.size});
    }
    archive += tarEnd();
    EXPECT_THAT(quavin_load_archive(archive.data(), archive.size(), nullptr, &model_), refused);
    quavin_network* network = nullptr;
    EXPECT_THAT(quavin_describe_directory(directory_.text().c_str(), nullptr, &network), refused);
    EXPECT_EQ(network, nullptr);
}

TEST_F(CSignature, AChangedFileIsRefused) {
    trust({readPem("p256")});
    directory_.write("net.bin", std::string(64, '#'));
    EXPECT_THAT(load(),
                FailsWith(QUAVIN_SIGNATURE_ERROR,
                          StrEq("The digest of \"net.bin\" is not the one that was signed")));
}

TEST_F(CSignature, AKeyThatCannotBeUsedIsReportedByLoads) {
    trust({readPem("p256"), "no key"});
    EXPECT_THAT(load(), FailsWith(QUAVIN_INVALID_ARGUMENTS,
                                  StrEq("Trusted key 2: it is not one block of PEM with a public "
                                        "key")));
}

TEST_F(CSignature, KeysThatAreNullAreRefused) {
    const char* const keys[] = {"", nullptr};
    quavin_config config = QUAVIN_CONFIG_INIT;
    config.trusted_key_count = 2;
    const auto refused = FailsWith(QUAVIN_INVALID_ARGUMENTS, StrEq("\"trusted_keys\" is null"));
    EXPECT_THAT(restart(&config), refused);
    config.trusted_keys = keys;
    EXPECT_THAT(restart(&config), refused);
    EXPECT_EQ(quavin_is_initialized(), 0);
}

TEST_F(CSignature, AHostOfAVersionWithoutTrustedKeysTrustsNone) {
    const char* const keys[] = {"no key"};
    quavin_config config = QUAVIN_CONFIG_INIT;
    config.trusted_keys = keys;
    config.trusted_key_count = 1;
    config.size = offsetof(quavin_config, trusted_keys);
    ASSERT_THAT(restart(&config), Succeeds());
    EXPECT_THAT(load(), Succeeds());
}

}  // namespace
}  // namespace VelmoraQuavin::testing
