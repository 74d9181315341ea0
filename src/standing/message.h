#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qndr::standing {

/// How far one end of a pairing is. On main these are the numbers of the workstation's row.
struct Position {
    int state = 0;             ///< SyncState
    std::int64_t nextTo = 0;   ///< number of the next change file to the partner
    std::int64_t nextFrom = 0; ///< number of the file that is expected from it
    std::int64_t place = 0;    ///< the AuditLog.ID up to which changes were sent
    std::int64_t waiting = 0;  ///< audit rows above it
    std::string waitingSince;  ///< of the oldest of them; empty without one

    bool operator==(const Position&) const = default;
};

/// What one side of a pairing tells the other. Dates are UTC, "yyyymmdd hh:nn:ss".
struct Message {
    std::string from;
    std::string to;
    std::int64_t number = 0; ///< rises with each message of a sender to this partner
    std::int64_t heard = 0;  ///< the number of the partner's message that was read last
    std::string writtenOn;
    std::string computer;
    std::string program;
    std::int64_t schema = 0;
    Position position;
    std::int64_t conflicts = 0; ///< that wait for a person
    std::int64_t problems = 0;
    std::int64_t refused = 0;
    std::vector<std::int64_t> filesTo;   ///< numbers of files in the Sync folder, for the partner
    std::vector<std::int64_t> filesFrom; ///< and of the partner's
    std::vector<std::string> troubles;   ///< kinds that the sender's doctor finds
    std::int64_t frequency = 0;          ///< minutes between its passes
    std::string provenOn; ///< the moment of which both ends are known to hold the same; empty for never
    bool asksForProof = false;
    std::string proof;  ///< identity of the proof that main offers, or that the workstation has compared
    std::string answer; ///< of the proof whose comparison main has worked off
    /// Of a workstation: main's place up to which it had everything before it asked anew by itself.
    std::int64_t knownPlace = 0;
    bool gaveUp = false;      ///< of a workstation: what it gave up then goes with the message
    std::int64_t givenUp = 0; ///< of main: the message whose given-up rows it has looked at
    bool alike = false;       ///< of a workstation: it holds what the proof says, as far as that can be compared
};

/// What a message says but for its moment and the numbers of messages: as long as it is the same, there is nothing
/// new to tell.
bool SaysTheSame(const Message& left, const Message& right);

std::string ToText(const Message& message);

/// Nothing for a text that is no message, that has a value of the wrong kind or that is beyond what a message can
/// say. Unknown keys are passed over.
std::optional<Message> ReadMessage(std::string_view text);

/// The name of the message's file in the Sync folder; empty for identities that are none, for they may come from
/// anybody's file. No pattern by which files are looked for there matches it.
std::string FileName(std::string_view toUniqueID, std::string_view fromUniqueID);

} // namespace qndr::standing
