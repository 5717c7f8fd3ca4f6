#pragma once

#include <string>

namespace VelmoraQuavin::internal::platform {

/// Renames a file or directory to a name that is not in use.
/// @param directory the open directory that relative names start from.
/// @return whether it succeeded; errno is EEXIST if the name was taken, even at the last moment.
bool renameToNew(int directory, const std::string& from, const std::string& to);

/// As above, for systems and file systems that cannot do this in one step: a file briefly has both
/// names, and a directory replaces an empty one.
bool renameToNewInSteps(int directory, const std::string& from, const std::string& to);

}  // namespace VelmoraQuavin::internal::platform
