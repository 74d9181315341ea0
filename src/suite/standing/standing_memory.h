#pragma once

#include "suite/sql/connection.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace qndr::suite {

/// What a company remembers of its standing with one partner. Dates are UTC, "yyyymmdd hh:nn:ss".
struct PartnerStanding {
    std::string partner;     ///< UniqueID
    std::int64_t number = 0; ///< of the message that was told last
    std::string told;        ///< that message
    std::string toldFile;    ///< the facts of its file, by which is known that it still lies there
    std::string heard;       ///< the partner's newest message
    std::string heardFile;   ///< the facts of the file that was read last
    std::string heardOn;     ///< by this computer's clock
    std::string provenOn;    ///< the moment of which both ends are known to hold the same; empty for never
    bool wantsProof = false; ///< a proof is due whenever it was made last

    // On main: the proof that is offered.
    std::string proof; ///< its identity; empty without one
    std::string proofOn;
    std::int64_t proofPlace = 0;  ///< the AuditLog.ID that it speaks of
    std::int64_t proofNumber = 0; ///< of the first message that offered it

    // At both ends: the comparison. On main the one that was worked off, and what the workstation is to send
    // again; on a workstation the one that was made, and the rows in question.
    std::string answer;
    std::string rows;
    bool alike = false;

    std::int64_t readyFrom = 0; ///< on a workstation: its first message since it was not in normal running
    std::string outOfStep;      ///< the trouble that both ends' numbers show, in words; empty for none
    std::string outOfStepSince;
    std::string mended;    ///< the kind that was mended last, until the pairing was in step again
    std::string computers; ///< the names of the partner's computer, the present one first

    // On a workstation: main's AuditLog.ID up to which it had everything when both were last in step, and whether
    // what a mending gave up waits for main to say which of its rows nobody else has touched.
    std::int64_t knownPlace = 0;
    bool sendsGivenUp = false;

    bool operator==(const PartnerStanding&) const = default;
};

// All raise services::Failure when the database does not work.

/// An empty one for a partner that nothing is known of.
PartnerStanding ReadPartnerStanding(const sql::Connection& connection, std::string_view partner);
void WritePartnerStanding(const sql::Connection& connection, const PartnerStanding& standing);

/// The digests of a proof, as long as somebody is offered it.
std::string ReadProof(const sql::Connection& connection, std::string_view proof);
void KeepProof(const sql::Connection& connection, std::string_view proof, std::string_view digests);
void ForgetProofsNotOffered(const sql::Connection& connection);

} // namespace qndr::suite
