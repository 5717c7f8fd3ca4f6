// The members that identify a model: its texts and its version.

#include <gtest/gtest.h>

#include <string>

#include "unit/package/manifest/manifest_fixture.h"

namespace VelmoraQuavin {
namespace {

using testing::IsOk;

struct TextMember {
    const char* key;
    String (ModelMetadata::*get)() const;
    void (ModelMetadata::*set)(const String&);
};

const TextMember kTextMembers[] = {
    {"id", &ModelMetadata::getId, &ModelMetadata::setId},
    {"name", &ModelMetadata::getName, &ModelMetadata::setName},
    {"author", &ModelMetadata::getAuthor, &ModelMetadata::setAuthor},
    {"description", &ModelMetadata::getDescription, &ModelMetadata::setDescription},
    {"sdkVersion", &ModelMetadata::getSdkVersion, &ModelMetadata::setSdkVersion},
};

class ManifestText : public testing::ManifestFixture,
                     public ::testing::WithParamInterface<TextMember> {
protected:
    // Loads a manifest in which the member has this value and returns what was read.
    String loadText(const std::string& value) {
        EXPECT_THAT(
            load(std::string("{\"") + GetParam().key + "\": " + value + ", \"targets\": {}}"),
            IsOk());
        return (metadata_.*GetParam().get)();
    }
};

TEST_P(ManifestText, TheTextIsRead) {
    EXPECT_EQ(loadText(R"("a text")"), "a text");
    for (const TextMember& other : kTextMembers) {
        if (std::string(other.key) != GetParam().key) {
            EXPECT_EQ((metadata_.*other.get)(), "") << other.key;
        }
    }
}

TEST_P(ManifestText, AnEmptyTextIsRead) {
    (metadata_.*GetParam().set)("earlier");
    EXPECT_EQ(loadText(R"("")"), "");
}

TEST_P(ManifestText, TheTextEndsAtTheFirstZeroCharacter) {
    EXPECT_EQ(loadText(R"("seen\u0000unseen")"), "seen");
}

TEST_P(ManifestText, EscapesAreDecoded) {
    EXPECT_EQ(loadText(R"("a\\b\"\/\n\t\u017c\ud83d\ude00ż")"), "a\\b\"/\n\tż😀ż");
}

TEST_P(ManifestText, AnAbsentTextKeepsItsValue) {
    (metadata_.*GetParam().set)("earlier");
    EXPECT_THAT(load(R"({"targets": {}})"), IsOk());
    EXPECT_EQ((metadata_.*GetParam().get)(), "earlier");
}

TEST_P(ManifestText, AValueThatIsNotAStringIsIgnored) {
    (metadata_.*GetParam().set)("earlier");
    for (const char* value : {"null", "true", "3", "1.5", R"(["a text"])", R"({"a": "text"})"}) {
        EXPECT_EQ(loadText(value), "earlier") << value;
    }
}

INSTANTIATE_TEST_SUITE_P(, ManifestText, ::testing::ValuesIn(kTextMembers),
                         [](const auto& instance) { return std::string(instance.param.key); });

class ManifestVersion : public testing::ManifestFixture {
protected:
    // The version after loading a manifest with this one into an object whose version is 17.
    int loadVersion(const std::string& value) {
        metadata_.setVersion(17);
        EXPECT_THAT(load(R"({"version": )" + value + R"(, "targets": {}})"), IsOk());
        return metadata_.getVersion();
    }
};

TEST_F(ManifestVersion, AWholeNumberOf32BitsIsRead) {
    EXPECT_EQ(loadVersion("3"), 3);
    EXPECT_EQ(loadVersion("0"), 0);
    EXPECT_EQ(loadVersion("-5"), -5);
    EXPECT_EQ(loadVersion("2147483647"), 2147483647);
    EXPECT_EQ(loadVersion("-2147483648"), -2147483647 - 1);
}

TEST_F(ManifestVersion, ANumberThatIsTooLargeIsIgnored) {
    EXPECT_EQ(loadVersion("2147483648"), 17);
    EXPECT_EQ(loadVersion("-2147483649"), 17);
    EXPECT_EQ(loadVersion("4294967299"), 17);
    EXPECT_EQ(loadVersion("18446744073709551619"), 17);
    EXPECT_EQ(loadVersion("1e30"), 17);
}

TEST_F(ManifestVersion, AFractionIsIgnored) {
    EXPECT_EQ(loadVersion("3.5"), 17);
    EXPECT_EQ(loadVersion("-0.25"), 17);
}

TEST_F(ManifestVersion, AStringIsIgnored) {
    EXPECT_EQ(loadVersion(R"("3")"), 17);
}

TEST_F(ManifestVersion, AnythingButANumberIsIgnored) {
    for (const char* value : {"null", "true", "[3]", R"({"version": 3})"}) {
        EXPECT_EQ(loadVersion(value), 17) << value;
    }
}

TEST_F(ManifestVersion, AnAbsentVersionKeepsItsValue) {
    metadata_.setVersion(17);
    EXPECT_THAT(load(R"({"targets": {}})"), IsOk());
    EXPECT_EQ(metadata_.getVersion(), 17);
}

using ManifestKeys = testing::ManifestFixture;

TEST_F(ManifestKeys, KeysMustMatchExactly) {
    EXPECT_THAT(load(R"({"ID": "a", "Name": "b", "id ": "c", "id\u0000": "d", "Version": 3,
                         "sdkversion": "e", "targets": {}})"),
                IsOk());
    EXPECT_EQ(metadata_.getId(), "");
    EXPECT_EQ(metadata_.getName(), "");
    EXPECT_EQ(metadata_.getSdkVersion(), "");
    EXPECT_EQ(metadata_.getVersion(), 0);
}

TEST_F(ManifestKeys, TheFirstOfDuplicateKeysCounts) {
    EXPECT_THAT(load(R"({"id": "first", "id": "second", "version": 1, "version": 2,
                         "targets": {"WinML": {}}, "targets": {"MockML": {}}})"),
                IsOk());
    EXPECT_EQ(metadata_.getId(), "first");
    EXPECT_EQ(metadata_.getVersion(), 1);
    EXPECT_EQ(metadata_.getTargets().count(QuavinModelType::WinML), 1u);
    EXPECT_EQ(metadata_.getTargets().count(QuavinModelType::MockML), 0u);
}

TEST_F(ManifestKeys, ScriptsAndRootDirectoryHaveNoKey) {
    metadata_.setScripts("earlier");
    EXPECT_THAT(load(R"({"scripts": "a text", "rootDir": "a text", "targets": {}})"), IsOk());
    EXPECT_EQ(metadata_.getScripts(), "earlier");
    EXPECT_EQ(String(metadata_.getRootDir().c_str()), directory_.text());
}

}  // namespace
}  // namespace VelmoraQuavin
