// What a host can learn about a network before it has a package or a model.

#include "integration/model_test.h"
#include "support/secured_file.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class DescribeNetwork : public ::testing::Test {
protected:
    QuavinStatus describeFiles(const IrNetwork& network) {
        writeNetwork(directory_, network);
        return describeFiles();
    }
    QuavinStatus describeFiles() {
        return describeNetwork(Filepath(directory_.entry("net.xml")),
                               Filepath(directory_.entry("net.bin")), inputs_, outputs_);
    }
    QuavinStatus describePackage(const CryptoKey* key = nullptr) {
        ModelMetadata metadata;
        EXPECT_THAT(metadata.load(Filepath(directory_.entry("manifest.json"))), IsOk());
        if (key != nullptr) {
            for (auto& component : metadata.getTargets().at(QuavinModelType::Openvino).components) {
                component.setCryptoKey(key->data());
            }
        }
        return describeNetwork(metadata, inputs_, outputs_);
    }

    // Writes the package of an affine network and returns its key.
    CryptoKey writeSecuredPackage() {
        const IrNetwork network = affineNetwork();
        PackageText text = describe(network);
        text.components = {{"secured_file", "net.xml"}, {"secured_file", "net.bin"}};
        writeManifest(directory_, text);
        const CryptoKey key = countingKey();
        directory_.write("net.xml", secured(network.topology(), key, BlockFilling::kPkcs7));
        directory_.write("net.bin", secured(network.weights(), key, BlockFilling::kPkcs7));
        return key;
    }

    static std::vector<std::string> namesOf(const std::vector<ModelFeatureDescriptor>& features) {
        std::vector<std::string> names;
        for (const ModelFeatureDescriptor& feature : features) {
            names.push_back(feature.name().str());
        }
        return names;
    }

    TempDirectory directory_;
    std::vector<ModelFeatureDescriptor> inputs_;
    std::vector<ModelFeatureDescriptor> outputs_;
};

TEST_F(DescribeNetwork, WorksWithoutInit) {
    ASSERT_FALSE(QuavinClient::isInitialized());
    EXPECT_THAT(describeFiles(affineNetwork()), IsOk());
}

TEST_F(DescribeNetwork, ReportsNamesTypesAndShapesAsRequiredTensors) {
    ASSERT_THAT(describeFiles(affineNetwork()), IsOk());
    ASSERT_THAT(namesOf(inputs_), ElementsAre("x"));
    ASSERT_THAT(namesOf(outputs_), ElementsAre("y"));
    for (const ModelFeatureDescriptor& feature : {inputs_[0], outputs_[0]}) {
        EXPECT_EQ(feature.type(), QuavinFeatureType::TENSOR);
        EXPECT_TRUE(feature.required());
        EXPECT_EQ(feature.description(), "");
        EXPECT_EQ(feature.tensorDescriptor().name(), feature.name());
        EXPECT_EQ(feature.tensorDescriptor().tensorType(), DataType::FLOAT);
        EXPECT_THAT(feature.tensorDescriptor().shape().shapeVector(), ElementsAre(1, 4));
    }
}

TEST_F(DescribeNetwork, ListsPortsInNameOrderAndReplacesEarlierEntries) {
    inputs_.emplace_back();
    outputs_.emplace_back();
    ASSERT_THAT(describeFiles(arithmeticNetwork()), IsOk());
    EXPECT_THAT(namesOf(inputs_), ElementsAre("left", "right"));
    EXPECT_THAT(namesOf(outputs_), ElementsAre("difference", "product", "sum"));
}

TEST_F(DescribeNetwork, ReportsAScalarAsAnEmptyShape) {
    ASSERT_THAT(describeFiles(scalarNetwork()), IsOk());
    EXPECT_EQ(inputs_.at(0).tensorDescriptor().shape().dimension(), 0U);
    EXPECT_EQ(outputs_.at(0).tensorDescriptor().shape().dimension(), 0U);
}

// Each element type of the file, with the one that loading reports.
class DescribeNetworkTypes
    : public DescribeNetwork,
      public ::testing::WithParamInterface<std::pair<const char*, DataType>> {};

TEST_P(DescribeNetworkTypes, TypesMatchThoseThatLoadingReports) {
    ASSERT_THAT(describeFiles(halvingNetwork(GetParam().first)), IsOk());
    EXPECT_EQ(inputs_.at(0).tensorDescriptor().tensorType(), GetParam().second);
    EXPECT_EQ(outputs_.at(0).tensorDescriptor().tensorType(), DataType::FLOAT);
}

