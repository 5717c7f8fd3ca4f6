#pragma once

#include <string>

namespace VelmoraQuavin::internal::platform {

/// Gives a file or directory another name where nothing has that name yet.
/// @param directory the open directory that relative names start from.
/// @return whether it did; errno is EEXIST where the name was taken, also at the last moment.
bool renameToNew(int directory, const std::string& from, const std::string& to);

/// The same for systems and file systems that cannot do it in one step: a file has both names for
/// a moment, and a directory takes the place of an empty one.
bool renameToNewInSteps(int directory, const std::string& from, const std::string& to);

}  // namespace VelmoraQuavin::internal::platform
