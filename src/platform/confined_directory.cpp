#include <utility>

#include "platform/confined_directory_implementation.h"

namespace VelmoraQuavin::internal::platform {

ConfinedDirectory::ConfinedDirectory(std::unique_ptr<Implementation> implementation)
    : implementation_(std::move(implementation)) {}
ConfinedDirectory::ConfinedDirectory(ConfinedDirectory&& other) noexcept = default;
ConfinedDirectory& ConfinedDirectory::operator=(ConfinedDirectory&& other) noexcept = default;
ConfinedDirectory::~ConfinedDirectory() = default;

std::string ConfinedDirectory::createDirectories(const Names& names) {
    return implementation_->enter(names.begin(), names.end());
}

std::string ConfinedDirectory::writeFile(const Names& names, const void* content,
                                         std::uint64_t size) {
    const std::string problem = implementation_->enter(names.begin(), names.end() - 1);
    return problem.empty() ? implementation_->write(names.back(), content, size) : problem;
}

}  // namespace VelmoraQuavin::internal::platform
