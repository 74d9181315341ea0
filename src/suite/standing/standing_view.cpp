#include "suite/standing/standing_view.h"

#include "suite/schema/vocabulary.h"
#include "suite/standing/pairing_standing.h"
#include "suite/standing/standing_exchange.h"

#include <optional>

namespace qndr::suite {

namespace {

constexpr std::string_view MainRows =
    "SELECT UniqueID, ifnull(nullif(Name, ''), UniqueID), SyncState, LastAuditID, NextSequenceToRoaming, "
    "NextSequenceFromRoaming FROM RoamingWorkstations ORDER BY Name, ID";
constexpr std::string_view WorkstationRow =
    "SELECT ifnull(nullif(MainUniqueID, ''), (SELECT Partner FROM PartnerStandings LIMIT 1)), 'main', SyncState, "
    "LastAuditID, NextSequenceToMain, NextSequenceFromMain FROM Company";

PairingView View(const sql::Connection& connection, const services::Clock& clock, const sql::Statement& row,
                 bool isMain, std::int64_t mendMinutes) {
    PairingView view;
    view.partner = row.Text(0);
    view.name = row.Text(1);
    standing::Position position;
    position.state = static_cast<int>(row.Integer(2));
    position.place = row.Integer(3);
    position.nextTo = row.Integer(4);
    position.nextFrom = row.Integer(5);
    DescribeWaiting(connection, connection.Number("SELECT MAX(ID) FROM AuditLog"), position);

    const PartnerStanding memory = ReadPartnerStanding(connection, view.partner);
    const std::optional<standing::Message> partner = standing::ReadMessage(memory.heard);
    standing::Outlook outlook;
    outlook.isMain = isMain;
    outlook.own = standing::ReadMessage(memory.told).value_or(standing::Message());
    outlook.own.position = position;
    outlook.partner = partner ? &*partner : nullptr;
    outlook.silentMinutes = MinutesBetween(memory.heardOn, NowText(clock));
    outlook.provenOn = memory.provenOn;
    outlook.isTwice = memory.computers.ends_with("\ntwice");
    outlook.lasting = memory.outOfStep;
    if (!memory.outOfStepSince.empty() && mendMinutes > 0 && memory.mended.empty()) {
        outlook.mendsOn = AddMinutes(memory.outOfStepSince, mendMinutes);
    }
    view.heardOn = memory.heardOn;
    view.provenOn = memory.provenOn;
    view.behind = position.waiting + (partner ? partner->position.waiting : 0);
    view.verdict = standing::Judge(outlook);
    view.troubles = partner ? partner->troubles : std::vector<std::string>();
    return view;
}

} // namespace

std::vector<PairingView> ReadPairings(const sql::Connection& connection, const services::Clock& clock,
                                      std::int64_t mendMinutes) {
    const bool isMain = connection.Number("SELECT CompanyType FROM Company") != RoamingCompanyType;
    sql::Statement rows = connection.Prepare(isMain ? MainRows : WorkstationRow);
    std::vector<PairingView> pairings;
    while (rows.Step()) {
        pairings.push_back(View(connection, clock, rows, isMain, mendMinutes));
    }
    return pairings;
}

void AskForProof(const sql::Connection& connection) {
    connection.Execute("UPDATE PartnerStandings SET WantsProof = 1");
}

} // namespace qndr::suite
