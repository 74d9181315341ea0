#include "suite/computer/operating_system.h"
#include "suite/standing/repair.h"
#include "suite/standing/row_digests.h"
#include "suite/standing/standing_exchange.h"

#include <optional>
#include <utility>

namespace qndr::suite {

namespace {

using standing::Message;

constexpr int Ready = 4;

struct Workstation {
    std::string uniqueID;
    std::string name;
    standing::Position position;
    std::int64_t refused = 0;
};

std::vector<Workstation> ReadWorkstations(const sql::Connection& connection) {
    sql::Statement rows = connection.Prepare(
        "SELECT UniqueID, ifnull(nullif(Name, ''), UniqueID), SyncState, LastAuditID, NextSequenceToRoaming, "
        "NextSequenceFromRoaming, (SELECT COUNT(*) FROM RefusedFiles WHERE Sender = UniqueID) "
        "FROM RoamingWorkstations ORDER BY ID");
    std::vector<Workstation> workstations;
    while (rows.Step()) {
        Workstation workstation;
        workstation.uniqueID = rows.Text(0);
        workstation.name = rows.Text(1);
        workstation.position.state = static_cast<int>(rows.Integer(2));
        workstation.position.place = rows.Integer(3);
        workstation.position.nextTo = rows.Integer(4);
        workstation.position.nextFrom = rows.Integer(5);
        workstation.refused = rows.Integer(6);
        workstations.push_back(std::move(workstation));
    }
    return workstations;
}

std::string Counted(std::size_t number, const std::string& one, const std::string& several) {
    return std::to_string(number) + " " + (number == 1 ? one : several);
}

/// The digests of this moment, made once for all workstations that stand at it.
class Proof {
  public:
    Proof(const sql::Connection& connection, std::string now) : connection_(connection), now_(std::move(now)) {}

    /// False when the company has moved on from the place: somebody is at work.
    bool MakeAt(std::int64_t place) {
        if (id_.empty()) {
            const sql::Transaction reading(connection_, sql::Transaction::Kind::Read);
            place_ = connection_.Number("SELECT MAX(ID) FROM AuditLog");
            if (place_ != place) {
                return false;
            }
            digests_ = standing::ToText(DigestTables(connection_));
            id_ = RandomToken();
        }
        return place_ == place;
    }
    /// To be called once somebody is offered it.
    void Keep() {
        if (!kept_) {
            KeepProof(connection_, id_, digests_);
            kept_ = true;
        }
    }
    const std::string& ID() const { return id_; }
    const std::string& MadeOn() const { return now_; }

  private:
    const sql::Connection& connection_;
    std::string now_;
    std::string id_;
    std::string digests_;
    std::int64_t place_ = 0;
    bool kept_ = false;
};

class MainStanding {
  public:
    MainStanding(const sql::Connection& connection, const StandingSurroundings& surroundings,
                 StandingReport& report)
        : connection_(connection), surroundings_(surroundings), report_(report),
          company_(DescribeCompany(connection, surroundings)),
          census_(surroundings.archives, surroundings.syncFolder, company_.from),
          newest_(connection.Number("SELECT MAX(ID) FROM AuditLog")),
          proof_(connection, NowText(surroundings.clock)) {}

    void Exchange(const Workstation& workstation) {
        if (standing::FileName(workstation.uniqueID, company_.from).empty()) {
            return;
        }
        PairingStanding pairing(connection_, surroundings_, company_.from, workstation.uniqueID);
        if (pairing.Hear() != PairingStanding::News::None) {
            WorkOffAnswer(pairing, workstation);
        }
        OfferProof(pairing, workstation);
        Tell(pairing, workstation);
        pairing.Save();
    }

  private:
    void WorkOffAnswer(PairingStanding& pairing, const Workstation& workstation) {
        PartnerStanding& memory = pairing.Memory();
        const Message& partner = *pairing.Partner();
        if (memory.proof.empty() || partner.proof != memory.proof || memory.answer == memory.proof) {
            return;
        }
        const auto lists = standing::ReadRowLists(pairing.Rows());
        const RepairWork work =
            lists ? RepairListedRows(connection_, workstation.uniqueID, memory.proofPlace, *lists) : RepairWork();
        memory.answer = memory.proof;
        memory.alike = partner.alike && work.Empty();
        memory.rows = standing::ToText(work.asked);
        memory.wantsProof = !memory.alike && work.stubborn == 0;
        if (memory.alike) {
            memory.provenOn = memory.proofOn;
            ForgetRepairs(connection_, workstation.uniqueID);
        }
        Report(workstation, work);
    }

