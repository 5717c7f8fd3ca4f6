#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/logging_hub.h"
#include "quavin/logging.h"
#include "support/recording_log_processor.h"

namespace VelmoraQuavin::internal {

/// Installs a recording processor in the process-wide hub and removes it afterwards.
class HubFixture : public ::testing::Test {
protected:
    HubFixture() { install(recorder_); }
    ~HubFixture() override { install(nullptr); }

    static LoggingHub& hub() { return *LoggingHub::find(); }
    static void install(std::shared_ptr<ILogProcessor> processor) {
        hub().setProcessor(std::move(processor));
    }
    static void report(const String& message) { _Report_(false, 0, 0, message); }
    static void reportImportant(const String& message) { _Report_(false, 1, 0, message); }
    static std::vector<std::string> history() {
        std::vector<std::string> texts;
        for (const String& text : hub().history()) {
            texts.push_back(text.str());
        }
        return texts;
    }

    std::shared_ptr<testing::RecordingLogProcessor> recorder_ =
        std::make_shared<testing::RecordingLogProcessor>();
};

}  // namespace VelmoraQuavin::internal
