#include "suite/standing/standing_exchange.h"

#include "suite/schema/company_schema.h"
#include "suite/schema/vocabulary.h"

namespace qndr::suite {

standing::Message DescribeCompany(const sql::Connection& connection, const StandingSurroundings& surroundings) {
    standing::Message message;
    message.from = connection.Value("SELECT UniqueID FROM Company").value_or("");
    message.computer = surroundings.computer;
    message.program = surroundings.program;
    message.schema = CompanySchemaVersion;
    message.conflicts = connection.Number("SELECT COUNT(*) FROM ImportConflicts WHERE State = 0");
    message.problems = connection.Number("SELECT COUNT(*) FROM ImportProblems");
    message.frequency = surroundings.frequency;
    return message;
}

void DescribeWaiting(const sql::Connection& connection, std::int64_t newest, standing::Position& position) {
    if (newest <= position.place) {
        return;
    }
    sql::Statement waiting = connection.Prepare(
        "SELECT COUNT(*), MIN(AddedOn) FROM AuditLog WHERE ID > ?1 AND TableName <> 'RoamingWorkstations' COLLATE "
        "NOCASE");
    waiting.Bind(1, position.place);
    waiting.Step();
    position.waiting = waiting.Integer(0);
    position.waitingSince = waiting.Text(1);
}

StandingReport ExchangeStanding(const sql::Connection& connection, const StandingSurroundings& surroundings) {
    StandingReport report;
    const std::int64_t type = connection.Number("SELECT CompanyType FROM Company");
    if (type == MainCompanyType) {
        ExchangeAsMain(connection, surroundings, report);
    } else if (type == RoamingCompanyType) {
        ExchangeAsWorkstation(connection, surroundings, report);
    }
    return report;
}

} // namespace qndr::suite