    void Report(const Workstation& workstation, const RepairWork& work) {
        if (!work.sent.empty()) {
            std::string text = Counted(work.sent.size(), "row", "rows") + " differed at " + workstation.name +
                               " and will be sent again: " + work.sent.front();
            if (work.sent.size() > 1) {
                text += " and others";
            }
            Say(text + ".");
        }
        std::size_t asked = 0;
        for (const standing::RowList& list : work.asked) {
            asked += list.rows.size();
        }
        if (asked > 0) {
            Say(workstation.name + " holds " + Counted(asked, "row", "rows") +
                " that never came here and is asked to send them again.");
        }
        if (work.stubborn > 0) {
            Say(Counted(static_cast<std::size_t>(work.stubborn), "row goes", "rows go") + " on differing at " +
                workstation.name + " though sent again three times.");
        }
    }
    void Say(const std::string& text) {
        report_.lines.push_back(text);
        report_.events.push_back(text);
    }

    /// Only to a workstation that stands still, that speaks of its own standing, and that has read what it was
    /// offered before.
    void OfferProof(PairingStanding& pairing, const Workstation& workstation) {
        PartnerStanding& memory = pairing.Memory();
        const Message* const partner = pairing.Partner();
        const bool isStill = workstation.position.state == Ready && workstation.position.place == newest_;
        if (partner == nullptr || partner->position.state != Ready || !isStill || !IsDue(memory, *partner)) {
            return;
        }
        const bool isOffered =
            !memory.proof.empty() && memory.proofPlace == newest_ && memory.answer != memory.proof;
        const bool hasLooked = memory.proof.empty() || partner->heard >= memory.proofNumber;
        if (isOffered || !hasLooked || !proof_.MakeAt(workstation.position.place)) {
            return;
        }
        proof_.Keep();
        memory.proof = proof_.ID();
        memory.proofOn = proof_.MadeOn();
        memory.proofPlace = workstation.position.place;
        memory.proofNumber = pairing.NextNumber();
    }

    bool IsDue(const PartnerStanding& memory, const Message& partner) const {
        const std::int64_t hours = surroundings_.proofHours;
        const bool isOld = hours > 0 && (memory.provenOn.empty() ||
                                         MinutesBetween(memory.provenOn, proof_.MadeOn()) >= hours * 60);
        return memory.wantsProof || partner.asksForProof || isOld;
    }

    /// Of the rows that a workstation gave up, those that nobody else has changed since it had everything.
    std::string Untouched(const Message& partner, const std::string& givenUp) const {
        sql::Statement newest = connection_.Prepare("SELECT ID, ifnull(Origin, '') = ?3 COLLATE NOCASE FROM "
                                                    "AuditLog WHERE TableName = ?1 COLLATE NOCASE AND "
                                                    "AuditUniqueID = ?2 ORDER BY ID DESC LIMIT 1");
        std::vector<standing::RowList> lists =
            standing::ReadRowLists(givenUp).value_or(std::vector<standing::RowList>());
        for (standing::RowList& list : lists) {
            std::erase_if(list.rows, [&](const standing::RowDigest& row) {
                newest.Bind(1, list.table);
                newest.Bind(2, row.uniqueID);
                newest.Bind(3, partner.from);
                const bool isTouched =
                    newest.Step() && newest.Integer(0) > partner.knownPlace && newest.Integer(1) == 0;
                newest.Reset();
                return isTouched;
            });
        }
        return standing::ToText(lists);
    }

    void Tell(PairingStanding& pairing, const Workstation& workstation) {
        const PartnerStanding& memory = pairing.Memory();
        Message message = company_;
        message.to = workstation.uniqueID;
        message.position = workstation.position;
        if (message.position.state == Ready) { // what waits for nobody is not counted at each pass
            DescribeWaiting(connection_, newest_, message.position);
        }
        message.refused = workstation.refused;
        message.filesTo = census_.Files(workstation.uniqueID, company_.from, false);
        message.filesFrom = census_.Files(company_.from, workstation.uniqueID, true);
        message.heard = pairing.Partner() != nullptr ? pairing.Partner()->number : 0;
        message.provenOn = memory.provenOn;
        message.answer = memory.answer;
        std::string givenUp;
        if (!pairing.GivenUp().empty()) {
            givenUp = Untouched(*pairing.Partner(), pairing.GivenUp());
            message.givenUp = pairing.Partner()->number;
        }
        const bool offers = !memory.proof.empty() && memory.proof != memory.answer &&
                            memory.proofPlace == workstation.position.place && message.position.waiting == 0;
        message.proof = offers ? memory.proof : "";
        if (pairing.HasToTell(message)) {
            pairing.Tell(
                {std::move(message), offers ? ReadProof(connection_, memory.proof) : "", memory.rows, givenUp});
        }
    }

    const sql::Connection& connection_;
    const StandingSurroundings& surroundings_;
    StandingReport& report_;
    Message company_;
    SyncFolderCensus census_;
    std::int64_t newest_;
    Proof proof_;
};

} // namespace

void ExchangeAsMain(const sql::Connection& connection, const StandingSurroundings& surroundings,
                    StandingReport& report) {
    MainStanding standing(connection, surroundings, report);
    for (const Workstation& workstation : ReadWorkstations(connection)) {
        standing.Exchange(workstation);
    }
    ForgetProofsNotOffered(connection);
}

} // namespace qndr::suite
