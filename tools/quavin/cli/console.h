#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quavin_tool {

/// How a command talks. Results go to standard output; everything else goes to standard error.
struct OutputOptions {
    bool quiet = false;  ///< Results and errors alone.
    bool json = false;   ///< Results as one JSON object.
};

/// What colours mean.
enum class Mood { kGood, kWarning, kBad };

/// A text in a colour where standard output is a terminal that wants colours, and not quiet.
std::string inMood(std::string_view text, Mood mood, const OutputOptions& options);

/// Says on standard output what was done, unless it is to be quiet or to print JSON.
void say(const std::string& text, const OutputOptions& options);

/// A bar on standard error that grows with the work; there only where that is a terminal.
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
