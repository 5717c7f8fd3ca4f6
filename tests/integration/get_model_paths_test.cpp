// Paths in the forms that hosts pass.

#include "integration/get_model_test.h"

namespace VelmoraQuavin::testing {
namespace {

TEST_F(GetModel, ATrailingSeparatorIsDoubledAndStillLoads) {
    EXPECT_THAT(client_.getModel(directory_.text() + "\\", model_, 0, QuavinModelType::Openvino),
                IsOk());
}

TEST_F(GetModel, ATrailingSeparatorIsDoubledInTheTextOfAFailure) {
    const std::string path = directory_.entry("nowhere\\");
    const auto expected =
        IsStatus(MODEL_METADATA_ERROR,
                 "Failed to open metadata file at " + directory_.entry("nowhere\\\\manifest.json"));
    EXPECT_THAT(client_.getModel(path, model_, 0, QuavinModelType::Openvino), expected);
    EXPECT_THAT(client_.getModel(path, model_, Device(), 0), expected);
}

TEST_F(GetModel, Utf16PathsMayContainAnyCharacter) {
    // An umlaut, two ideographs, and a character of two UTF-16 units.
    const std::string folder =
        "M\xC3\xBC"
        "ller \xE6\xA8\xA1\xE5\x9E\x8B \xF0\x9F\x98\x80";
    writePackage(directory_, sumNetwork(), folder);
    const std::u16string path = utf16(directory_, u"\\M\u00FCller \u6A21\u578B \U0001F600");
    EXPECT_THAT(client_.getModel(path, model_, 0, QuavinModelType::Openvino), IsOk());
    EXPECT_EQ(model_->getMetadata()->getRootDir().c_str(), String(directory_.entry(folder)));
    EXPECT_THAT(client_.getModel(path, model_, Device(), 0), IsOk());
}

TEST_F(GetModel, AUtf16PathIsInUtf8InTheTextOfAFailure) {
    EXPECT_THAT(
        client_.getModel(utf16(directory_, u"/\u00E9"), model_, 0, QuavinModelType::Openvino),
        IsStatus(MODEL_METADATA_ERROR, "Failed to open metadata file at " + directory_.text() +
                                           "/\xC3\xA9\\manifest.json"));
}

TEST_F(GetModel, AnInvalidUtf16PathThrowsBadConversionAndLeavesTheModelInPlace) {
    for (const std::u16string& path :
         {std::u16string(u"a") + char16_t{0xD800},        // a high unit at the end
          std::u16string(1, char16_t{0xD800}) + u"a",     // and before something else
          std::u16string(1, char16_t{0xDC00}) + u"a"}) {  // a low unit alone
        const auto expectThrow = [&](auto&& call) {
            try {
                call();
                ADD_FAILURE() << "nothing was thrown";
            } catch (const std::range_error& error) {
                EXPECT_STREQ(error.what(), "bad conversion");
            }
        };
        expectThrow([&] { client_.getModel(path, model_, 0, QuavinModelType::Openvino); });
        expectThrow([&] { client_.getModel(path, model_, Device(), 0); });
    }
    EXPECT_EQ(model_, other_);
}

TEST_F(GetModel, AnInvalidUtf8PathAnswersBadConversionAsAStatus) {
    EXPECT_THAT(client_.getModel("\xFF", model_, 0, QuavinModelType::Openvino),
                IsStatus(FAILURE, "bad conversion"));
    EXPECT_EQ(model_, nullptr);
}

}  // namespace
}  // namespace VelmoraQuavin::testing
