// Which precision the runtime reports for compiled networks.
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

constexpr const char* kPrecision = "INFERENCE_PRECISION_HINT";

class SinglePrecisionTest : public testing::Test {
protected:
    SinglePrecisionTest() : core_(newCore()), model_(read(*core_)) {}

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

    static std::string precisionOf(const ov_core_t& core) {
        char* value = nullptr;
        check([&] { return ov_core_get_property(&core, "CPU", kPrecision, &value); });
        return takeText(value);
    }

    static std::string precisionOf(const Handle<ov_compiled_model_t>& compiled) {
        char* value = nullptr;
        check([&] { return ov_compiled_model_get_property(compiled.get(), kPrecision, &value); });
        return takeText(value);
    }

    const Handle<ov_core_t> core_;
    const Handle<ov_model_t> model_;
};

TEST_F(SinglePrecisionTest, IsReportedByACompiledNetwork) {
    useSinglePrecision(*core_, "CPU");
    EXPECT_THAT(precisionOf(compile(*core_, *model_, "CPU")), StrEq("f32"));
}

// Processors with instructions for bfloat16 use it by default; others ignore such a request and
// keep the precision they had.
TEST_F(SinglePrecisionTest, ReplacesAnotherPrecisionOfTheDevice) {
    check([&] { return ov_core_set_property(core_.get(), "CPU", kPrecision, "bf16"); });
    useSinglePrecision(*core_, "CPU");
    EXPECT_THAT(precisionOf(*core_), StrEq("f32"));
    EXPECT_THAT(precisionOf(compile(*core_, *model_, "CPU")), StrEq("f32"));
}

// A processor may lack the requested precision, as the bare runtime shows; the one that was set
// before stays then.
TEST_F(SinglePrecisionTest, YieldsToThePrecisionThatTheCallerSets) {
    for (const char* const requested : {"bf16", "f16", "f32"}) {
        const Handle<ov_core_t> bare = newCore();
        check([&] { return ov_core_set_property(bare.get(), "CPU", kPrecision, requested); });
        const bool supported = precisionOf(compile(*bare, *model_, "CPU")) == requested;
        const auto core = sharedCore("CPU", {{kPrecision, requested}});
        EXPECT_THAT(precisionOf(compile(*core, *model_, "CPU")),
                    StrEq(supported ? requested : "f32"));
    }
}

TEST_F(SinglePrecisionTest, IsNotForcedOnAMissingDevice) {
    useSinglePrecision(*core_, "NOWHERE");
    EXPECT_THROW(compile(*core_, *model_, "NOWHERE"), Failure);
    EXPECT_NE(compile(*core_, *model_, "CPU"), nullptr);
}

}  // namespace
}  // namespace InferenceEngine::runtime
