#include "tools/quavin/cli/console.h"

#include <algorithm>
#include <iostream>
#include <optional>
#include <utility>

#include "platform/process.h"

namespace quavin_tool {
namespace {

using VelmoraQuavin::internal::platform::environmentVariable;
using VelmoraQuavin::internal::platform::isTerminal;
using VelmoraQuavin::internal::platform::StandardStream;

constexpr std::size_t kBarWidth = 30;

// Whether a stream is a terminal that interprets escape sequences.
bool takesEscapes(StandardStream stream) {
    return isTerminal(stream) && environmentVariable("TERM") != "dumb";
}

bool wantsColours() {
    // https://no-color.org
    const std::optional<std::string> refused = environmentVariable("NO_COLOR");
    return refused.value_or("").empty() && takesEscapes(StandardStream::kOutput);
}

const char* colourOf(Mood mood) {
    switch (mood) {
        case Mood::kGood:
            return "\x1b[32m";
        case Mood::kWarning:
            return "\x1b[33m";
        default:
            return "\x1b[31m";
    }
}

}  // namespace

std::string inMood(std::string_view text, Mood mood, const OutputOptions& options) {
    if (options.quiet || options.json || !wantsColours()) {
        return std::string(text);
    }
    return colourOf(mood) + std::string(text) + "\x1b[0m";
}

void say(const std::string& text, const OutputOptions& options) {
    if (!options.quiet && !options.json) {
        std::cout << text << '\n';
    }
}

ProgressBar::ProgressBar(std::string title, const OutputOptions& options)
    : title_(std::move(title)),
      visible_(!options.quiet && !options.json && takesEscapes(StandardStream::kError)) {}

ProgressBar::~ProgressBar() {
    if (visible_) {
        std::cerr << "\r\x1b[K" << std::flush;
    }
}

void ProgressBar::show(double share) {
    const auto filled = static_cast<std::size_t>(std::clamp(share, 0.0, 1.0) * kBarWidth);
    if (!visible_ || filled == shown_) {
        return;
    }
    shown_ = filled;
    std::cerr << '\r' << title_ << " [" << std::string(filled, '#')
              << std::string(kBarWidth - filled, ' ') << ']' << std::flush;
}

}  // namespace quavin_tool
