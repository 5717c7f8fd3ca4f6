#include "package/manifest/manifest_document.h"

#include <gtest/gtest.h>

#include <string>

namespace VelmoraQuavin::internal {
namespace {

ManifestFault faultOf(const std::string& text) {
    JsonDocument document;
    return parseManifest(text, document).fault;
}

// An object with a list of `count` numbers, which makes `count` + 2 values.
std::string withNumbers(std::size_t count) {
    std::string text = R"({"list": [1)";
    for (std::size_t i = 1; i < count; ++i) {
        text += ",1";
    }
    return text + "]}";
}

constexpr ManifestFault kTooMany = ManifestFault::kTooManyValues;

TEST(ManifestDocument, OnlyAnObjectIsAccepted) {
    EXPECT_EQ(faultOf("{}"), ManifestFault::kNone);
    EXPECT_EQ(faultOf("[]"), ManifestFault::kNoObject);
    EXPECT_EQ(faultOf("{"), ManifestFault::kNoJson);
    EXPECT_EQ(faultOf(" "), ManifestFault::kEmpty);
}

TEST(ManifestDocument, SizeIsLimitedToOneMebibyte) {
    constexpr std::size_t most = std::size_t{1} << 20;
    EXPECT_EQ(faultOf("{}" + std::string(most - 2, ' ')), ManifestFault::kNone);
    EXPECT_EQ(faultOf("{}" + std::string(most - 1, ' ')), ManifestFault::kTooLarge);
}

TEST(ManifestDocument, ValuesAreLimitedTo65536) {
    EXPECT_EQ(faultOf(withNumbers(65534)), ManifestFault::kNone);
    EXPECT_EQ(faultOf(withNumbers(65535)), kTooMany);
}

TEST(ManifestDocument, ObjectsAndListsCountTowardsTheLimit) {
    std::string lists = R"({"list": [[])";
    for (int i = 1; i < 32767; ++i) {
        lists += ",[{}]";  // the comma before the list counts too
    }
    EXPECT_EQ(faultOf(lists + "]}"), kTooMany);
    EXPECT_EQ(faultOf(R"({"deep": )" + std::string(65536, '[')), kTooMany);
}

TEST(ManifestDocument, TextInsideStringsDoesNotCount) {
    const std::string brackets(100'000, '[');
    EXPECT_EQ(faultOf(R"({"a": ")" + brackets + R"("})"), ManifestFault::kNone);
    EXPECT_EQ(faultOf(R"({"a": "\"{,)" + brackets + R"(\\"})"), ManifestFault::kNone);
    EXPECT_EQ(faultOf(R"({"a": "\\", "b": )" + brackets), kTooMany);
}

}  // namespace
}  // namespace VelmoraQuavin::internal
