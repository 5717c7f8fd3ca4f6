// The metadata object itself; the manifest tests cover what load() reads.

#include <gtest/gtest.h>

#include <utility>

#include "quavin/metadata.h"

namespace VelmoraQuavin {
namespace {

ModelMetadata::Targets targetsOf(QuavinModelType type, const char* path) {
    ModelComponent component;
    component.name = ComponentKind::File;
    component.path = path;
    ModelTarget target;
    target.components.push_back(std::move(component));
    return {{type, target}};
}

String rootOf(const ModelMetadata& metadata) {
    return metadata.getRootDir().c_str();
}

ModelMetadata filled() {
    return ModelMetadata("an id", "an sdk", "a description", "a name", -7, "an author",
                         Filepath("a\\root"), targetsOf(QuavinModelType::Openvino, "a path"),
                         "some scripts");
}

void expectFilled(const ModelMetadata& metadata) {
    EXPECT_EQ(metadata.getId(), "an id");
    EXPECT_EQ(metadata.getSdkVersion(), "an sdk");
    EXPECT_EQ(metadata.getDescription(), "a description");
    EXPECT_EQ(metadata.getName(), "a name");
    EXPECT_EQ(metadata.getVersion(), -7);
    EXPECT_EQ(metadata.getAuthor(), "an author");
    EXPECT_EQ(rootOf(metadata), "a\\root");
    ASSERT_EQ(metadata.getTargets().size(), 1u);
    EXPECT_EQ(metadata.getTargets().at(QuavinModelType::Openvino).components.at(0).path, "a path");
    EXPECT_EQ(metadata.getScripts(), "some scripts");
}

TEST(ModelMetadata, IsEmptyByDefault) {
    const ModelMetadata metadata;
    EXPECT_EQ(metadata.getId(), "");
    EXPECT_EQ(metadata.getSdkVersion(), "");
    EXPECT_EQ(metadata.getDescription(), "");
    EXPECT_EQ(metadata.getName(), "");
    EXPECT_EQ(metadata.getVersion(), 0);
    EXPECT_EQ(metadata.getAuthor(), "");
    EXPECT_EQ(rootOf(metadata), "");
    EXPECT_TRUE(metadata.getTargets().empty());
    EXPECT_EQ(metadata.getScripts(), "");
}

TEST(ModelMetadata, TheConstructorTakesAllValues) {
    expectFilled(filled());
}

TEST(ModelMetadata, CopiesAreIndependent) {
    ModelMetadata original = filled();
    const ModelMetadata copy = original;
    ModelMetadata assigned;
    assigned = original;
    original.setId("another id");
    original.setVersion(8);
    original.setRootDir(Filepath("elsewhere"));
    original.getTargets().at(QuavinModelType::Openvino).components.at(0).path = "another path";
    original.getTargets()[QuavinModelType::MockML];
    expectFilled(copy);
    expectFilled(assigned);
}

TEST(ModelMetadata, CopiesKeepTheirKeys) {
    const unsigned char key[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    const unsigned char other[16] = {};
    ModelMetadata original = filled();
    ModelComponent& component =
        original.getTargets().at(QuavinModelType::Openvino).components.at(0);
    component.setCryptoKey(key);
    const ModelMetadata copy = original;
    component.setCryptoKey(other);
    const unsigned char* kept =
        copy.getTargets().at(QuavinModelType::Openvino).components.at(0).encryption.getKey();
    EXPECT_EQ(String(kept, 16), String(key, 16));
}

TEST(ModelMetadata, EachSetterSetsItsField) {
    ModelMetadata metadata;
    metadata.setId("an id");
    metadata.setSdkVersion("an sdk");
    metadata.setDescription("a description");
    metadata.setName("a name");
    metadata.setVersion(-7);
    metadata.setAuthor("an author");
    metadata.setRootDir(Filepath("a\\root"));
    metadata.setTargets(targetsOf(QuavinModelType::Openvino, "a path"));
    metadata.setScripts("some scripts");
    expectFilled(metadata);
}

TEST(ModelMetadata, GettersReturnCopies) {
    ModelMetadata metadata = filled();
    metadata.getId().append("more");
    metadata.getScripts().append("more");
    metadata.getRootDir().append(Filepath("more"));
    expectFilled(metadata);
}

TEST(ModelMetadata, SetTargetsReplacesAllTargets) {
    ModelMetadata metadata = filled();
    metadata.setTargets(targetsOf(QuavinModelType::WinML, "another path"));
    ASSERT_EQ(metadata.getTargets().size(), 1u);
    EXPECT_EQ(metadata.getTargets().at(QuavinModelType::WinML).components.at(0).path,
              "another path");
}

TEST(ModelMetadata, SetTargetsCopiesTheMap) {
    ModelMetadata::Targets targets = targetsOf(QuavinModelType::Openvino, "a path");
    ModelMetadata metadata = filled();
    metadata.setTargets(targets);
    targets.at(QuavinModelType::Openvino).components.clear();
    targets.clear();
    expectFilled(metadata);
}

TEST(ModelMetadata, TargetsCanBeChangedInPlace) {
    ModelMetadata metadata;
    metadata.getTargets() = targetsOf(QuavinModelType::WinML, "a path");
    EXPECT_EQ(metadata.getTargets().count(QuavinModelType::WinML), 1u);
}

TEST(ModelTarget, IsEmptyByDefault) {
    const ModelTarget target;
    EXPECT_TRUE(target.components.empty());
    EXPECT_TRUE(target.inputNames.empty());
    EXPECT_TRUE(target.outputNames.empty());
    EXPECT_TRUE(target.inputs.empty());
    EXPECT_TRUE(target.outputs.empty());
}

}  // namespace
}  // namespace VelmoraQuavin
