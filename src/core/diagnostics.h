#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <utility>

#include "quavin/text.h"

namespace VelmoraQuavin::internal {

/// Whether the host asked for diagnostics. May be called from any thread.
bool areDiagnosticsOn() noexcept;
/// Turns diagnostics on or off; like QuavinClient::init, call it before or after all other use.
void setDiagnostics(bool on) noexcept;

/// Sends one diagnostic record to the log, whether or not the host asked for diagnostics. Never
/// throws; may be called from any thread.
void reportDiagnostic(const String& text) noexcept;

/// Turns a text into a record's message: one line, with nothing in it that could move a terminal's
/// cursor or forge a log line. Names in the text come from packages.
std::string asRecord(const String& text);

/// Reports what a fixed text hides, if the host asked for diagnostics. Never throws; may be called
/// from any thread.
/// @param makeText returns the text, which begins with what was being done; called only if
///        diagnostics are on. Nothing is reported if it returns an empty text.
template <typename MakeText>
void diagnose(MakeText&& makeText) noexcept {
    if (!areDiagnosticsOn()) {
        return;
    }
    try {
        const std::string text = asRecord(std::forward<MakeText>(makeText)());
        if (!text.empty()) {
            reportDiagnostic(text);
        }
    } catch (...) {
        // The status still reports the failure; only its explanation ran out of memory.
    }
}

/// Stores a text for a diagnostic that may follow, under the same conditions as diagnose().
template <typename MakeText>
void keepForDiagnostics(String& kept, MakeText&& makeText) noexcept {
    if (!areDiagnosticsOn()) {
        return;
    }
    try {
        kept = std::forward<MakeText>(makeText)();
    } catch (...) {
        // As in diagnose().
    }
}

/// Puts a path, or a name known to be short, in quotation marks.
std::string inQuotes(const String& text);

/// A list of names for a diagnostic: in quotation marks, long ones truncated, and only the first
/// few.
class NameList {
public:
    void add(std::string_view name);
    bool empty() const { return count_ == 0; }
    /// `"a", "b" and 3 more`; empty if there are no names.
    std::string text() const;

private:
    std::string listed_;
    std::size_t count_ = 0;
};

/// To be held while a record is delivered. Locks only while diagnostics are on, since models
/// predicting on several threads may then report too; otherwise nothing is locked. The lock is
/// recursive because a log processor may itself report.
std::unique_lock<std::recursive_mutex> lockDelivery();

}  // namespace VelmoraQuavin::internal
