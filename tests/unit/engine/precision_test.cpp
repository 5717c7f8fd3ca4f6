#include "engine/openvino/precision.h"

#include <gtest/gtest.h>

#include "support/status_matcher.h"

namespace VelmoraQuavin::testing {
namespace {

using InferenceEngine::Precision;
using internal::toDataType;
using internal::toPrecision;

TEST(Precision, SupportedElementTypesHaveTheirPrecision) {
    EXPECT_EQ(toPrecision(DataType::FLOAT), Precision::FP32);
    EXPECT_EQ(toPrecision(DataType::INT8), Precision::I8);
    EXPECT_EQ(toPrecision(DataType::INT16), Precision::I16);
    EXPECT_EQ(toPrecision(DataType::INT32), Precision::I32);
}

TEST(Precision, OtherElementTypesAreUnspecifiedWithoutAnError) {
    for (const DataType type : {DataType::UINT8, DataType::UINT16, DataType::UINT32,
                                DataType::INT64, DataType::UINT64, DataType::FLOAT16}) {
        EXPECT_EQ(toPrecision(type), Precision::UNSPECIFIED) << static_cast<int>(type);
    }
}

TEST(Precision, NumbersThatAreNotElementTypesAreUnspecifiedWithoutAnError) {
    for (const int number : {0, -1, -1000, 13, 255, 1000000}) {
        EXPECT_EQ(toPrecision(static_cast<DataType>(number)), Precision::UNSPECIFIED) << number;
    }
}

TEST(Precision, BoolThrowsWithItsText) {
    expectThrows<InvalidTensorDataTypeException>([] { toPrecision(DataType::BOOL); },
                                                 INVALID_TENSOR_DATA_TYPE,
                                                 "Bool type not supported in openvino engine");
}

TEST(Precision, DoubleThrowsWithItsText) {
    expectThrows<InvalidTensorDataTypeException>([] { toPrecision(DataType::DOUBLE); },
                                                 INVALID_TENSOR_DATA_TYPE,
                                                 "Double not supported in openvino engine");
}

TEST(DataTypeOf, SupportedPrecisionsHaveTheirDataType) {
    EXPECT_EQ(toDataType(Precision::FP32), DataType::FLOAT);
    EXPECT_EQ(toDataType(Precision::I16), DataType::INT16);
    EXPECT_EQ(toDataType(Precision::I8), DataType::INT8);
    EXPECT_EQ(toDataType(Precision::I32), DataType::INT32);
}

TEST(DataTypeOf, EveryOtherPrecisionIsUndefined) {
    for (const auto precision :
         {Precision::UNSPECIFIED, Precision::MIXED, Precision::FP16, Precision::Q78, Precision::U8,
          Precision::BOOL, Precision::U16, Precision::BIN, Precision::I64, Precision::CUSTOM}) {
        EXPECT_EQ(toDataType(precision), DataType::UNDEFINED) << static_cast<int>(precision);
    }
}

}  // namespace
}  // namespace VelmoraQuavin::testing
