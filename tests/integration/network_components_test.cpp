// Which components of a package are read, and what a host is told if that fails.

#include "integration/model_test.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Components = std::vector<std::pair<std::string, std::string>>;

class NetworkComponents : public ModelTest {
protected:
    QuavinStatus loadWith(const Components& components) {
        writeNetwork(directory_, sumNetwork());
        PackageText text = describe(sumNetwork());
        text.components = components;
        writeManifest(directory_, text);
        return load();
    }
    void expectSums() {
        inputs_ = {featureOf<float>("x", {1, 2}, DataType::FLOAT, {1, 2})};
        ASSERT_THAT(predict(), IsOk());
        EXPECT_THAT(valuesOf<float>(outputs_.at(0)), ElementsAre(2.F, 4.F));
    }
};

TEST_F(NetworkComponents, OtherKindsAreSkippedBeforeTheTwoFiles) {
    ASSERT_THAT(loadWith({{"memory_stream", "not there"},
                          {"secured_tar", "not there"},
                          {"file", "net.xml"},
                          {"model", "not there"},
                          {"file", "net.bin"}}),
                IsOk());
    expectSums();
}

TEST_F(NetworkComponents, ComponentsNamedModelAndWeightsAnswerIncompleteModel) {
    EXPECT_THAT(loadWith({{"model", "net.xml"}, {"weights", "net.bin"}}),
                IsStatus(INVALID_MODEL_PATH, "Incomplete Model"));
}

TEST_F(NetworkComponents, KindsAreCaseSensitive) {
    EXPECT_THAT(loadWith({{"File", "net.xml"}, {"FILE", "net.bin"}, {"file ", "net.bin"}}),
                IsStatus(INVALID_MODEL_PATH, "Incomplete Model"));
}

TEST_F(NetworkComponents, OneFileAnswersIncompleteModelWithoutReadingIt) {
    // The file does not exist, but that is not what the host is told.
    EXPECT_THAT(loadWith({{"file", "not there"}}),
                IsStatus(INVALID_MODEL_PATH, "Incomplete Model"));
}

TEST_F(NetworkComponents, OfThreeFilesTheFirstTwoAreUsed) {
    ASSERT_THAT(loadWith({{"file", "net.xml"}, {"file", "net.bin"}, {"file", "not there"}}),
                IsOk());
    expectSums();
}

TEST_F(NetworkComponents, TheFirstFileIsTheTopology) {
    EXPECT_THAT(loadWith({{"file", "net.bin"}, {"file", "net.xml"}}),
                IsStatusWith(FILE_ERROR, Not(IsEmpty())));
}

TEST_F(NetworkComponents, ComponentsMayBeInFoldersOfThePackage) {
    writeNetwork(directory_, affineNetwork(), "inner/part");
    PackageText text = describe(affineNetwork());
    text.components = {{"file", R"(inner\\part\\net.xml)"}, {"file", "inner/part/net.bin"}};
    writeManifest(directory_, text);
    ASSERT_THAT(load(), IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    EXPECT_THAT(predictFloats({0, 0, 0, 0}), ElementsAre(0.5F, 1.F, 1.5F, 2.F));
}

TEST_F(NetworkComponents, AMissingWeightsFileAnswersTheFileLayersText) {
    EXPECT_THAT(loadWith({{"file", "net.xml"}, {"file", "not there"}}),
                IsStatus(FILE_ERROR, "File error!"));
}

TEST_F(NetworkComponents, AMissingTopologyFileAnswersFileError) {
    EXPECT_THAT(loadWith({{"file", "not there"}, {"file", "net.bin"}}),
                IsStatus(FILE_ERROR, "File error!"));
}

TEST_F(NetworkComponents, ADirectoryInsteadOfAFileAnswersFileError) {
    directory_.write("folder/entry", "");
    EXPECT_THAT(loadWith({{"file", "net.xml"}, {"file", "folder"}}),
                IsStatus(FILE_ERROR, "File error!"));
    EXPECT_THAT(loadWith({{"file", "folder"}, {"file", "net.bin"}}),
                IsStatus(FILE_ERROR, "File error!"));
}

TEST_F(NetworkComponents, AnEmptyPathMeansThePackagesDirectoryAndAnswersFileError) {
    EXPECT_THAT(loadWith({{"file", ""}, {"file", "net.bin"}}), IsStatus(FILE_ERROR, "File error!"));
    EXPECT_THAT(loadWith({{"file", "net.xml"}, {"file", ""}}), IsStatus(FILE_ERROR, "File error!"));
}

TEST_F(NetworkComponents, AMalformedTopologyAnswersTheEnginesTextAsAFileError) {
    for (const std::string topology :
         {"", "no network at all", "<net", "<?xml version=\"1.0\"?>"}) {
        writePackage(directory_, sumNetwork());
        directory_.write("net.xml", topology);
        EXPECT_THAT(load(), IsStatusWith(FILE_ERROR, Not(IsEmpty()))) << topology;
    }
}

TEST_F(NetworkComponents, WeightsShorterThanTheNetworkNeedsAnswerFileError) {
    writePackage(directory_, affineNetwork());
    directory_.write("net.bin", affineNetwork().weights().substr(0, 16));
    EXPECT_THAT(load(), IsStatusWith(FILE_ERROR, Not(IsEmpty())));
}

TEST_F(NetworkComponents, WeightsLongerThanTheNetworkNeedsLoad) {
    writePackage(directory_, affineNetwork());
    directory_.write("net.bin", affineNetwork().weights() + std::string(100, '\x7F'));
    ASSERT_THAT(load(), IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    EXPECT_THAT(predictFloats({1, 1, 1, 1}), ElementsAre(2.5F, 3.F, 3.5F, 4.F));
}

TEST_F(NetworkComponents, AnEmptyWeightsFileLoadsIfTheNetworkHasNoConstants) {
    writePackage(directory_, sumNetwork());
    ASSERT_EQ(directory_.read("net.bin"), "");
    ASSERT_THAT(load(), IsOk());
    expectSums();
}

TEST_F(NetworkComponents, ATopologyWithTrailingBytesLoads) {
    for (const std::string& padding : {std::string(16, '\x10'), std::string(7, '\0'),
                                       std::string("\n\n  "), std::string(3, '\x03')}) {
        writePackage(directory_, sumNetwork());
        directory_.write("net.xml", sumNetwork().topology() + padding);
        EXPECT_THAT(load(), IsOk());
        expectSums();
    }
}

}  // namespace
}  // namespace VelmoraQuavin::testing
