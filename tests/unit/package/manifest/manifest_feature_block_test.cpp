// The block under a feature type's own name: its element type and, for tensors, its shape.

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "feature/descriptor_access.h"
#include "unit/package/manifest/manifest_fixture.h"

namespace VelmoraQuavin {
namespace {

using Dimensions = std::vector<int64>;

class ManifestBlock : public testing::ManifestFixture,
                      public ::testing::WithParamInterface<const char*> {
protected:
    DataType loadDataType(const std::string& feature) {
        return loadInput(feature).tensorDescriptor().tensorType();
    }
};

TEST_P(ManifestBlock, TheElementTypeIsRead) {
    const std::string type = GetParam();
    EXPECT_EQ(loadDataType(R"({"featureType": ")" + type + R"(", ")" + type +
                           R"(": {"dataType": "float16"}})"),
              DataType::FLOAT16);
}

TEST_P(ManifestBlock, TheBlockIsReadOnlyUnderTheTypesOwnName) {
    const std::string type = GetParam();
    const std::string other = type == "tensor" ? "double" : "tensor";
    const ModelFeatureDescriptor feature =
        loadInput(R"({"featureType": ")" + type + R"(", "dataType": "int8", ")" + other +
                  R"(": {"shape": [4], "dataType": "float16"}})");
    EXPECT_EQ(feature.tensorDescriptor().tensorType(), DataType::UNDEFINED);
    EXPECT_EQ(feature.tensorDescriptor().shape().dimension(), 0u);
}

TEST_P(ManifestBlock, ABlockThatIsNotAnObjectIsIgnored) {
    const std::string type = GetParam();
    for (const std::string value :
         {"null", "true", "3", R"("float")", R"([{"dataType": "float"}])"}) {
        const std::string feature =
            R"({"featureType": ")" + type + R"(", ")" + type + R"(": )" + value + "}";
        EXPECT_EQ(loadDataType(feature), DataType::UNDEFINED) << value;
    }
}

TEST_P(ManifestBlock, OnlyATensorHasAShape) {
    const std::string type = GetParam();
    const Dimensions expected = type == "tensor" ? Dimensions{2, 3} : Dimensions{};
    EXPECT_EQ(loadInput(R"({"featureType": ")" + type + R"(", ")" + type +
                        R"(": {"shape": [2, 3], "dataType": "int8"}})")
                  .tensorDescriptor()
                  .shape()
                  .shapeVector(),
              expected);
}

INSTANTIATE_TEST_SUITE_P(, ManifestBlock,
                         ::testing::Values("bool", "uint8", "int64", "double", "string", "tensor"),
                         [](const auto& instance) { return std::string(instance.param); });

TEST_F(ManifestBlock, BlocksOfAFeatureWithoutATypeAreIgnored) {
    const ModelFeatureDescriptor feature =
        loadInput(R"({"tensor": {"shape": [4], "dataType": "float"},
                      "image": {"height": 3, "width": 4, "pixelType": "one"},
                      "unknown": {"dataType": "float"}})");
    EXPECT_EQ(feature.tensorDescriptor().tensorType(), DataType::UNDEFINED);
    EXPECT_EQ(feature.tensorDescriptor().shape().dimension(), 0u);
    EXPECT_EQ(internal::DescriptorAccess::image(feature).height, 0);
}

struct NamedDataType {
    const char* name;
    int number;
};

class ManifestDataType : public testing::ManifestFixture,
                         public ::testing::WithParamInterface<NamedDataType> {
protected:
    DataType loadDataType(const std::string& value) {
        return loadInput(R"({"featureType": "tensor", "tensor": {"shape": [1], "dataType": )" +
                         value + "}}")
            .tensorDescriptor()
            .tensorType();
    }
};

TEST_P(ManifestDataType, EachNameHasItsNumber) {
    const std::string name = GetParam().name;
    EXPECT_EQ(static_cast<int>(loadDataType('"' + name + '"')), GetParam().number);
}

