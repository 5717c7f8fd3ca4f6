#pragma once

#include <deque>
#include <memory>

#include "quavin/logging.h"
#include "quavin/text.h"

namespace VelmoraQuavin::internal {

/// The process-wide place where reports meet the installed log processor.
///
/// Plain fields without a lock. The hub is made on first use and destroyed at process exit, and
/// reports still come in after that: find() then gives null.
class LoggingHub {
public:
    /// The hub, created if it never was; null once it has been destroyed.
    static LoggingHub* find();

    LoggingHub(const LoggingHub&) = delete;
    LoggingHub& operator=(const LoggingHub&) = delete;

    /// Installs a processor; null makes the next report install the default one.
    void setProcessor(std::shared_ptr<ILogProcessor> processor);
    /// Hands a record to the installed processor, whose exceptions are swallowed. Dropped where
    /// nine others are in progress.
    void handle(const LogRecord& record);
    /// The texts of the latest important records, oldest first.
    const std::deque<String>& history() const { return history_; }

private:
    LoggingHub();
    ~LoggingHub();

    void remember(const LogRecord& record);
    const std::shared_ptr<ILogProcessor>& defaultProcessor();

    static bool everCreated_;
    static bool alive_;

    int nesting_ = 0;
    std::deque<String> history_;
    std::shared_ptr<ILogProcessor> processor_;
    // Made on first need, and held by the hub, so that it lasts as long.
    std::shared_ptr<ILogProcessor> default_;
};

}  // namespace VelmoraQuavin::internal
