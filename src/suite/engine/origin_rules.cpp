#include "suite/engine/origin_rules.h"

#include "suite/engine/given_up_changes.h"
#include "suite/schema/vocabulary.h"
#include "text/letter_case.h"

#include <optional>

namespace qndr::suite {

namespace {

NotTakenFiles NotTakenBy(const sql::Connection& connection, std::string_view receiver, std::string_view refused,
                         std::string_view own) {
    NoteNotTakenFiles(connection, receiver, refused, own);
    return {connection, receiver};
}

} // namespace

OriginRules::OriginRules(const sql::Connection& connection, const ImportBatch& file, Arrival arrival)
    : connection_(connection),
      newest_(connection.Prepare(
          "SELECT ID, Origin, AuditType FROM AuditLog WHERE TableName = ?1 COLLATE NOCASE AND AuditUniqueID = ?2 "
          "ORDER BY ID DESC LIMIT 1")),
      own_(connection.Value("SELECT UniqueID FROM Company").value_or("")), sender_(file.from),
      isMain_(connection.Number("SELECT CompanyType FROM Company") != RoamingCompanyType),
      skipped_(connection, sender_),
      notTaken_(NotTakenBy(connection, Receiver(), arrival == Arrival::InTurn ? file.refused : "", own_)),
      latest_(connection.Number("SELECT MAX(ID) FROM AuditLog")) {
    if (!isMain_) {
        sent_ = connection.Number("SELECT LastAuditID FROM Company");
    }
    if (arrival == Arrival::ByHand) {
        // The file's numbers may be of an older numbering, and CoveredBy would forget what they seem to confirm.
        return;
    }
    const std::optional<std::int64_t> files = AcceptedFilesOf(file.seen, own_);
    tellsSeen_ = files.has_value();
    known_ = files ? CoveredBy(connection, Receiver(), *files) : sent_;
    isResetPending_ = IsResetPending(connection);
    if (isResetPending_) {
        // What this workstation had against main is given up and kept; none of it will ever be sent.
        known_ = latest_;
    }
}

std::string_view OriginRules::Receiver() const {
    return isMain_ ? std::string_view(sender_) : MainReceiver;
}

OriginRules::Newest OriginRules::NewestAudit(std::string_view table, std::string_view uniqueID) {
    newest_.Bind(1, table);
    newest_.Bind(2, uniqueID);
    Newest newest;
    if (newest_.Step()) {
        newest = {newest_.Integer(0), std::string(newest_.Text(1)), newest_.Integer(2) == AuditDeletion};
    }
    newest_.Reset();
    return newest;
}

bool OriginRules::IsOwnBeforeNewest(const Newest& newest, std::string_view origin, std::int64_t originID) const {
    return !isMain_ && !tellsSeen_ && !isResetPending_ && text::EqualsWithoutCase(origin, own_) &&
           newest.id > originID && newest.id <= latest_;
}

bool OriginRules::WasKnown(std::string_view table, const Newest& newest) const {
    return newest.id <= known_ && !skipped_.Hides(table, newest.id) && !notTaken_.Hold(newest.id);
}

OriginRules::Decision OriginRules::Decide(std::string_view table, std::string_view uniqueID,
                                          std::string_view origin, std::int64_t originID) {
    // A full import asks half a million times: nothing is looked up where no local version can matter.
    if (tellsSeen_ && latest_ <= known_ && skipped_.Empty() && notTaken_.Empty()) {
        return {};
    }
    const Newest newest = NewestAudit(table, uniqueID);
    if (IsOwnBeforeNewest(newest, origin, originID)) {
        return {Verdict::PassOver, {}, {}};
    }
    // Audit rows above latest_ are this import's own.
    if (WasKnown(table, newest) || newest.id > latest_) {
        return {};
    }
    const std::string arriving(origin.empty() ? std::string_view(sender_) : origin);
    if (isMain_) {
        // The sender's own version before this one: it keeps that in its row until its next change.
        if (text::EqualsWithoutCase(newest.origin, sender_)) {
            return {};
        }
        return {Verdict::TakeAndKeepLoser, newest.origin.empty() ? own_ : newest.origin, arriving};
    }
    // What is on its way wins as soon as it reaches main, and main keeps the version that loses then.
    if ((newest.id <= sent_ && !notTaken_.Hold(newest.id)) || text::EqualsWithoutCase(origin, own_)) {
        return {Verdict::PassOver, {}, {}};
    }
    return {Verdict::KeepOwn, arriving, own_, newest.isDeletion};
}

bool OriginRules::HasHad(std::string_view table, std::string_view uniqueID, std::string_view origin,
                         std::int64_t originID) {
    sql::Statement had =
        connection_.Prepare("SELECT 1 FROM AuditLog WHERE TableName = ?1 COLLATE NOCASE AND AuditUniqueID = ?2 "
                            "AND Origin = ?3 AND OriginID >= ?4");
    had.Bind(1, table);
    had.Bind(2, uniqueID);
    had.Bind(3, origin);
    had.Bind(4, originID);
    return had.Step();
}

OriginRules::Decision OriginRules::DecideByHand(std::string_view table, std::string_view uniqueID,
                                                std::string_view origin, std::int64_t originID, bool rowIsThere) {
    const Newest newest = NewestAudit(table, uniqueID);
    if (newest.id > latest_ || (!rowIsThere && newest.id == 0)) {
        return {};
    }
    const std::string arriving(origin.empty() ? std::string_view(sender_) : origin);
    if (!isMain_) {
        return {Verdict::KeepOwn, arriving, own_};
    }
    if (HasHad(table, uniqueID, arriving, originID)) {
        return {Verdict::PassOver, {}, {}};
    }
    return {Verdict::TakeAndKeepLoser, newest.origin.empty() ? own_ : newest.origin, arriving};
}

} // namespace qndr::suite
