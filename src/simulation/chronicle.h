#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <set>
#include <string>

namespace qndr::simulation {

/// Something that must never be: the run ends with it. Not a failure of the outside, so that no guard of an agent
/// takes it for one.
struct Violation {
    std::string what;
};

/// What happens in a run, in its order. Two runs of one seed have the same chronicle, to the last event.
class Chronicle {
  public:
    void SetTime(std::int64_t minutes) { minutes_ = minutes; }
    void Note(const std::string& computer, const std::string& event);
    /// Also counts it.
    void NoteFault(const std::string& computer, const std::string& kind, const std::string& event);
    /// A loss that the protocol itself allows, by its name. It explains what comes of it.
    void NoteLoss(const std::string& name) { ++losses_[name]; }

    /// A number that stands for all events so far.
    std::uint64_t Fingerprint() const { return fingerprint_; }
    const std::deque<std::string>& LastEvents() const { return last_; }
    const std::map<std::string, std::int64_t>& Faults() const { return faults_; }
    const std::map<std::string, std::int64_t>& Losses() const { return losses_; }

  private:
    std::int64_t minutes_ = 0;
    std::uint64_t fingerprint_ = 14695981039346656037U;
    std::deque<std::string> last_;
    std::map<std::string, std::int64_t> faults_;
    std::map<std::string, std::int64_t> losses_;
};

} // namespace qndr::simulation
