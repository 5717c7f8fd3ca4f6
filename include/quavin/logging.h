#pragma once

/// @file
/// Log records, the processors that receive them, and the entry that reports one.
///
/// A host builds a chain of processors, hands it to QuavinConfig::SetLogger and gives the
/// configuration to QuavinClient::init. Without one, records go to standard output behind a time
/// stamp. Nothing here takes a lock: reports are made from one thread at a time.

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
    std::uint64_t category = 0;  ///< Bits of the host's choosing; bit 0 or 1 marks it important.
    std::uint32_t level = 0;     ///< A level of the host's choosing; 3 and more mark it important.
    std::int64_t tag = -1;       ///< -1 in records made by _Report_().
    std::int64_t time = 0;       ///< Monotonic ticks of 100 nanoseconds.
};

/// Receives log records. Implement it to send them where the host wants them.
///
/// An exception that leaves process() is swallowed by the library. Held by shared pointers; called
/// on whatever thread reports.
class QUAVIN_API ILogProcessor {
public:
    ILogProcessor() = default;
    ILogProcessor(const ILogProcessor&) = delete;
    ILogProcessor& operator=(const ILogProcessor&) = delete;
    virtual ~ILogProcessor();
    /// Takes one record; `record` is valid during the call only.
    virtual void process(const LogRecord& record) = 0;
};

/// Hands every record on to several processors, in the order in which they were added.
class QUAVIN_API LogProcessorContainer : public ILogProcessor {
public:
    /// A container without processors, which does nothing.
    LogProcessorContainer();
    /// A container of the given processors; null pointers are left out.
    explicit LogProcessorContainer(std::vector<std::shared_ptr<ILogProcessor>> processors);
    ~LogProcessorContainer() override;

    /// Adds a processor, which is shared, at the end; a null pointer is ignored.
    void add(std::shared_ptr<ILogProcessor> processor);
    /// Hands `record` on unchanged. An exception of one processor leaves the rest without it.
    void process(const LogRecord& record) override;

private:
    std::vector<std::shared_ptr<ILogProcessor>> processors_;
};

/// Writes the message of every record to a stream, one a line, flushed.
class QUAVIN_API LogProcessorOStream : public ILogProcessor {
public:
    /// @param stream not owned; must outlive the processor. Null makes process() do nothing.
    explicit LogProcessorOStream(std::ostream* stream);
    ~LogProcessorOStream() override;

    /// Writes the message up to its first zero byte, and a line end.
    void process(const LogRecord& record) override;

private:
    std::ostream* stream_;
};

/// Writes the message of every record to a file that grows across runs.
///
/// The file is named "log.txt" behind the prefix and opened at its end; three line ends separate a
/// run from the one before, and two lines of "=" open it. A file that cannot be opened is no error:
/// the processor stays silent.
class QUAVIN_API LogProcessorFileSystem : public ILogProcessor {
public:
    /// @param directory an existing directory; "/" is put behind it in any case.
    /// @param prefix what the file's name begins with; may be empty.
    /// @param disabled true opens no file and writes nothing.
    LogProcessorFileSystem(const String& directory, const String& prefix, bool disabled);
    ~LogProcessorFileSystem() override;

    /// Writes the message up to its first zero byte, and a line end.
    void process(const LogRecord& record) override;

private:
    std::fstream file_;
    bool disabled_;
};

/// Puts the time since a start before the message, and the tag behind it.
struct QUAVIN_API DebugLogFormat {
    /// Gives "(hours:minutes:seconds:milliseconds) message[tag]", each number with two digits or
    /// more, and everything else of `record` unchanged.
    /// @param record the record to format; its `time` is in ticks of 100 nanoseconds.
    /// @param startTime what the time is counted from, in the same ticks.
    static LogRecord format(const LogRecord& record, long long startTime);
};

/// Formats every record before it hands it on.
/// @tparam Format has a static `LogRecord format(const LogRecord&, long long startTime)`.
template <typename Format>
class LogProcessorFormatter : public ILogProcessor {
public:
    /// @param startTime handed to the format, in ticks of 100 nanoseconds.
    /// @param next receives the formatted records; shared. Null makes process() do nothing.
    LogProcessorFormatter(long long startTime, std::shared_ptr<ILogProcessor> next)
        : startTime_(startTime), next_(std::move(next)) {}

    /// Hands the formatted record on, or the record as it is where formatting it throws.
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
/// The level of the library's own diagnostics. It and the category leave them unimportant, so that
/// none of them stays in the log's history.
constexpr std::uint32_t kDiagnosticLevel = 2;

/// Reports one message to the process-wide log.
///
/// It reaches the processor that QuavinClient::init installed, or standard output where there is
/// none. A report made while nine others are in progress, one inside another, is dropped. Never
/// throws. One thread at a time, unless diagnostics are on (QuavinConfig::SetDiagnostics): reports
/// then wait for each other.
///
/// @param direct true writes to standard output at once, past any processor.
/// @param category stored in the record; bit 0 or 1 marks it important.
/// @param level stored in the record; 3 and more mark it important.
/// @param message the text, UTF-8.
QUAVIN_API void _Report_(bool direct, std::size_t category, unsigned level, const String& message);

}  // namespace VelmoraQuavin
