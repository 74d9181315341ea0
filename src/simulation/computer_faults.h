#pragma once

#include "services/gated/call_names.h"
#include "simulation/chronicle.h"
#include "simulation/faults.h"
#include "simulation/simulated_computer.h"
#include "suite/files/file_reads.h"

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <system_error>

namespace qndr::simulation {

/// What befalls a computer below the seam, where the suite has to bear it: another program holds the database for
/// longer than anybody waits, the disk is full or fills in the middle of an import, the share fails. None of it
/// may cost anything but time.
class ComputerFaults : public suite::FileReads {
  public:
    /// All must outlive the object.
    ComputerFaults(SimulatedComputer& computer, const FaultPlan& plan, SeededRandom random, Chronicle& chronicle);
    ~ComputerFaults() override;

    /// What may befall the computer from this minute on.
    void MoveTo(std::int64_t minute);
    void BeginPass();
    /// In front of a call of the pass.
    void BeforeCall(Call call);
    void EndPass();
    /// Everything is mended.
    void End();

    bool IsDiskFull() const { return diskFull_; }
    /// Whether nobody at the computer can store anything at this moment.
    bool IsClosedToUsers() const { return diskFull_ || lock_ != nullptr; }
    /// Whether something of all this was felt in this pass.
    bool WasFelt() const;

    std::error_code Facts(const std::string& path, suite::FileFacts& facts) override;
    std::error_code Open(const std::string& path, suite::OpenFile& file) override;
    std::error_code ReadAt(suite::OpenFile& file, std::uint64_t offset, std::span<char> buffer,
                           std::size_t& count) override;

  private:
    struct Closer {
        void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
    };

    void Hold();
    void LetGo();
    bool ShareFails();

    SimulatedComputer& computer_;
    const FaultPlan& plan_;
    SeededRandom random_;
    Chronicle& chronicle_;
    std::int64_t disturbedUntil_ = 0; ///< minute
    bool diskFull_ = false;
    double shareFailure_ = 0; ///< chance of each call
    std::int64_t writesUntilLock_ = -1;
    std::unique_ptr<sqlite3, Closer> lock_; ///< of another program
    std::int64_t refusalsBefore_ = 0;
    bool wasFelt_ = false;
};

} // namespace qndr::simulation
