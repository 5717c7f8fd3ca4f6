// Switching the library on and off from C, log records, and the texts of errors.

#include <future>
#include <stdexcept>

#include "integration/c/c_test.h"
#include "quavin/client.h"
#include "quavin/version.h"

namespace VelmoraQuavin::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StrEq;

struct Received {
    std::vector<std::string> messages;
    quavin_log_record last{};
};

void receive(const quavin_log_record* record, void* user) {
    auto* const received = static_cast<Received*>(user);
    received->messages.emplace_back(record->message);
    received->last = *record;
    received->last.message = nullptr;  // valid only during the call
}

void throwSomething(const quavin_log_record* /*record*/, void* user) {
    ++*static_cast<int*>(user);
    throw std::runtime_error("thrown by a log function");
}

class CLifecycle : public ::testing::Test {
protected:
    ~CLifecycle() override { quavin_terminate(); }
};

TEST_F(CLifecycle, TheLibraryIsOnBetweenInitAndTerminate) {
    EXPECT_EQ(quavin_is_initialized(), 0);
    EXPECT_THAT(quavin_init(nullptr), Succeeds());
    EXPECT_EQ(quavin_is_initialized(), 1);
    EXPECT_TRUE(QuavinClient::isInitialized());
    EXPECT_THAT(quavin_terminate(), Succeeds());
    EXPECT_EQ(quavin_is_initialized(), 0);
}

TEST_F(CLifecycle, SwitchingOnTwiceFails) {
    EXPECT_THAT(quavin_init(nullptr), Succeeds());
    EXPECT_THAT(quavin_init(nullptr), FailsWith(QUAVIN_FAILURE, StrEq("FAILURE")));
    EXPECT_EQ(quavin_is_initialized(), 1);
}

TEST_F(CLifecycle, SwitchingOffTwiceDoesNothing) {
    EXPECT_THAT(quavin_terminate(), Succeeds());
    EXPECT_THAT(quavin_terminate(), Succeeds());
}

TEST_F(CLifecycle, WhatNeedsTheLibrarySaysThatItIsOff) {
    const auto off =
        FailsWith(QUAVIN_NOT_INITIALIZED,
                  StrEq("Trying to use quavin client before the sdk was initialized!"));
    const PackageInMemory package(sumNetwork());
    const std::vector<quavin_buffer> buffers = package.buffers();
    const quavin_keys keys = QUAVIN_KEYS_INIT;
    quavin_load_options withKeys = QUAVIN_LOAD_OPTIONS_INIT;
    withKeys.keys = &keys;
    quavin_model* model = nullptr;
    quavin_registry* registry = nullptr;
    EXPECT_THAT(quavin_load_directory("nowhere", nullptr, &model), off);
    EXPECT_THAT(quavin_load_directory("nowhere", &withKeys, &model), off);
    EXPECT_THAT(quavin_load_archive("", 0, nullptr, &model), off);
    EXPECT_THAT(quavin_load_buffers(buffers.data(), buffers.size(), nullptr, &model), off);
    EXPECT_THAT(quavin_query_registry(&registry), off);

    ASSERT_THAT(quavin_init(nullptr), Succeeds());
    ASSERT_THAT(quavin_load_buffers(buffers.data(), buffers.size(), nullptr, &model), Succeeds());
    ASSERT_THAT(quavin_terminate(), Succeeds());
    quavin_model* clone = nullptr;
    EXPECT_THAT(quavin_clone(model, &clone), off);
    EXPECT_THAT(quavin_unload(model), off);
    EXPECT_THAT(quavin_unregister(model), off);
    EXPECT_THAT(quavin_model_release(model), Succeeds());
}

TEST_F(CLifecycle, TheVersionIsThatOfTheLibrary) {
    EXPECT_STREQ(quavin_version(), getVersion());
}

TEST_F(CLifecycle, EveryCodeHasItsName) {
    EXPECT_STREQ(quavin_status_name(QUAVIN_SUCCESS), "SUCCESS");
    EXPECT_STREQ(quavin_status_name(QUAVIN_TAR_UNSUPPORTED_ENTRY), "TAR_UNSUPPORTED_ENTRY");
    EXPECT_STREQ(quavin_status_name(QUAVIN_SIGNATURE_ERROR), "SIGNATURE_ERROR");
    for (const int unused : {-1, 0, 10, 20, 24, 1000}) {
        EXPECT_STREQ(quavin_status_name(unused), "unknown status");
    }
}

TEST_F(CLifecycle, DiagnosticsReachTheLogFunction) {
    Received received;
    quavin_config config = QUAVIN_CONFIG_INIT;
    config.log = receive;
    config.user = &received;
    config.diagnostics = 1;
    ASSERT_THAT(quavin_init(&config), Succeeds());
    quavin_model* model = nullptr;
    EXPECT_NE(quavin_load_directory("nowhere", nullptr, &model), QUAVIN_SUCCESS);
    EXPECT_THAT(received.messages, ElementsAre(HasSubstr("nowhere")));
    EXPECT_EQ(received.last.size, sizeof(quavin_log_record));
    EXPECT_EQ(received.last.category, kDiagnosticCategory);
    EXPECT_EQ(received.last.level, kDiagnosticLevel);
    EXPECT_EQ(received.last.tag, -1);
    EXPECT_GT(received.last.time, 0);
}

TEST_F(CLifecycle, WithoutDiagnosticsTheLibraryReportsNothing) {
    Received received;
    quavin_config config = QUAVIN_CONFIG_INIT;
    config.log = receive;
    config.user = &received;
    ASSERT_THAT(quavin_init(&config), Succeeds());
    quavin_model* model = nullptr;
    EXPECT_NE(quavin_load_directory("nowhere", nullptr, &model), QUAVIN_SUCCESS);
    EXPECT_THAT(received.messages, IsEmpty());
}

TEST_F(CLifecycle, ALogFunctionThatThrowsDoesNotDisturbTheCall) {
    int calls = 0;
    quavin_config config = QUAVIN_CONFIG_INIT;
    config.log = throwSomething;
    config.user = &calls;
    config.diagnostics = 1;
    ASSERT_THAT(quavin_init(&config), Succeeds());
    quavin_model* model = nullptr;
    EXPECT_THAT(quavin_load_directory("nowhere", nullptr, &model),
                FailsWith(QUAVIN_MODEL_METADATA_ERROR, HasSubstr("nowhere")));
    EXPECT_EQ(calls, 1);
}

TEST_F(CLifecycle, EachThreadHasItsOwnLastError) {
    EXPECT_THAT(quavin_unload(nullptr),
                FailsWith(QUAVIN_INVALID_ARGUMENTS, StrEq("The handle of a model is null")));
    const std::string atFirst =
        std::async(std::launch::async, [] { return std::string(quavin_last_error()); }).get();
    const std::string afterwards = std::async(std::launch::async, [] {
                                       quavin_outputs_get_count(nullptr, nullptr);
                                       return std::string(quavin_last_error());
                                   }).get();
    EXPECT_EQ(atFirst, "");
    EXPECT_EQ(afterwards, "\"count\" is null");
    EXPECT_STREQ(quavin_last_error(), "The handle of a model is null");
}

TEST_F(CLifecycle, ASuccessKeepsTheLastError) {
    EXPECT_NE(quavin_unload(nullptr), QUAVIN_SUCCESS);
    EXPECT_THAT(quavin_init(nullptr), Succeeds());
    EXPECT_STREQ(quavin_last_error(), "The handle of a model is null");
}

}  // namespace
}  // namespace VelmoraQuavin::testing
