#pragma once

#include "integration/model_test.h"

namespace VelmoraQuavin::testing {

inline constexpr const char* kNotInitialized =
    "Trying to use quavin client before the sdk was initialized!";
inline constexpr const char* kNoTarget = "None of the target applicable for the platform found";
/// The refusal of a target that was chosen but has no input.
inline constexpr const char* kNoInput = "There must be at least one defined input name";

inline std::u16string utf16(const TempDirectory& directory, const std::u16string& rest = u"") {
    return directory.path().u16string() + rest;
}

inline Device deviceOfType(QuavinModelType type) {
    Device device;
    device.engineType = type;
    return device;
}

/// A package on disk, and another model in the host's pointer.
class GetModel : public ModelTest {
protected:
    GetModel() {
        writePackage(directory_, sumNetwork());
        other_ = loadAnother();
        model_ = other_;
    }

    std::size_t registeredModels() const {
        return client_.queryRuntimeStatus().getLoadedModels().size();
    }
    /// Makes a package for which getModel returns 4, "Incomplete Model".
    void takeAComponentAway() {
        PackageText text = describe(sumNetwork());
        text.components.pop_back();
        writeManifest(directory_, text);
    }
    /// Makes a package for which getModel returns 12 and `kNoInput`.
    void takeTheInputsAway() {
        PackageText text = describe(sumNetwork());
        text.inputs.clear();
        writeManifest(directory_, text);
    }
    /// Makes a package whose loading throws, for which getModel returns 3.
    void breakTheTopology() { directory_.write("net.xml", "no network at all"); }
    /// A package for another engine.
    void writePackageForAnotherEngine() {
        PackageText text = describe(sumNetwork());
        text.engine = "CoreML";
        writeManifest(directory_, text);
    }

    /// Another model, in the host's pointer before the call.
    std::shared_ptr<QuavinModel> other_;

private:
    std::shared_ptr<QuavinModel> loadAnother() {
        EXPECT_THAT(load(), IsOk());
        return model_;
    }
};

}  // namespace VelmoraQuavin::testing
