// What the runtime reports for compiled networks whose host chose nothing.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "compile.hpp"
#include "failure.hpp"
#include "network_texts.hpp"
#include "runtime_call.hpp"
#include "runtime_core.hpp"

namespace InferenceEngine::runtime {
namespace {

using testing::StrEq;

constexpr const char* kPrecisionHint = "INFERENCE_PRECISION_HINT";
constexpr const char* kPinning = "ENABLE_CPU_PINNING";

class DeviceDefaultsTest : public testing::Test {
protected:
    DeviceDefaultsTest() : core_(newCore()), model_(read(*core_)) {}

    /** Not the shared core, which other tests change. */
    static Handle<ov_core_t> newCore() {
        ov_core_t* made = nullptr;
        check([&] { return ov_core_create(&made); });
        return Handle<ov_core_t>(made);
    }

    static Handle<ov_model_t> read(const ov_core_t& core) {
        const std::string text = doublingNetwork();
        ov_model_t* read = nullptr;
        check([&] {
            return ov_core_read_model_from_memory_buffer(&core, text.data(), text.size(), nullptr,
                                                         &read);
        });
        return Handle<ov_model_t>(read);
    }

    static std::string valueOf(const ov_core_t& core, const char* key) {
        char* value = nullptr;
        check([&] { return ov_core_get_property(&core, "CPU", key, &value); });
        return takeText(value);
    }

    static std::string valueOf(const Handle<ov_compiled_model_t>& compiled, const char* key) {
        char* value = nullptr;
        check([&] { return ov_compiled_model_get_property(compiled.get(), key, &value); });
        return takeText(value);
    }

    const Handle<ov_core_t> core_;
    const Handle<ov_model_t> model_;
};

TEST_F(DeviceDefaultsTest, MakeACompiledNetworkComputeInSinglePrecision) {
    useOwnDefaults(*core_, "CPU");
    EXPECT_THAT(valueOf(compile(*core_, *model_, "CPU"), kPrecisionHint), StrEq("f32"));
}

// Processors with instructions for bfloat16 use it by default; others ignore such a request and
// keep the precision they had.
TEST_F(DeviceDefaultsTest, ReplaceAnotherPrecisionOfTheDevice) {
    check([&] { return ov_core_set_property(core_.get(), "CPU", kPrecisionHint, "bf16"); });
    useOwnDefaults(*core_, "CPU");
    EXPECT_THAT(valueOf(*core_, kPrecisionHint), StrEq("f32"));
    EXPECT_THAT(valueOf(compile(*core_, *model_, "CPU"), kPrecisionHint), StrEq("f32"));
}

// A processor may lack the requested precision, as the bare runtime shows; the one that was set
// before stays then.
TEST_F(DeviceDefaultsTest, YieldToThePrecisionThatTheCallerSets) {
    for (const char* const requested : {"bf16", "f16", "f32"}) {
        const Handle<ov_core_t> bare = newCore();
        check([&] { return ov_core_set_property(bare.get(), "CPU", kPrecisionHint, requested); });
        const bool supported = valueOf(compile(*bare, *model_, "CPU"), kPrecisionHint) == requested;
        const auto core = sharedCore("CPU", {{kPrecisionHint, requested}});
        EXPECT_THAT(valueOf(compile(*core, *model_, "CPU"), kPrecisionHint),
                    StrEq(supported ? requested : "f32"));
    }
}

TEST_F(DeviceDefaultsTest, LeaveTheThreadsOfACompiledNetworkUnpinned) {
    check([&] { return ov_core_set_property(core_.get(), "CPU", kPinning, "YES"); });
    useOwnDefaults(*core_, "CPU");
    EXPECT_THAT(valueOf(*core_, kPinning), StrEq("NO"));
    EXPECT_THAT(valueOf(compile(*core_, *model_, "CPU"), kPinning), StrEq("NO"));
}

TEST_F(DeviceDefaultsTest, YieldToThePinningThatTheCallerSets) {
    const auto core = sharedCore("CPU", {{kPinning, "YES"}});
    EXPECT_THAT(valueOf(*core, kPinning), StrEq("YES"));
}

TEST_F(DeviceDefaultsTest, AreNotForcedOnAMissingDevice) {
    useOwnDefaults(*core_, "NOWHERE");
    EXPECT_THROW(compile(*core_, *model_, "NOWHERE"), Failure);
    EXPECT_NE(compile(*core_, *model_, "CPU"), nullptr);
}

}  // namespace
}  // namespace InferenceEngine::runtime
