#pragma once

#include <deque>
#include <memory>

#include "quavin/logging.h"
#include "quavin/text.h"

namespace VelmoraQuavin::internal {

/// Delivers the process's reports to the installed log processor.
///
/// Its fields are not locked. The hub is created on first use and destroyed at process exit; for
/// reports made after that, find() returns null.
class LoggingHub {
public:
    /// The hub, created on first use; null once it has been destroyed.
    static LoggingHub* find();

    LoggingHub(const LoggingHub&) = delete;
    LoggingHub& operator=(const LoggingHub&) = delete;

    /// Installs a processor; null makes the next report install the default one.
    void setProcessor(std::shared_ptr<ILogProcessor> processor);
    /// Passes a record to the installed processor and swallows its exceptions. The record is
    /// dropped if nine others are in progress.
    void handle(const LogRecord& record);
    /// The messages of the latest important records, oldest first.
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
    // Created when first needed, and owned by the hub, so that it lives as long.
    std::shared_ptr<ILogProcessor> default_;
};

}  // namespace VelmoraQuavin::internal
