#include "platform/input_file.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "platform/input_file_implementation.h"
#include "platform/largest_transfer.h"

namespace VelmoraQuavin::internal::platform {

InputFile::InputFile(std::unique_ptr<Implementation> implementation, std::uint64_t size)
    : implementation_(std::move(implementation)), size_(size) {}
InputFile::InputFile(InputFile&& other) noexcept = default;
InputFile& InputFile::operator=(InputFile&& other) noexcept = default;
InputFile::~InputFile() = default;

std::string InputFile::read(void* buffer, std::uint64_t count, std::uint64_t& got) {
    auto* const bytes = static_cast<char*>(buffer);
    got = 0;
    while (got < count) {
        const auto wanted = static_cast<std::size_t>(std::min(count - got, kLargestTransfer));
        std::size_t step = 0;
        std::string problem = implementation_->readSome(bytes + got, wanted, step);
        if (!problem.empty()) {
            return problem;
        }
        if (step == 0) {
            break;
        }
        got += step;
    }
    return "";
}

std::optional<MappedFile> InputFile::map(std::string& problem) const {
    if (size_ == 0) {  // which systems refuse
        return MappedFile();
    }
    return implementation_->map(static_cast<std::size_t>(size_), problem);
}

}  // namespace VelmoraQuavin::internal::platform
