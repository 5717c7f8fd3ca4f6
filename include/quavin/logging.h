#pragma once

/// @file
/// Log records, the processors that receive them, and the function that reports one.
///
/// A host builds a chain of processors, passes it to QuavinConfig::SetLogger and the configuration
/// to QuavinClient::init. Without one, records go to standard output with a time stamp in front.
/// Nothing here is locked: report from one thread at a time.

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iosfwd>
#include <memory>
#include <utility>
#include <vector>

#include "quavin/export.h"
#include "quavin/text.h"

namespace VelmoraQuavin {

/// The unit of logging.
struct LogRecord {
    String message;              ///< The text, UTF-8.
    std::uint64_t category = 0;  ///< Host-defined bits; bit 0 or 1 marks it important.
    std::uint32_t level = 0;     ///< Host-defined level; 3 or more marks it important.
    std::int64_t tag = -1;       ///< -1 in records made by _Report_().
    std::int64_t time = 0;       ///< Monotonic ticks of 100 nanoseconds.
};

/// Receives log records. Implement it to send them wherever the host wants them.
///
/// The library swallows any exception thrown by process(). Held by shared pointers; called on the
/// thread that reports.
class QUAVIN_API ILogProcessor {
public:
    ILogProcessor() = default;
    ILogProcessor(const ILogProcessor&) = delete;
    ILogProcessor& operator=(const ILogProcessor&) = delete;
    virtual ~ILogProcessor();
    /// Handles one record; `record` is valid only during the call.
    virtual void process(const LogRecord& record) = 0;
};

/// Passes every record to several processors, in the order in which they were added.
class QUAVIN_API LogProcessorContainer : public ILogProcessor {
public:
    /// An empty container, which does nothing.
    LogProcessorContainer();
    /// A container of the given processors; null pointers are skipped.
    explicit LogProcessorContainer(std::vector<std::shared_ptr<ILogProcessor>> processors);
    ~LogProcessorContainer() override;

    /// Appends a processor, which is shared; a null pointer is ignored.
    void add(std::shared_ptr<ILogProcessor> processor);
    /// Passes `record` on unchanged. If a processor throws, those after it do not receive the
    /// record.
    void process(const LogRecord& record) override;

private:
    std::vector<std::shared_ptr<ILogProcessor>> processors_;
};

/// Writes the message of every record to a stream, one per line, and flushes it.
class QUAVIN_API LogProcessorOStream : public ILogProcessor {
public:
    /// @param stream not owned; must outlive the processor. Null makes process() do nothing.
    explicit LogProcessorOStream(std::ostream* stream);
    ~LogProcessorOStream() override;

    /// Writes the message up to its first zero byte, and a newline.
    void process(const LogRecord& record) override;

private:
    std::ostream* stream_;
};

/// Appends the message of every record to a file that grows from run to run.
///
/// The file's name is the prefix followed by "log.txt". It is opened at its end; three newlines
/// separate a run from the previous one, and two lines of "=" begin it. It is not an error if the
/// file cannot be opened: the processor then writes nothing.
class QUAVIN_API LogProcessorFileSystem : public ILogProcessor {
public:
    /// @param directory an existing directory; "/" is always appended to it.
    /// @param prefix the beginning of the file's name; may be empty.
    /// @param disabled if true, no file is opened and nothing is written.
    LogProcessorFileSystem(const String& directory, const String& prefix, bool disabled);
    ~LogProcessorFileSystem() override;

    /// Writes the message up to its first zero byte, and a newline.
    void process(const LogRecord& record) override;

private:
    std::fstream file_;
    bool disabled_;
};

/// Prefixes the message with the time elapsed since a start time, and appends the tag.
struct QUAVIN_API DebugLogFormat {
    /// Returns a copy of `record` whose message is "(hours:minutes:seconds:milliseconds)
    /// message[tag]", with at least two digits for each part of the time.
    /// @param record the record to format; its `time` is in ticks of 100 nanoseconds.
    /// @param startTime the time to count from, in the same ticks.
    static LogRecord format(const LogRecord& record, long long startTime);
};

/// Formats every record before passing it on.
/// @tparam Format provides a static `LogRecord format(const LogRecord&, long long startTime)`.
template <typename Format>
class LogProcessorFormatter : public ILogProcessor {
public:
    /// @param startTime passed to the format, in ticks of 100 nanoseconds.
    /// @param next receives the formatted records; shared. Null makes process() do nothing.
    LogProcessorFormatter(long long startTime, std::shared_ptr<ILogProcessor> next)
        : startTime_(startTime), next_(std::move(next)) {}

    /// Passes on the formatted record, or the original one if formatting throws.
    void process(const LogRecord& record) override {
        if (next_ == nullptr) {
            return;
        }
        LogRecord formatted;
        try {
            formatted = Format::format(record, startTime_);
        } catch (...) {
            next_->process(record);
            return;
        }
        next_->process(formatted);
    }

private:
    long long startTime_;
    std::shared_ptr<ILogProcessor> next_;
};

/// The category of the library's own diagnostics; see QuavinConfig::SetDiagnostics.
constexpr std::uint64_t kDiagnosticCategory = 4;
/// The level of the library's own diagnostics. Neither it nor the category marks them as important,
/// so they never enter the log's history.
constexpr std::uint32_t kDiagnosticLevel = 2;

/// Reports one message to the process-wide log.
///
/// It reaches the processor that QuavinClient::init installed, or standard output if there is none.
/// A report made while nine others are in progress, nested inside one another, is dropped. Never
/// throws. Report from one thread at a time, unless diagnostics are on
/// (QuavinConfig::SetDiagnostics): reports then wait for each other.
///
/// @param direct true writes straight to standard output, bypassing any processor.
/// @param category stored in the record; bit 0 or 1 marks it important.
/// @param level stored in the record; 3 or more marks it important.
/// @param message the text, UTF-8.
QUAVIN_API void _Report_(bool direct, std::size_t category, unsigned level, const String& message);

}  // namespace VelmoraQuavin
