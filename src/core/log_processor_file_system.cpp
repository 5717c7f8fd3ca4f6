#include <ostream>
#include <stdexcept>
#include <string>

#include "platform/file_streams.h"
#include "quavin/logging.h"
#include "text/unicode.h"

namespace VelmoraQuavin {
namespace {

constexpr const char* kBannerLine = "============================================================";

std::fstream openAtEnd(const String& path) {
    try {
        std::fstream file =
            internal::platform::openFile(path, std::ios::in | std::ios::out | std::ios::ate);
        if (!file.is_open()) {
            // Creates the file; appending preserves a file that is writable but not readable.
            file =
                internal::platform::openFile(path, std::ios::out | std::ios::app | std::ios::ate);
        }
        return file;
    } catch (const std::range_error&) {
        // A path that is not UTF-8 cannot be opened, which is not an error here.
        return {};
    }
}

}  // namespace

LogProcessorFileSystem::LogProcessorFileSystem(const String& directory, const String& prefix,
                                               bool disabled)
    : disabled_(disabled) {
    if (disabled_) {
        return;
    }
    file_ = openAtEnd(directory + "/" + prefix + "log.txt");
    if (!file_.is_open()) {
        return;
    }
    if (file_.tellp() != std::fstream::pos_type(0)) {
        file_ << "\n\n\n";
    }
    file_ << kBannerLine << '\n' << kBannerLine << std::endl;
}

LogProcessorFileSystem::~LogProcessorFileSystem() = default;

void LogProcessorFileSystem::process(const LogRecord& record) {
    if (file_.is_open()) {
        file_ << internal::untilZeroByte(record.message.view()) << std::endl;
    }
}

}  // namespace VelmoraQuavin
