#pragma once

#include "suite/files/path_text.h"

#include <optional>
#include <set>
#include <string>

namespace qndr::suite {

/// Files that could not be written as they should be. Whoever writes a descriptor does not look at the result; so
/// that no sync file goes out with half of one, the folder that it lies in is not packed.
class UnwrittenFiles {
  public:
    void Note(const std::string& path) { paths_.insert(path); }

    /// The name of such a file in the folder (with a separator at its end), once: whoever tries again has made the
    /// folder anew.
    std::optional<std::string> Take(const std::string& folder) {
        std::optional<std::string> name;
        std::erase_if(paths_, [&](const std::string& path) {
            const bool within = FolderPart(path) == folder;
            if (within) {
                name = NamePart(path);
            }
            return within;
        });
        return name;
    }

  private:
    std::set<std::string> paths_;
};

} // namespace qndr::suite
