#pragma once

#include <string>
#include <vector>

#include "quavin/logging.h"

namespace VelmoraQuavin::testing {

/// Keeps every record it receives.
class RecordingLogProcessor : public ILogProcessor {
public:
    void process(const LogRecord& record) override { records_.push_back(record); }

    void clear() { records_.clear(); }
    const std::vector<LogRecord>& records() const { return records_; }
    std::vector<std::string> messages() const {
        std::vector<std::string> messages;
        for (const LogRecord& record : records_) {
            messages.push_back(record.message.str());
        }
        return messages;
    }

private:
    std::vector<LogRecord> records_;
};

}  // namespace VelmoraQuavin::testing
