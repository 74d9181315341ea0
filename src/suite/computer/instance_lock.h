#pragma once

#include <string>

namespace qndr::suite {

/// A mark that one process at a time can hold. The system takes it back however the process ends, so no stale one
/// exists. One implementation for each platform.
class InstanceLock {
  public:
    enum class Answer { Held, HeldByAnother, Unavailable };

    /// `path` names the mark; its folder is made when it is missing.
    explicit InstanceLock(std::string path);
    ~InstanceLock();
    InstanceLock(const InstanceLock&) = delete;
    InstanceLock& operator=(const InstanceLock&) = delete;

    /// Takes the mark when it is free, and keeps it until this object goes.
    Answer Take();

  private:
    std::string path_;
    int handle_ = -1;
};

} // namespace qndr::suite
