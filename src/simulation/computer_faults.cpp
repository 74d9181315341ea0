#include "simulation/computer_faults.h"

#include "simulation/database_disk.h"

#include <string>

namespace qndr::simulation {
namespace {

constexpr std::int64_t HourMinutes = 60;
constexpr std::int64_t Kibibyte = 1024;
constexpr std::int64_t LongestLockSeconds = 20 * 60; ///< twice as long as an import waits
constexpr const char* UnlockTick = "another program lets go";

bool WritesToTheDatabase(Call call) {
    return call == calls::Database::ExecuteNonQuery || call == calls::Engine::ImportFile ||
           call == calls::SharedCodeLibrary::QNDRSQL || call == calls::SqlConnection::ExecuteNonQuery;
}

} // namespace

ComputerFaults::ComputerFaults(SimulatedComputer& computer, const FaultPlan& plan, SeededRandom random,
                               Chronicle& chronicle)
    : computer_(computer), plan_(plan), random_(random), chronicle_(chronicle) {
    DatabaseDisk::SetRoom(computer_.Companies(), DatabaseDisk::Endless);
}

ComputerFaults::~ComputerFaults() {
    LetGo();
}

void ComputerFaults::MoveTo(std::int64_t minute) {
    if (minute < disturbedUntil_) {
        return;
    }
    End();
    if (random_.Chance(plan_.Rate(Fault::DiskFull))) {
        const std::int64_t room = random_.Below(100);
        chronicle_.NoteFault(computer_.Name(), "disk-full",
                             "its disk has room for " + std::to_string(room) + " KiB");
        diskFull_ = true;
        DatabaseDisk::SetRoom(computer_.Companies(), room * Kibibyte);
        disturbedUntil_ = minute + random_.Below(8 * HourMinutes);
    } else if (random_.Chance(plan_.Rate(Fault::ShareFails))) {
        chronicle_.NoteFault(computer_.Name(), "share-fails", "its share fails");
        shareFailure_ = random_.Chance(0.5) ? 1 : 0.3;
        disturbedUntil_ = minute + random_.Below(4 * HourMinutes);
    }
}

void ComputerFaults::BeginPass() {
    wasFelt_ = false;
    refusalsBefore_ = DatabaseDisk::Refusals(computer_.Companies());
    writesUntilLock_ = random_.Chance(plan_.Rate(Fault::LockDatabase)) ? random_.Below(8) : -1;
}

void ComputerFaults::BeforeCall(Call call) {
    if (writesUntilLock_ >= 0 && WritesToTheDatabase(call) && --writesUntilLock_ < 0) {
        Hold();
    }
}

void ComputerFaults::EndPass() {
    LetGo();
    writesUntilLock_ = -1;
}

void ComputerFaults::End() {
    diskFull_ = false;
    shareFailure_ = 0;
    DatabaseDisk::SetRoom(computer_.Companies(), DatabaseDisk::Endless);
}

bool ComputerFaults::WasFelt() const {
    return wasFelt_ || DatabaseDisk::Refusals(computer_.Companies()) != refusalsBefore_;
}

/// With a cache of its own, for what shares the application's finds its lock without waiting.
void ComputerFaults::Hold() {
    const std::int64_t seconds = 30 + random_.Below(LongestLockSeconds);
    chronicle_.NoteFault(computer_.Name(), "lock-database",
                         "another program holds its database for " + std::to_string(seconds) + " s");
    sqlite3* opened = nullptr;
    const std::string path = computer_.Companies() + "/dealer.db";
    const int result =
        sqlite3_open_v2(path.c_str(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_PRIVATECACHE, nullptr);
    lock_.reset(opened);
    if (result != SQLITE_OK || sqlite3_exec(opened, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr) != SQLITE_OK) {
        throw Violation{"the database of " + computer_.Name() + " cannot be locked: " + sqlite3_errmsg(opened)};
    }
    wasFelt_ = true;
    computer_.Time().Loop().AddTick(UnlockTick, seconds * 1000, [this] { LetGo(); });
}

void ComputerFaults::LetGo() {
    computer_.Time().Loop().RemoveTick(UnlockTick);
    lock_.reset();
}

bool ComputerFaults::ShareFails() {
    if (shareFailure_ == 0 || !random_.Chance(shareFailure_)) {
        return false;
    }
    wasFelt_ = true;
    return true;
}

std::error_code ComputerFaults::Facts(const std::string& path, suite::FileFacts& facts) {
    return ShareFails() ? std::make_error_code(std::errc::io_error) : FileReads::Facts(path, facts);
}

std::error_code ComputerFaults::Open(const std::string& path, suite::OpenFile& file) {
    return ShareFails() ? std::make_error_code(std::errc::io_error) : FileReads::Open(path, file);
}

std::error_code ComputerFaults::ReadAt(suite::OpenFile& file, std::uint64_t offset, std::span<char> buffer,
                                       std::size_t& count) {
    return ShareFails() ? std::make_error_code(std::errc::io_error)
                        : FileReads::ReadAt(file, offset, buffer, count);
}

} // namespace qndr::simulation
