#pragma once

#include <map>
#include <set>
#include <string>
#include <sys/types.h>
#include <utility>

namespace qndr::simulation {

/// What becomes of a folder's files when the power fails: those that are new since the object was made and were
/// not made durable are gone or empty. It sees every fsync of this process. One at a time.
class UnflushedFiles {
  public:
    explicit UnflushedFiles(std::string folder);
    ~UnflushedFiles();
    UnflushedFiles(const UnflushedFiles&) = delete;
    UnflushedFiles& operator=(const UnflushedFiles&) = delete;

    void SeeFlush(int handle);
    /// The power fails. Gives the names of what was lost.
    std::set<std::string> Lose();

  private:
    using Identity = std::pair<dev_t, ino_t>;

    std::map<std::string, Identity> Names() const;

    std::string folder_;
    std::map<std::string, Identity> names_; ///< as they stand on the disk
    std::set<Identity> contents_;           ///< of files, that are on the disk
};

} // namespace qndr::simulation
