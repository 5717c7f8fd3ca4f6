// Networks whose numbers half precision and bfloat16 cannot represent, compared with NumPy's
// results in double precision (tests/data/numbers). On processors with instructions for such types
// the runtime would use them by default.

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <ostream>
#include <string>
#include <vector>

#include "integration/model_test.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::ElementsAre;

std::string packageOf(const std::string& network) {
    return std::string(QUAVIN_TEST_DATA) + "/numbers/" + network;
}

template <typename Value>
std::vector<Value> readValues(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::vector<Value> values;
    for (Value value; file.read(reinterpret_cast<char*>(&value), sizeof value);) {
        values.push_back(value);
    }
    return values;
}

double largestRelativeError(const std::vector<float>& given, const std::vector<double>& expected) {
    double largest = 0;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        largest = std::max(largest, std::abs(given.at(i) - expected[i]) / std::abs(expected[i]));
    }
    return largest;
}

class Numbers : public ModelTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(Numbers, PredictionsMatchNumPy) {
    const std::string package = packageOf(GetParam());
    const auto expected = readValues<double>(package + "/y.f64");
    ASSERT_FALSE(expected.empty());
    ASSERT_THAT(client_.getModel(package, model_, 0, QuavinModelType::Openvino), IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    fill(inputs_.at(0), readValues<float>(package + "/x.f32"));
    ASSERT_THAT(predict(), IsOk());
    const auto given = valuesOf<float>(outputs_.at(0));
    ASSERT_EQ(given.size(), expected.size());
    EXPECT_LT(largestRelativeError(given, expected), 1e-5);
}

INSTANTIATE_TEST_SUITE_P(Networks, Numbers,
                         ::testing::Values("just_above_one", "cancelling_sums", "convolution",
                                           "classifier"),
                         [](const auto& network) { return std::string(network.param); });

using IntegerNumbers = ModelTest;

// Beyond 2^24 single precision has gaps, and the runtime computes integers with it on arm64.
TEST_F(IntegerNumbers, IntegersAreExactUpToTwoToThe24) {
    ASSERT_THAT(loadNetwork(integerNetwork()), IsOk());
    ASSERT_THAT(allocateInputs(), IsOk());
    fill<std::int32_t>(inputs_.at(0), {5592405, -5592405, 5592404, 1398101});
    ASSERT_THAT(predict(), IsOk());
    EXPECT_THAT(valuesOf<std::int32_t>(outputs_.at(0)),
                ElementsAre(16777215, -16777215, 16777212, 4194303));
}

}  // namespace
}  // namespace VelmoraQuavin::testing