constexpr std::pair<const char*, DataType> kReportedTypes[] = {
    {"f32", DataType::FLOAT},     {"f16", DataType::FLOAT}, {"i8", DataType::INT8},
    {"i16", DataType::INT16},     {"i32", DataType::INT32}, {"u8", DataType::UINT8},
    {"u16", DataType::UINT16},
#ifdef QUAVIN_ENGINE_IS_ADAPTER  // others refuse these, or report them differently
    {"f64", DataType::FLOAT},     {"u32", DataType::INT32}, {"i64", DataType::INT32},
    {"boolean", DataType::UINT8},
#endif
};

INSTANTIATE_TEST_SUITE_P(, DescribeNetworkTypes, ::testing::ValuesIn(kReportedTypes),
                         [](const auto& tested) { return std::string(tested.param.first); });

TEST_F(DescribeNetwork, IntegerOutputsStayIntegers) {
    ASSERT_THAT(describeFiles(integerNetwork()), IsOk());
    EXPECT_EQ(outputs_.at(0).tensorDescriptor().tensorType(), DataType::INT32);
}

TEST_F(DescribeNetwork, AcceptsAnEmptyWeightsPathForANetworkWithoutConstants) {
    writeNetwork(directory_, sumNetwork());
    EXPECT_THAT(
        describeNetwork(Filepath(directory_.entry("net.xml")), Filepath(), inputs_, outputs_),
        IsOk());
    EXPECT_THAT(namesOf(inputs_), ElementsAre("x"));
}

TEST_F(DescribeNetwork, MissingFilesAnswerFileErrorAndChangeNothing) {
    inputs_.emplace_back();
    EXPECT_THAT(describeFiles(), IsStatus(FILE_ERROR, "File error!"));
    EXPECT_EQ(inputs_.size(), 1U);
    EXPECT_THAT(outputs_, IsEmpty());
    directory_.write("net.xml", affineNetwork().topology());
    EXPECT_THAT(describeFiles(), IsStatus(FILE_ERROR, "File error!"));
    EXPECT_EQ(inputs_.size(), 1U);
}

#ifdef QUAVIN_ENGINE_IS_ADAPTER  // these are its texts
TEST_F(DescribeNetwork, TextThatIsNotANetworkAnswersFileError) {
    directory_.write("net.xml", "no network");
    directory_.write("net.bin", "");
    EXPECT_THAT(describeFiles(), IsStatusWith(FILE_ERROR, HasSubstr("not an XML text")));
}

TEST_F(DescribeNetwork, DynamicDimensionsAnswerFileErrorNamingTheInput) {
    IrNetwork net("dynamic");
    net.output(net.layer("Relu", "y", {net.input("x", {1, -1})}, {1, -1}));
    EXPECT_THAT(describeFiles(net),
                IsStatusWith(FILE_ERROR, ::testing::AllOf(HasSubstr("\"x\""),
                                                          HasSubstr("dynamic dimensions"))));
}

TEST_F(DescribeNetwork, AWrongKeyAnswersThatTheTopologyIsNotXml) {
    writeSecuredPackage();
    const CryptoKey wrong{};
    EXPECT_THAT(describePackage(&wrong), IsStatusWith(FILE_ERROR, HasSubstr("not an XML text")));
}
#endif

TEST_F(DescribeNetwork, APathThatIsNotUtf8AnswersFileError) {
    EXPECT_THAT(describeNetwork(Filepath("\xFF.xml"), Filepath("x"), inputs_, outputs_),
                IsStatus(FILE_ERROR, "bad conversion"));
}

TEST_F(DescribeNetwork, ReadsTheComponentsOfAPackage) {
    writePackage(directory_, arithmeticNetwork());
    ASSERT_THAT(describePackage(), IsOk());
    EXPECT_THAT(namesOf(inputs_), ElementsAre("left", "right"));
}

TEST_F(DescribeNetwork, DecryptsASecuredPackageInMemory) {
    const CryptoKey key = writeSecuredPackage();
    ASSERT_THAT(describePackage(&key), IsOk());
    EXPECT_THAT(namesOf(inputs_), ElementsAre("x"));
}

TEST_F(DescribeNetwork, APackageWithoutATargetAnswersMetadataError) {
    PackageText text = describe(affineNetwork());
    text.engine = "WinML";
    writeManifest(directory_, text);
    EXPECT_THAT(describePackage(),
                IsStatus(MODEL_METADATA_ERROR, "The manifest has no target for Openvino"));
}

TEST_F(DescribeNetwork, APackageWithOneFileAnswersIncompleteModel) {
    PackageText text = describe(affineNetwork());
    text.components.pop_back();
    writeManifest(directory_, text);
    EXPECT_THAT(describePackage(), IsStatus(INVALID_MODEL_PATH, "Incomplete Model"));
}

}  // namespace
}  // namespace VelmoraQuavin::testing
