#include "core/diagnostics.h"

#include <algorithm>
#include <atomic>

#include "quavin/logging.h"
#include "text/unicode.h"

namespace VelmoraQuavin::internal {
namespace {

std::atomic<bool> diagnosticsOn{false};

// Manifests may contain thousands of names, of any length.
constexpr std::size_t kMostNames = 8;
constexpr std::size_t kLongestListedName = 80;

}  // namespace

bool areDiagnosticsOn() noexcept {
    return diagnosticsOn.load(std::memory_order_relaxed);
}

void setDiagnostics(bool on) noexcept {
    diagnosticsOn.store(on, std::memory_order_relaxed);
}

void reportDiagnostic(const String& text) noexcept {
    _Report_(false, kDiagnosticCategory, kDiagnosticLevel, text);
}

std::string asRecord(const String& text) {
    std::string line = text.str();
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c == '\n' || c == '\r' || c == '\t'; }, ' ');
    return printableText(line);
}

std::string inQuotes(const String& text) {
    return '"' + text.str() + '"';
}

void NameList::add(std::string_view name) {
    if (++count_ > kMostNames) {
        return;
    }
    listed_ += listed_.empty() ? "" : ", ";
    listed_ += name.size() <= kLongestListedName
                   ? inQuotes(name)
                   : inQuotes(std::string(name.substr(0, kLongestListedName)) + "...");
}

std::string NameList::text() const {
    return count_ <= kMostNames ? listed_
                                : listed_ + " and " + std::to_string(count_ - kMostNames) + " more";
}

std::unique_lock<std::recursive_mutex> lockDelivery() {
    static std::recursive_mutex mutex;
    return areDiagnosticsOn() ? std::unique_lock(mutex) : std::unique_lock<std::recursive_mutex>();
}

}  // namespace VelmoraQuavin::internal
