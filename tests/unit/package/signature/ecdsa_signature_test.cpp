// The orders of the curves are those of SEC 2, sections 2.4.2 and 2.5.1.

#include "package/signature/ecdsa_signature.h"

#include <gtest/gtest.h>

#include <string>

#include "support/hex.h"

namespace VelmoraQuavin::testing {
namespace {

using internal::readEcdsaSignature;
using internal::platform::EcCurve;

struct Curve {
    EcCurve curve;
    std::string orderLessOne;
    std::string order;
};

const Curve kCurves[] = {
    {EcCurve::kP256, "FFFFFFFF00000000FFFFFFFFFFFFFFFFBCE6FAADA7179E84F3B9CAC2FC632550",
     "FFFFFFFF00000000FFFFFFFFFFFFFFFFBCE6FAADA7179E84F3B9CAC2FC632551"},
    {EcCurve::kP384,
     "FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF"
     "C7634D81F4372DDF581A0DB248B0A77AECEC196ACCC52972",
     "FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF"
     "C7634D81F4372DDF581A0DB248B0A77AECEC196ACCC52973"},
};
const std::string kOne("\x02\x01\x01", 3);

std::string textOf(const std::vector<unsigned char>& bytes) {
    return {bytes.begin(), bytes.end()};
}

// An integer whose highest bit is set.
std::string integer(const std::string& digits) {
    const std::string bytes = textOf(bytesFromHex(digits));
    return std::string{'\x02', static_cast<char>(bytes.size() + 1), '\0'} + bytes;
}

std::string signature(const std::string& r, const std::string& s) {
    return std::string{'\x30', static_cast<char>(r.size() + s.size())} + r + s;
}

TEST(EcdsaSignature, TakesNumbersFromOneToTheOrderLessOne) {
    for (const Curve& curve : kCurves) {
        const std::string largest = integer(curve.orderLessOne);
        const auto read = readEcdsaSignature(signature(kOne, largest), curve.curve);
        ASSERT_TRUE(read.has_value());
        const std::string zeros(curve.order.size() - 2, '0');
        EXPECT_EQ(read->halves, bytesFromHex(zeros + "01" + curve.orderLessOne));
        EXPECT_EQ(textOf(read->der), signature(kOne, largest));
        EXPECT_TRUE(readEcdsaSignature(signature(largest, kOne), curve.curve).has_value());
    }
}

TEST(EcdsaSignature, RefusesTheOrderItselfAndZero) {
    const std::string zero("\x02\x01\0", 3);
    for (const Curve& curve : kCurves) {
        for (const std::string& wrong : {integer(curve.order), zero}) {
            EXPECT_FALSE(readEcdsaSignature(signature(kOne, wrong), curve.curve).has_value());
            EXPECT_FALSE(readEcdsaSignature(signature(wrong, kOne), curve.curve).has_value());
        }
    }
}

}  // namespace
}  // namespace VelmoraQuavin::testing
