#pragma once

#include "suite/sql/connection.h"
#include "suite/standing/pairing_standing.h"

#include <string>
#include <vector>

namespace qndr::suite {

/// What an exchange of standing did beside telling: lines for the log, and events for the company.
struct StandingReport {
    std::vector<std::string> lines;
    std::vector<std::string> events;
};

/// Tells each partner of the company how it stands, hears how the partner stands, and does what follows: offers a
/// proof or compares one, repairs rows that differ, mends a pairing that is out of step. A partner that tells
/// nothing is told, and nothing else. Raises services::Failure when the database does not work; what was done by
/// then stands.
StandingReport ExchangeStanding(const sql::Connection& connection, const StandingSurroundings& surroundings);

// The two sides of it.
void ExchangeAsMain(const sql::Connection& connection, const StandingSurroundings& surroundings,
                    StandingReport& report);
void ExchangeAsWorkstation(const sql::Connection& connection, const StandingSurroundings& surroundings,
                           StandingReport& report);

/// What a company of either kind tells of itself.
standing::Message DescribeCompany(const sql::Connection& connection, const StandingSurroundings& surroundings);

/// How many audit rows stand above a place, and since when; `newest` is the highest there is.
void DescribeWaiting(const sql::Connection& connection, std::int64_t newest, standing::Position& position);

} // namespace qndr::suite
