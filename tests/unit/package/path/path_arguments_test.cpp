// What may be passed as a path, and which overload accepts it. Most of this is verified by
// compiling.

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "quavin/client.h"
#include "quavin/files.h"
#include "quavin/model.h"
#include "quavin/network.h"
#include "unit/package/path/path_text.h"

namespace VelmoraQuavin {
namespace {

// A host's own path class with several conversions.
class HostPath {
public:
    operator Filepath() const { return Filepath(String("as a path")); }
    operator String() const { return "as a text"; }
    operator std::string() const { return "as a standard text"; }
};

using testing::textOf;

TEST(PathArguments, NarrowTextsAreTakenUnchanged) {
    const std::string text = "a\\text";
    const std::string_view view = std::string_view(text).substr(0, 1);
    char array[] = "an array";
    char* const pointer = array;
    const auto* const bytes = reinterpret_cast<const unsigned char*>("bytes");
    const char* const missing = nullptr;
    EXPECT_EQ(textOf("a/literal"), "a/literal");
    EXPECT_EQ(textOf(text), "a\\text");
    EXPECT_EQ(textOf(view), "a");
    EXPECT_EQ(textOf(array), "an array");
    EXPECT_EQ(textOf(pointer), "an array");
    EXPECT_EQ(textOf(bytes), "bytes");
    EXPECT_EQ(textOf(String("a String")), "a String");
    EXPECT_EQ(textOf(missing), "");
}

TEST(PathArguments, TextsCanBeAppendedAndAssigned) {
    Filepath path = "models";
    path.append("digits").append(std::string("manifest.json"));
    EXPECT_EQ(textOf(path), "models\\digits\\manifest.json");
    path = "other";
    EXPECT_EQ(textOf(path), "other");
}

TEST(PathArguments, AHostsOwnClassKeepsItsConversions) {
    const HostPath host;
    EXPECT_EQ(textOf(host), "as a path");
    EXPECT_EQ(textOf(Filepath(static_cast<String>(host))), "as a text");
}

TEST(PathArguments, NullAndNumbersAreNotPaths) {
    EXPECT_FALSE((std::is_convertible_v<std::nullptr_t, Filepath>));
    EXPECT_FALSE((std::is_constructible_v<Filepath, std::nullptr_t>));
    EXPECT_FALSE((std::is_convertible_v<int, Filepath>));
    EXPECT_FALSE((std::is_convertible_v<const char16_t*, Filepath>));
    EXPECT_FALSE((std::is_convertible_v<std::shared_ptr<ModelMetadata>, Filepath>));
    EXPECT_TRUE((std::is_convertible_v<const char(&)[2], Filepath>));
    EXPECT_TRUE((std::is_convertible_v<std::string, Filepath>));
}

TEST(PathArguments, ALiteralNamesADirectory) {
    EXPECT_NO_THROW(FileUtils::createDir("."));  // exists already
    EXPECT_TRUE(FileUtils::pathExists("."));
    EXPECT_THROW(FileUtils::createDir("missing-parent\\x"), FileException);
}

// Calls that hosts make. That they compile shows that none is ambiguous; they are never executed.
[[maybe_unused]] void hostsCalls(QuavinClient& client, QuavinModel& model, ModelMetadata& metadata,
                                 std::shared_ptr<QuavinModel>& loaded, const std::string& text,
                                 const String& string, Filepath path,
                                 std::vector<ModelFeatureDescriptor>& features) {
    const HostPath host;
    const Device device{};
    constexpr QuavinModelType type = QuavinModelType::Openvino;
    unsigned char* const archive = nullptr;

    model.load(nullptr);
    model.load({"manifest.json"});
    model.load({string});
    model.load(string);
    model.load("manifest.json");
    model.load(text);
    model.load(Filepath("manifest.json"));
    model.load(std::make_shared<ModelMetadata>());
    metadata.load({});
    metadata.load("manifest.json");
    metadata.load({"manifest.json"});
    metadata.setRootDir({});
    metadata.setRootDir("digits");

    client.getModel("digits", loaded, 0, type);
    client.getModel("digits", loaded, device, 0);
    client.getModel(u"digits", loaded, 0, type);
    client.getModel(text, loaded, 0, type);
    client.getModel(nullptr, loaded, type);
    client.getModel({}, loaded, type);
    client.getModel(nullptr, loaded, device);
    client.getModel({}, loaded, device);
    client.getModel({}, loaded, {});

    describeNetwork({}, {}, features, features);
    describeNetwork({"net.xml"}, {"net.bin"}, features, features);
    describeNetwork("net.xml", "net.bin", features, features);
    describeNetwork("net.xml", {}, features, features);
    describeNetwork({}, features, features);
    describeNetwork(metadata, features, features);

    FileUtils::createDir({});
    FileUtils::createDir({"models"});
    FileUtils::createDir({{"models", 5}});
    FileUtils::createDir({text});
    FileUtils::createDir(string);
    FileUtils::createDir(string + "-new");
    FileUtils::createDir(host);
    FileUtils::createDir(text);
    FileUtils::createDir(text + "-new");
    FileUtils::createDir(std::string_view(text));
    FileUtils::createDir(path.c_str());
    FileUtils::writeStringToFile({}, {});
    FileUtils::writeStringToFile("text", "file");
    FileUtils::writeBinaryDataToFile(nullptr, 0, {});
    FileUtils::extractTarball(nullptr, path);
    FileUtils::extractTarball(archive, path);
    FileUtils::extractTarball(nullptr, 0, path);

    path = {};
    path = {"models"};
    path = string;
    path.append({}).append({"models"}).append(path);
    static_cast<void>(Filepath{{}});
    static_cast<void>(Filepath{"models"});
    static_cast<void>(Filepath{{"models", 5}});
    static_cast<void>(Filepath({"models", 5}));
    static_cast<void>(Filepath(text));
    static_cast<void>(Filepath(std::string_view(text)));
    static_cast<void>(Filepath(path.c_str()));
}

}  // namespace
}  // namespace VelmoraQuavin
