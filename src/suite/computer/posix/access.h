#pragma once

#include <string>

namespace qndr::suite {

/// Lets those use the open file, a new one of this user's, who may write `neighbour`, the folder that it lies in
/// or a file that it goes with: reading and writing for the group or for all others where `neighbour` has writing
/// for them. The group becomes the neighbour's. Nobody else may touch it. What the file system does not do is
/// left: the file was made for this user alone.
void ShareLike(int handle, const std::string& neighbour);

/// Gives the open file, a new one of this user's, the permissions of the file at the path, for its group only
/// where it can have that group.
void CopyAccess(int handle, const std::string& path);

} // namespace qndr::suite
