#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quavin_tool {

/// Controls what a command prints. Results go to standard output, everything else to standard
/// error.
struct OutputOptions {
    bool quiet = false;  ///< Only results and errors.
    bool json = false;   ///< Results as one JSON object.
};

/// The meaning of a colour.
enum class Mood { kGood, kWarning, kBad };

/// Colours a text if standard output is a terminal with colours and neither quiet nor JSON is on.
std::string inMood(std::string_view text, Mood mood, const OutputOptions& options);

/// Reports on standard output what was done, unless quiet or JSON is on.
void say(const std::string& text, const OutputOptions& options);

/// A progress bar on standard error, shown only if that is a terminal.
class ProgressBar {
public:
    ProgressBar(std::string title, const OutputOptions& options);
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;
    /// Removes the bar.
    ~ProgressBar();

    /// @param share from 0 to 1.
    void show(double share);

private:
    std::string title_;
    bool visible_;
    std::size_t shown_ = static_cast<std::size_t>(-1);
};

}  // namespace quavin_tool
