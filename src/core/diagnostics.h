#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <utility>

#include "quavin/text.h"

namespace VelmoraQuavin::internal {

/// Whether the host asked for diagnostics. Any thread.
bool areDiagnosticsOn() noexcept;
/// Switches diagnostics on or off; as QuavinClient::init, before and after all other use.
void setDiagnostics(bool on) noexcept;

/// Hands one diagnostic record to the log, whether or not the host asked. Never throws; any thread.
void reportDiagnostic(const String& text) noexcept;

/// A text as a record holds it: one line, with nothing in it that moves a terminal's cursor or
/// forges a line of a log. Names in it come from packages.
std::string asRecord(const String& text);

/// Reports what a fixed text hides, where the host asked for it. Never throws; any thread.
/// @param makeText gives the text, which begins with what was being done; called only where it is
///        wanted. Nothing is reported where it finds nothing to say.
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
        // The failure itself is reported by its status; memory ran out for the explanation.
    }
}

/// Keeps a text for a diagnostic that may follow, under the conditions of diagnose().
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

/// A path, or a name that is short anyway, in quotation marks.
std::string inQuotes(const String& text);

/// Names as a diagnostic lists them: in quotation marks, long ones cut, and only the first few.
class NameList {
public:
    void add(std::string_view name);
    bool empty() const { return count_ == 0; }
    /// `"a", "b" and 3 more`; empty without names.
    std::string text() const;

private:
    std::string listed_;
    std::size_t count_ = 0;
};

/// Held while a record is delivered. Locks only while diagnostics are on, since models that predict
/// on several threads then report as well; without them the library takes no lock here. The same
/// thread may lock again: a log processor may itself report.
std::unique_lock<std::recursive_mutex> lockDelivery();

}  // namespace VelmoraQuavin::internal
