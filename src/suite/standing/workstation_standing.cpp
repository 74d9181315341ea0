#include "standing/mending.h"
#include "suite/admin/conflicts.h"
#include "suite/admin/provisioning.h"
#include "suite/standing/proof_comparison.h"
#include "suite/standing/repair.h"
#include "suite/standing/standing_exchange.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace qndr::suite {

namespace {

using standing::Message;

constexpr int Ready = 4;
/// So many times longer is waited for what may only be late.
constexpr std::int64_t Lateness = 24;

/// The workstation's AuditLog.ID up to which the first `files` files to main went; 0 when that is not known.
std::int64_t SentWith(const sql::Connection& connection, std::int64_t files) {
    sql::Statement range = connection.Prepare("SELECT LastAuditID FROM SentRanges WHERE Receiver = '' AND "
                                              "NextSequence <= ?1 ORDER BY NextSequence DESC LIMIT 1");
    range.Bind(1, files);
    return range.Step() ? range.Integer(0) : 0;
}

class WorkstationStanding {
  public:
    WorkstationStanding(const sql::Connection& connection, const StandingSurroundings& surroundings,
                        StandingReport& report, const std::string& main)
        : connection_(connection), surroundings_(surroundings), report_(report),
          message_(DescribeCompany(connection, surroundings)),
          pairing_(connection, surroundings, message_.from, main), memory_(pairing_.Memory()) {
        message_.to = main;
        Describe();
    }

    void Exchange() {
        const PairingStanding::News news = pairing_.Hear();
        if (news == PairingStanding::News::Forgotten) {
            memory_.knownPlace = std::min(memory_.knownPlace, pairing_.Partner()->position.place);
        }
        if (message_.position.state != Ready) {
            memory_.readyFrom = pairing_.NextNumber();
        }
        if (const Message* const main = pairing_.Partner()) {
            if (news != PairingStanding::News::None) {
                Follow(*main);
            }
            MendWhatLasts(*main, news);
        }
        Tell();
        pairing_.Save();
    }

  private:
    void Describe() {
        standing::Position& position = message_.position;
        sql::Statement row = connection_.Prepare(
            "SELECT SyncState, LastAuditID, NextSequenceToMain, NextSequenceFromMain, (SELECT COUNT(*) FROM "
            "RefusedFiles) FROM Company");
        row.Step();
        position.state = static_cast<int>(row.Integer(0));
        position.place = row.Integer(1);
        position.nextTo = row.Integer(2);
        position.nextFrom = row.Integer(3);
        message_.refused = row.Integer(4);
        DescribeWaiting(connection_, connection_.Number("SELECT MAX(ID) FROM AuditLog"), position);
        const SyncFolderCensus census(surroundings_.archives, surroundings_.syncFolder, message_.from);
        message_.filesTo = census.Files(message_.to, message_.from, true);
        message_.filesFrom = census.Files(message_.from, message_.to, false);
    }

    void Follow(const Message& main) {
        memory_.provenOn = main.provenOn;
        SendWhatMainLacks(main);
        CompareProof(main);
        SendGivenUpAgain(main);
        if (main.position.state == Ready && message_.position.state == Ready && !memory_.sendsGivenUp &&
            main.position.nextTo == message_.position.nextFrom &&
            main.position.nextFrom == message_.position.nextTo && message_.position.waiting == 0) {
            memory_.knownPlace = main.position.place;
        }
    }

    std::string ListGivenUp() const {
        std::map<std::string, standing::RowList> lists;
        for (const std::int64_t id : FindGivenUpConflicts(connection_).restorable) {
            const Conflict conflict = ReadConflict(connection_, id);
            standing::RowList& list = lists[std::string(conflict.table->name)];
            list.table = conflict.table->name;
            list.rows.push_back({conflict.uniqueID, {}, id});
        }
        std::vector<standing::RowList> all;
        for (auto& [table, list] : lists) {
            all.push_back(std::move(list));
        }
        return standing::ToText(all);
    }

    /// Of what a mending gave up, the versions of rows that nobody else has touched: what a person would restore
    /// without a thought. The others wait for a person.
    void SendGivenUpAgain(const Message& main) {
        if (!memory_.sendsGivenUp || message_.position.state != Ready || main.givenUp <= memory_.readyFrom) {
            return;
        }
        std::set<std::int64_t> untouched;
        for (const standing::RowList& list :
             standing::ReadRowLists(pairing_.GivenUp()).value_or(std::vector<standing::RowList>())) {
            for (const standing::RowDigest& row : list.rows) {
                untouched.insert(row.ownChange);
            }
        }
        std::int64_t sent = 0;
        for (const std::int64_t id : FindGivenUpConflicts(connection_).restorable) {
            if (untouched.contains(id)) {
                RestoreConflict(connection_, id);
                ++sent;
            }
        }
        memory_.sendsGivenUp = false;
        if (sent > 0) {
            Say(std::to_string(sent) + (sent == 1 ? " change" : " changes") +
                " that the asking anew had given up will be sent again; nobody else has touched the rows.");
        }
    }

    /// Once for each answer of main's.
    void SendWhatMainLacks(const Message& main) {
        if (main.answer.empty() || main.answer != memory_.answer || memory_.proof == main.answer) {
            return;
        }
        memory_.proof = main.answer;
        memory_.rows.clear();
        const auto asked = standing::ReadRowLists(pairing_.Rows());
        const std::int64_t rows = asked ? SendRowsAgain(connection_, message_.position.place, *asked) : 0;
        if (rows > 0) {
            Say(std::to_string(rows) + (rows == 1 ? " row that main lacks is" : " rows that main lacks are") +
                " sent again.");
        }
    }