INSTANTIATE_TEST_SUITE_P(, ManifestDataType,
                         ::testing::Values(NamedDataType{"bool", 1}, NamedDataType{"int8", 2},
                                           NamedDataType{"uint8", 3}, NamedDataType{"int16", 4},
                                           NamedDataType{"uint16", 5}, NamedDataType{"int32", 6},
                                           NamedDataType{"uint32", 7}, NamedDataType{"int64", 8},
                                           NamedDataType{"uint64", 9}, NamedDataType{"float16", 10},
                                           NamedDataType{"float", 11}, NamedDataType{"double", 12}),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST_F(ManifestDataType, AnUnknownNameGivesUndefined) {
    for (const char* value :
         {R"("")", R"("Float")", R"("FLOAT")", R"("float32")", R"("string")", R"("undefined")"}) {
        EXPECT_EQ(loadDataType(value), DataType::UNDEFINED) << value;
    }
}

TEST_F(ManifestDataType, AnythingButAStringGivesUndefined) {
    for (const char* value : {"11", "null", "true", R"(["float"])", "{}"}) {
        EXPECT_EQ(loadDataType(value), DataType::UNDEFINED) << value;
    }
}

class ManifestShape : public testing::ManifestFixture {
protected:
    TensorDescriptor loadTensor(const std::string& shape) {
        return loadInput(
                   R"({"name": "a", "featureType": "tensor", "tensor": {"dataType": "int8", "shape": )" +
                   shape + "}}")
            .tensorDescriptor();
    }
    // The dimensions, including variable ones.
    Dimensions loadShape(const std::string& shape) {
        return internal::DescriptorAccess::shape(loadTensor(shape)).shapeVector();
    }
};

TEST_F(ManifestShape, DimensionsAreReadInOrder) {
    EXPECT_EQ(loadShape("[1, 3, 300, 200]"), (Dimensions{1, 3, 300, 200}));
    EXPECT_EQ(loadShape("[7]"), (Dimensions{7}));
    EXPECT_EQ(loadShape("[1, 2, 3, 4, 5, 6, 7]"), (Dimensions{1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ(loadShape("[]"), Dimensions{});
    EXPECT_FALSE(loadTensor("[1, 3]").variableShape());
}

TEST_F(ManifestShape, MinusOneIsAVariableDimension) {
    EXPECT_EQ(loadShape("[-1, 3, -1]"), (Dimensions{-1, 3, -1}));
    EXPECT_TRUE(loadTensor("[-1, 3, -1]").variableShape());
}

TEST_F(ManifestShape, ZeroAndOtherNegativeDimensionsAreKept) {
    EXPECT_EQ(loadShape("[0, -2]"), (Dimensions{0, -2}));
    EXPECT_FALSE(loadTensor("[0, -2]").variableShape());
}

TEST_F(ManifestShape, DimensionsMayHave64Bits) {
    EXPECT_EQ(loadShape("[9223372036854775807, 4294967296, -9223372036854775808]"),
              (Dimensions{std::numeric_limits<int64>::max(), int64{1} << 32,
                          std::numeric_limits<int64>::min()}));
}

TEST_F(ManifestShape, ADimensionThatIsNotAnIntegerDropsTheWholeShape) {
    for (const std::string element : {"2.5", "2.0", R"("2")", "null", "true", "[2]", "{}", "1e3"}) {
        EXPECT_EQ(loadShape("[1, " + element + ", 3]"), Dimensions{}) << element;
        EXPECT_EQ(loadShape("[" + element + "]"), Dimensions{}) << element;
    }
}

TEST_F(ManifestShape, ADimensionThatIsTooLargeDropsTheWholeShape) {
    for (const std::string element : {"9223372036854775808", "18446744073709551615",
                                      "-9223372036854775809", "123456789012345678901234567890"}) {
        EXPECT_EQ(loadShape("[1, " + element + ", 3]"), Dimensions{}) << element;
    }
}

TEST_F(ManifestShape, AnythingButAnArrayGivesNoShape) {
    for (const char* value : {"null", "3", R"("1, 3")", R"({"0": 1})", "true"}) {
        EXPECT_EQ(loadShape(value), Dimensions{}) << value;
    }
}

TEST_F(ManifestShape, ADroppedShapeLeavesTheElementType) {
    EXPECT_EQ(loadTensor("[1, 2.5]").tensorType(), DataType::INT8);
    EXPECT_EQ(loadTensor("null").tensorType(), DataType::INT8);
}

}  // namespace
}  // namespace VelmoraQuavin
