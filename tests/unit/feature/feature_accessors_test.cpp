// Every accessor on every class: its own pair works, all others throw.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <utility>

#include "quavin/feature.h"
#include "support/status_matcher.h"

namespace VelmoraQuavin {
namespace {

struct AccessorPair {
    const char* name;
    std::string prefix;
    std::function<void(QuavinFeature&)> change;
    std::function<void(const QuavinFeature&)> read;
};

struct FeatureClass {
    const char* name;
    const char* ownPair;
    std::function<std::shared_ptr<QuavinFeature>(const ModelFeatureDescriptor&)> make;
};

template <typename Feature>
std::shared_ptr<QuavinFeature> make(const ModelFeatureDescriptor& descriptor) {
    return std::make_shared<Feature>(descriptor);
}

const AccessorPair kPairs[] = {
    {"Bool", "Attempt to interpret a feature as bool while the feature's type is ",
     [](QuavinFeature& feature) { feature.asBool(); },
     [](const QuavinFeature& feature) { feature.asBool(); }},
    {"UInt8", "Attempt to interpret a feature as unit8 while the feature's type is ",
     [](QuavinFeature& feature) { feature.asUInt8(); },
     [](const QuavinFeature& feature) { feature.asUInt8(); }},
    {"Int64", "Attempt to interpret a feature as int64 while the feature's type is ",
     [](QuavinFeature& feature) { feature.asInt64(); },
     [](const QuavinFeature& feature) { feature.asInt64(); }},
    {"Double", "Attempt to interpret a feature as double while the feature's type is ",
     [](QuavinFeature& feature) { feature.asDouble(); },
     [](const QuavinFeature& feature) { feature.asDouble(); }},
    {"String", "Attempt to interpret a feature as string while the feature's type is ",
     [](QuavinFeature& feature) { feature.asString(); },
     [](const QuavinFeature& feature) { feature.asString(); }},
    {"Tensor", "Attempt to interpret a feature as tensor while the feature's type is ",
     [](QuavinFeature& feature) { feature.asTensor(); },
     [](const QuavinFeature& feature) { feature.asTensor(); }},
    {"VideoFrame", "Attempt to interpret a feature as video frame while the feature's type is ",
     [](QuavinFeature& feature) { feature.asVideoFrame(); },
     [](const QuavinFeature& feature) { feature.asVideoFrame(); }},
};

const FeatureClass kClasses[] = {
    {"Base", "none", make<QuavinFeature>},
    {"Bool", "Bool", make<QuavinFeatureBool>},
    {"UInt8", "UInt8", make<QuavinFeatureUInt8>},
    {"Int64", "Int64", make<QuavinFeatureInt64>},
    {"Double", "Double", make<QuavinFeatureDouble>},
    {"String", "String", make<QuavinFeatureString>},
    {"Tensor", "Tensor", make<QuavinFeatureTensor>},
};

class FeatureAccessorTest
    : public ::testing::TestWithParam<std::tuple<FeatureClass, AccessorPair>> {
protected:
    static const FeatureClass& featureClass() { return std::get<0>(GetParam()); }
    static const AccessorPair& pair() { return std::get<1>(GetParam()); }

    static void expectValueOrRefusal(QuavinFeatureType type, const char* typeName) {
        const std::shared_ptr<QuavinFeature> feature =
            featureClass().make(ModelFeatureDescriptor(type));
        if (std::string(featureClass().ownPair) == pair().name) {
            EXPECT_NO_THROW(pair().change(*feature));
            EXPECT_NO_THROW(pair().read(*feature));
            return;
        }
        const std::string message = pair().prefix + typeName;
        testing::expectThrows<InvalidTypeException>([&] { pair().change(*feature); }, INVALID_TYPE,
                                                    message);
        testing::expectThrows<InvalidTypeException>([&] { pair().read(*feature); }, INVALID_TYPE,
                                                    message);
    }
};

TEST_P(FeatureAccessorTest, WorksOnItsOwnClassAndOtherwiseNamesTheDescriptorsType) {
    expectValueOrRefusal(QuavinFeatureType::BOOL, "bool");
    expectValueOrRefusal(QuavinFeatureType::TENSOR, "tensor");
    expectValueOrRefusal(QuavinFeatureType::IMAGE, "image");
}

TEST_P(FeatureAccessorTest, CallsAnUnsetTypeUnknown) {
    expectValueOrRefusal(static_cast<QuavinFeatureType>(7), "unknown");
    expectValueOrRefusal(static_cast<QuavinFeatureType>(-1), "unknown");
}

INSTANTIATE_TEST_SUITE_P(Features, FeatureAccessorTest,
                         ::testing::Combine(::testing::ValuesIn(kClasses),
                                            ::testing::ValuesIn(kPairs)),
                         [](const auto& test) {
                             return std::string("as") + std::get<1>(test.param).name + "On" +
                                    std::get<0>(test.param).name;
                         });

}  // namespace
}  // namespace VelmoraQuavin
