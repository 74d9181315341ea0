#pragma once

#include "services/platform.h"
#include "standing/verdict.h"
#include "suite/sql/connection.h"

#include <cstdint>
#include <string>
#include <vector>

namespace qndr::suite {

/// How one pairing of a company stands, as far as this end knows.
struct PairingView {
    std::string partner; ///< UniqueID
    std::string name;    ///< what a person calls the partner
    std::string heardOn; ///< UTC, by this computer's clock; empty for never
    std::string provenOn;
    std::int64_t behind = 0; ///< changes of both ends that wait
    standing::Verdict verdict;
    std::vector<std::string> troubles; ///< that the partner's own doctor has, as kinds
};

/// All pairings of a company at this moment; a main company's in the order of their names. `mendMinutes` as in the
/// settings. Changes nothing. Raises services::Failure when the database does not work.
std::vector<PairingView> ReadPairings(const sql::Connection& connection, const services::Clock& clock,
                                      std::int64_t mendMinutes);

/// Asks for a proof of every pairing of the company at the next passes.
void AskForProof(const sql::Connection& connection);

} // namespace qndr::suite
