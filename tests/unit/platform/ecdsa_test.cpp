// Keys and signatures from RFC 6979, appendix A.2.5 and A.2.6, for the message "sample".

#include "platform/ecdsa.h"

#include <gtest/gtest.h>

#include <string>

#include "support/hex.h"
#include "support/system.h"

namespace VelmoraQuavin::internal::platform {
namespace {

using testing::bytesFromHex;

struct Example {
    EcCurve curve;
    std::string infoStart;
    std::string x, y;
    std::string r, s;
    std::string derStart, derMiddle;

    EcPublicKey key() const { return {curve, bytesFromHex(infoStart + x + y)}; }
    EcdsaSignature signature() const {
        return {bytesFromHex(derStart + r + derMiddle + s), bytesFromHex(r + s)};
    }
    std::vector<unsigned char> digest(const std::string& message = "sample") const {
        std::vector<unsigned char> bytes(digestSize(hashFor(curve)));
        MessageDigest hash(hashFor(curve));
        hash.add(message.data(), message.size());
        EXPECT_TRUE(hash.finish(bytes.data()));
        return bytes;
    }
};

const Example kExamples[] = {
    {EcCurve::kP256, "3059301306072A8648CE3D020106082A8648CE3D03010703420004",
     "60FED4BA255A9D31C961EB74C6356D68C049B8923B61FA6CE669622E60F29FB6",
     "7903FE1008B8BC99A41AE9E95628BC64F2F1B20C2D7E9F5177A3C294D4462299",
     "EFD48B2AACB6A8FD1140DD9CD45E81D69D2C877B56AAF991C34D0EA84EAF3716",
     "F7CB1C942D657C41D436C7A1B6E29F65F3E900DBB9AFF4064DC4AB2F843ACDA8", "3046022100", "022100"},
    {EcCurve::kP384, "3076301006072A8648CE3D020106052B8104002203620004",
     "EC3A4E415B4E19A4568618029F427FA5DA9A8BC4AE92E02E06AAE5286B300C64"
     "DEF8F0EA9055866064A254515480BC13",
     "8015D9B72D7D57244EA8EF9AC0C621896708A59367F9DFB9F54CA84B3F1C9DB1"
     "288B231C3AE0D4FE7344FD2533264720",
     "94EDBB92A5ECB8AAD4736E56C691916B3F88140666CE9FA73D64C4EA95AD133C"
     "81A648152E44ACF96E36DD1E80FABE46",
     "99EF4AEB15F178CEA1FE40DB2603138F130E740A19624526203B6351D0A3A94F"
     "A329C145786E679E7B82C71A38628AC8",
     "3066023100", "023100"},
};

TEST(Ecdsa, AcceptsThePublishedSignatures) {
    for (const Example& example : kExamples) {
        EXPECT_TRUE(isUsable(example.key()));
        EXPECT_TRUE(verifyEcdsa(example.key(), example.digest().data(), example.signature()));
    }
}

TEST(Ecdsa, RefusesASignatureOfAnotherMessage) {
    for (const Example& example : kExamples) {
        EXPECT_FALSE(
            verifyEcdsa(example.key(), example.digest("Sample").data(), example.signature()));
    }
}

TEST(Ecdsa, RefusesAChangedSignature) {
    for (Example example : kExamples) {
        example.s.back() = '0';
        EXPECT_FALSE(verifyEcdsa(example.key(), example.digest().data(), example.signature()));
    }
}

TEST(Ecdsa, RefusesAKeyWhosePointIsNotOnTheCurve) {
    if (testing::runsUnderWine()) {
        GTEST_SKIP() << "wine does not check whether points are on their curves";
    }
    for (Example example : kExamples) {
        example.y.back() = example.y.back() == '0' ? '1' : '0';
        EXPECT_FALSE(isUsable(example.key()));
        EXPECT_FALSE(verifyEcdsa(example.key(), example.digest().data(), example.signature()));
    }
}

}  // namespace
}  // namespace VelmoraQuavin::internal::platform
