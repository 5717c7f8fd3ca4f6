#include <string_view>

#include "quavin/files.h"

namespace VelmoraQuavin {

const String Filepath::Separator = "\\";

Filepath::Filepath() = default;

Filepath::Filepath(const String& path) : path_(path) {}

Filepath& Filepath::append(const Filepath& other) {
    path_.append(Separator + other.path_);
    return *this;
}

Filepath Filepath::parent_path() const {
    const std::string_view text = path_.view();
    const std::size_t separator = text.rfind(Separator.view());
    return separator == std::string_view::npos ? *this : Filepath(text.substr(0, separator));
}

}  // namespace VelmoraQuavin
