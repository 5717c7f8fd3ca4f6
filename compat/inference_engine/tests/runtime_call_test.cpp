// Which text a failure of the runtime comes with.
#include "runtime_call.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <memory>
#include <string>
#include <thread>

#include "failure.hpp"
#include "runtime_core.hpp"

namespace InferenceEngine::runtime {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/** Fails with a text that names the property. */
ov_status_e failNaming(const ov_core_t& core, const char* property) {
    char* value = nullptr;
    return ov_core_get_property(&core, "CPU", property, &value);
}

/** The text of the Failure that an operation throws. */
template <class Operation>
std::string textOf(Operation&& operation) {
    try {
        operation();
    } catch (const Failure& failure) {
        return failure.what();
    }
    return "";
}

class RuntimeCallTest : public testing::Test {
protected:
    const std::shared_ptr<ov_core_t> core_ = sharedCore();
};

TEST_F(RuntimeCallTest, SuccessThrowsNothing) {
    EXPECT_NO_THROW(check([] { return ::OK; }));
    EXPECT_NO_THROW(checkRepeating([] { return ::OK; }));
    EXPECT_EQ(attempt([] { return ::OK; }), ::OK);
}

TEST_F(RuntimeCallTest, AFailureHasItsOwnText) {
    EXPECT_THAT(textOf([&] { check([&] { return failNaming(*core_, "MINE"); }); }),
                HasSubstr("MINE"));
    EXPECT_THAT(textOf([&] { checkRepeating([&] { return failNaming(*core_, "MINE"); }); }),
                HasSubstr("MINE"));
    EXPECT_NE(attempt([&] { return failNaming(*core_, "MINE"); }), ::OK);
}

TEST_F(RuntimeCallTest, ARefusedParameterDoesNotHaveTheTextOfAnEarlierFailure) {
    EXPECT_NE(attempt([&] { return failNaming(*core_, "EARLIER"); }), ::OK);
    const std::string text = textOf([] { check([] { return ov_core_create(nullptr); }); });
    EXPECT_THAT(text, StartsWith("OpenVINO: "));
    EXPECT_THAT(text, Not(HasSubstr("EARLIER")));
}

// As if another thread had failed just before the text was read.
TEST_F(RuntimeCallTest, ATextReplacedByAnotherCallIsNotReported) {
    const std::string text = textOf([&] {
        check([&] {
            const ov_status_e status = failNaming(*core_, "MINE");
            std::thread([&] { attempt([&] { return failNaming(*core_, "ANOTHER"); }); }).join();
            return status;
        });
    });
    EXPECT_THAT(text, StartsWith("OpenVINO: "));
    EXPECT_THAT(text, Not(HasSubstr("ANOTHER")));
}

TEST_F(RuntimeCallTest, ARepeatableCallStillHasItsOwnText) {
    int calls = 0;
    const std::string text = textOf([&] {
        checkRepeating([&] {
            const ov_status_e status = failNaming(*core_, "MINE");
            if (++calls == 1) {
                std::thread([&] { attempt([&] { return failNaming(*core_, "ANOTHER"); }); }).join();
            }
            return status;
        });
    });
    EXPECT_THAT(text, HasSubstr("MINE"));
    EXPECT_EQ(calls, 2);
}

TEST_F(RuntimeCallTest, ARepeatedCallMaySucceed) {
    int calls = 0;
    EXPECT_NO_THROW(checkRepeating([&] {
        if (++calls > 1) {
            return ::OK;
        }
        const ov_status_e status = failNaming(*core_, "MINE");
        std::thread([&] { attempt([&] { return failNaming(*core_, "ANOTHER"); }); }).join();
        return status;
    }));
    EXPECT_EQ(calls, 2);
}

// Until it ends, that call might have been the last to fail. The limit suits the busiest machine.
TEST_F(RuntimeCallTest, AFailureWaitsForACallInProgress) {
    std::promise<void> begun;
    std::promise<void> end;
    std::thread other([&] {
        check([&] {
            begun.set_value();
            end.get_future().wait();
            return ::OK;
        });
    });
    begun.get_future().wait();
    auto text = std::async(std::launch::async, [&] {
        return textOf(
            [&] { check([&] { return failNaming(*core_, "MINE"); }, std::chrono::minutes(10)); });
    });
    EXPECT_EQ(text.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    end.set_value();
    EXPECT_THAT(text.get(), HasSubstr("MINE"));
    other.join();
}

TEST_F(RuntimeCallTest, AFailureDoesNotWaitForever) {
    std::promise<void> begun;
    std::promise<void> end;
    std::thread other([&] {
        check([&] {
            begun.set_value();
            end.get_future().wait();
            return ::OK;
        });
    });
    begun.get_future().wait();
    const std::string text = textOf(
        [&] { check([&] { return failNaming(*core_, "MINE"); }, std::chrono::milliseconds(10)); });
    EXPECT_THAT(text, StartsWith("OpenVINO: "));
    end.set_value();
    other.join();
}

}  // namespace
}  // namespace InferenceEngine::runtime
