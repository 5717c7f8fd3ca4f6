// Keys made and, where openssl has its own idea of them, changed by tests/data/signature.

#include "package/signature/public_key.h"

#include <gmock/gmock.h>

#include "support/crypto.h"
#include "support/hex.h"
#include "support/system.h"
#include "unit/package/signature/signature_fixture.h"

namespace VelmoraQuavin::testing {
namespace {

using internal::readPublicKey;
using internal::platform::EcCurve;
using ::testing::HasSubstr;
using ::testing::Not;

// Goes over those keys of the table that are refused for points beside their curves, or over the
// others.
void expectVerdicts(bool refusedForTheirPoint, std::size_t count) {
    std::size_t seen = 0;
    for (const auto& row : readTable("keys.tsv", 2)) {
        const bool hasAnotherPoint = row.at(1).find("may not be on the curve") != std::string::npos;
        if (hasAnotherPoint != refusedForTheirPoint) {
            continue;
        }
        ++seen;
        std::string problem;
        const auto key = readPublicKey(readPem(row.at(0)), problem);
        EXPECT_EQ(problem, row.at(1)) << row.at(0);
        EXPECT_EQ(key.has_value(), row.at(1).empty()) << row.at(0);
    }
    EXPECT_GE(seen, count);
}

TEST(PublicKey, EachKeyOfTheTableIsAcceptedOrRefusedWithItsReason) {
    expectVerdicts(false, 30);
}

TEST(PublicKey, EachPointOfTheTableThatIsNotOnTheCurveIsRefused) {
    if (runsUnderWine()) {
        GTEST_SKIP() << "wine does not check whether points are on their curves";
    }
    expectVerdicts(true, 6);
}

TEST(PublicKey, KnowsItsCurve) {
    EXPECT_EQ(readKey("p256").key.curve, EcCurve::kP256);
    EXPECT_EQ(readKey("p384").key.curve, EcCurve::kP384);
}

TEST(PublicKey, ItsHintIsTheDigestOfThePemThatOpensslWrites) {
    for (const char* const name : {"p256", "p384"}) {
        EXPECT_EQ(readKey(name).hint, hexOf(sha256(readPem(name))));
    }
}

TEST(PublicKey, ItsHintDoesNotDependOnLineEndsOrLengths) {
    for (const char* const name : {"line_ends_of_two_bytes", "one_line", "short_lines"}) {
        EXPECT_EQ(readKey(name).hint, readKey("p256").hint) << name;
    }
}

TEST(PublicKey, NoReasonQuotesAPrivateKey) {
    for (const char* const name : {"private_key", "old_private_key"}) {
        std::string problem;
        EXPECT_FALSE(readPublicKey(readPem(name), problem).has_value());
        EXPECT_THAT(problem, Not(HasSubstr(readPem(name).substr(40, 8))));
    }
}

}  // namespace
}  // namespace VelmoraQuavin::testing
