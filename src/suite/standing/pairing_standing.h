#pragma once

#include "services/platform.h"
#include "suite/files/archive_shelf.h"
#include "suite/sql/connection.h"
#include "suite/standing/standing_files.h"
#include "suite/standing/standing_memory.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace qndr::suite {

/// What an exchange of standing needs beside the company.
struct StandingSurroundings {
    const services::Clock& clock;
    ArchiveShelf& archives;
    std::string syncFolder; ///< with a separator at its end
    std::string computer;
    std::string program;          ///< version of the agent
    std::int32_t frequency = 0;   ///< minutes between passes
    std::int32_t proofHours = 0;  ///< between two proofs; 0 for none unless somebody asks
    std::int32_t mendMinutes = 0; ///< that a trouble lasts before it is mended; 0 for never
};

/// The present moment in UTC, "yyyymmdd hh:nn:ss".
std::string NowText(const services::Clock& clock);
/// Minutes from one such moment to another; a large number where one of them is none.
std::int64_t MinutesBetween(const std::string& from, const std::string& to);

/// The moment so many minutes behind another one; that one where it is none.
std::string AddMinutes(const std::string& date, std::int64_t minutes);

/// One pairing while its standing is exchanged: what is remembered of it, the partner's message, and what is told
/// to it. Database errors are raised as services::Failure.
class PairingStanding {
  public:
    PairingStanding(const sql::Connection& connection, const StandingSurroundings& surroundings, std::string own,
                    std::string partner);

    enum class News {
        None,
        Message,
        Forgotten, ///< a message in which the partner counts its messages from an earlier one: it was restored
    };
    /// Reads the partner's file when it is another one than last time. What is older than what was heard before
    /// came late and is passed over.
    News Hear();

    /// The partner's newest message; null when there never was one.
    const standing::Message* Partner() const { return partner_ ? &*partner_ : nullptr; }
    /// What came with the message that is new in this pass; empty without one.
    const std::string& Proof() const { return proof_; }
    const std::string& Rows() const { return rows_; }
    const std::string& GivenUp() const { return givenUp_; }

    /// What is remembered; Save stores it.
    PartnerStanding& Memory() { return memory_; }
    const std::string& Own() const { return own_; }
    const std::string& PartnerID() const { return memory_.partner; }
    const std::string& Now() const { return now_; }

    /// Whether the message says something that the one told last does not, or that one is an hour old or gone, or
    /// does not tell yet that the offer of the partner was read.
    bool HasToTell(const standing::Message& message) const;
    /// The number of the next message.
    std::int64_t NextNumber() const { return memory_.number + 1; }
    /// The number and the moment of the message are set here.
    void Tell(StandingFile file);
    void Save();

  private:
    std::string PathTo() const;
    std::string PathFrom() const;
    void NoteComputer(const std::string& name);

    const sql::Connection& connection_;
    const StandingSurroundings& surroundings_;
    std::string own_;
    std::string now_;
    PartnerStanding stored_;
    PartnerStanding memory_;
    std::optional<standing::Message> partner_;
    std::string proof_;
    std::string rows_;
    std::string givenUp_;
};

} // namespace qndr::suite
