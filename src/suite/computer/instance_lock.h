#pragma once

#include <string>

namespace qndr::suite {

/// A mark that one holder at a time can have, in this process or in any other, or a first one and those who join
/// it. The system takes it back however the process ends, so no stale one exists. One implementation for each
/// platform.
class InstanceLock {
  public:
    enum class Answer {
        Held,
        HeldByAnother,
        Denied,     ///< something has the mark's name that this user may not open, or that is no mark
        Unavailable ///< it cannot be made, or the file system knows no such marks
    };

    /// `path` names the mark; its folder is made when it is missing. The mark is this user's alone, or also for
    /// those who may write the file `sharedLike`.
    explicit InstanceLock(std::string path, std::string sharedLike = "");
    ~InstanceLock();
    InstanceLock(const InstanceLock&) = delete;
    InstanceLock& operator=(const InstanceLock&) = delete;

    /// Takes the mark when it is free, and keeps it until this object goes.
    Answer Take() { return Lock(Way::Alone); }
    /// The same, but the mark of those who came earlier is joined: HeldByAnother, and whoever comes later finds it
    /// held until all have gone.
    Answer Join() { return Lock(Way::Together); }

  private:
    enum class Way { Alone, Together };

    Answer Lock(Way way);
    /// Opens the mark, or makes it; below 0 when neither can be done.
    int Open() const;

    std::string path_;
    std::string sharedLike_;
    int handle_ = -1;
    Answer answer_ = Answer::Unavailable; ///< to the first question
};

} // namespace qndr::suite