    /// Only at the very moment that the proof speaks of, and not with one that was made before this workstation
    /// was in normal running.
    void CompareProof(const Message& main) {
        const standing::Position& here = message_.position;
        const bool isItsMoment = here.state == Ready && main.position.state == Ready &&
                                 main.position.nextTo == here.nextFrom && main.position.nextFrom <= here.nextTo &&
                                 main.heard >= memory_.readyFrom;
        if (main.proof.empty() || main.proof == memory_.answer || !isItsMoment) {
            return;
        }
        const auto proof = standing::ReadTableDigests(pairing_.Proof());
        if (!proof) {
            return;
        }
        const ProofComparison comparison =
            CompareWithProof(connection_, *proof, SentWith(connection_, main.position.nextFrom));
        memory_.answer = main.proof;
        memory_.alike = comparison.alike;
        memory_.rows = standing::ToText(comparison.lists);
        memory_.wantsProof = false;
    }

    /// A trouble is believed when it has lasted and main has spoken since it was first seen; never twice in a row
    /// for the same reason.
    void MendWhatLasts(const Message& main, PairingStanding::News news) {
        const standing::StepTrouble trouble = standing::FindStepTrouble(message_, main);
        if (!trouble.kind.empty() && trouble.isCertain) {
            message_.troubles = {trouble.kind};
        }
        if (trouble.what != memory_.outOfStep) {
            memory_.outOfStep = trouble.what;
            memory_.outOfStepSince = trouble.kind.empty() ? "" : pairing_.Now();
            if (trouble.kind.empty() && message_.position.state == Ready) {
                memory_.mended.clear();
            }
            return;
        }
        const std::int64_t minutes = surroundings_.mendMinutes;
        if (trouble.remedy == standing::Remedy::None || minutes <= 0 || news == PairingStanding::News::None ||
            trouble.kind == memory_.mended ||
            MinutesBetween(memory_.outOfStepSince, pairing_.Now()) <
                (trouble.isCertain ? minutes : minutes * Lateness)) {
            return;
        }
        Mend(trouble, main);
    }

    void Mend(const standing::StepTrouble& trouble, const Message& main) {
        if (trouble.remedy == standing::Remedy::Reset) {
            KeepWhatMainForgot(main);
            RequestReset(connection_);
        } else {
            // What was sent is sent again behind the first data; a request of a reset would undo them.
            DeleteFiles(surroundings_.archives, surroundings_.syncFolder, message_.from, message_.to);
            RequestInitialSync(connection_);
        }
        memory_.mended = trouble.kind;
        memory_.sendsGivenUp = true;
        memory_.outOfStep.clear();
        memory_.outOfStepSince.clear();
        Say("This company was out of step with main (" + trouble.what + ") and asks for all data anew.");
        Describe();
    }

    /// A main company that is an older copy of itself lacks files that it once confirmed; what they held counts as
    /// not confirmed from now on, and so is kept.
    void KeepWhatMainForgot(const Message& main) {
        sql::Transaction transaction(connection_, sql::Transaction::Kind::Write);
        sql::Statement range = connection_.Prepare("SELECT MIN(NextSequence) FROM SentRanges WHERE Receiver = ''");
        if (range.Step() && range.Integer(0) > main.position.nextFrom) {
            connection_.Execute(
                "UPDATE SentRanges SET LastAuditID = 0 WHERE Receiver = '' AND NextSequence = (SELECT "
                "MIN(NextSequence) FROM SentRanges WHERE Receiver = '')");
        }
        range.Reset();
        transaction.Commit();
    }

    void Tell() {
        message_.heard = pairing_.Partner() != nullptr ? pairing_.Partner()->number : 0;
        message_.provenOn = memory_.provenOn;
        message_.asksForProof = memory_.wantsProof;
        message_.proof = memory_.answer;
        message_.alike = memory_.alike;
        const bool asks = memory_.sendsGivenUp && message_.position.state == Ready;
        const std::string givenUp = asks ? ListGivenUp() : "";
        message_.gaveUp = asks;
        message_.knownPlace = asks ? memory_.knownPlace : 0;
        if (pairing_.HasToTell(message_)) {
            pairing_.Tell({message_, "", memory_.rows, givenUp});
        }
    }

    void Say(const std::string& text) {
        report_.lines.push_back(text);
        report_.events.push_back(text);
    }

    const sql::Connection& connection_;
    const StandingSurroundings& surroundings_;
    StandingReport& report_;
    Message message_;
    PairingStanding pairing_;
    PartnerStanding& memory_;
};

} // namespace

void ExchangeAsWorkstation(const sql::Connection& connection, const StandingSurroundings& surroundings,
                           StandingReport& report) {
    const std::string own = connection.Value("SELECT UniqueID FROM Company").value_or("");
    std::string main = connection.Value("SELECT MainUniqueID FROM Company").value_or("");
    if (main.empty()) { // before the first data it would take those of any company, too
        main = FindSpeaker(surroundings.syncFolder, own);
    }
    if (!standing::FileName(main, own).empty()) {
        WorkstationStanding(connection, surroundings, report, main).Exchange();
    }
}

} // namespace qndr::suite
