#pragma once

#include "suite/computer/file_calls.h"

#include <string>
#include <string_view>

namespace qndr::suite {

/// Writes the text beside the file and puts it in its place in one step: a reader finds the old content or the
/// new, and a failure leaves the old. The permissions of a file that is there stay; a new one is this user's
/// alone. With FileAccess::LikeFolder it is for those who may write into the folder, whoever may read what is
/// there. Does not wait for the disk. The system's words on failure, empty on success.
std::string ReplaceFile(const std::string& path, std::string_view text, FileAccess access = FileAccess::Private);

} // namespace qndr::suite
