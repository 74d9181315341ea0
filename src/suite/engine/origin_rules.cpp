#include "suite/engine/origin_rules.h"

#include "suite/engine/given_up_changes.h"
#include "suite/files/ascii_case.h"

#include <optional>

namespace qndr::suite {

namespace {

/// What Company.CompanyType says of a workstation; every other company is one that others report to.
constexpr std::int64_t RoamingWorkstationType = 2;

} // namespace

OriginRules::OriginRules(const SqliteConnection& connection, const std::string& sender, const std::string& seen)
    : newest_(connection.Prepare("SELECT ID, Origin FROM AuditLog WHERE TableName = ?1 AND AuditUniqueID = ?2 "
                                 "ORDER BY ID DESC LIMIT 1")),
      taken_(connection.Prepare("SELECT 1 FROM AuditLog WHERE TableName = ?1 AND AuditUniqueID = ?2 AND ID > ?3 "
                                "AND Origin = ?4 AND OriginID = ?5")),
      own_(connection.Value("SELECT UniqueID FROM Company").value_or("")), sender_(sender),
      isMain_(connection.Number("SELECT CompanyType FROM Company") != RoamingWorkstationType),
      skipped_(connection, sender), latest_(connection.Number("SELECT MAX(ID) FROM AuditLog")) {
    if (!isMain_) {
        sent_ = connection.Number("SELECT LastAuditID FROM Company");
    }
    const std::optional<std::int64_t> files = AcceptedFilesOf(seen, own_);
    known_ = files ? CoveredBy(connection, isMain_ ? sender : MainReceiver, *files) : sent_;
    if (IsResetPending(connection)) {
        // What this workstation had against main is given up and kept; none of it will ever be sent.
        known_ = latest_;
    }
}

OriginRules::Newest OriginRules::NewestAudit(std::string_view table, std::string_view uniqueID) {
    newest_.Bind(1, table);
    newest_.Bind(2, uniqueID);
    Newest newest;
    if (newest_.Step()) {
        newest = {newest_.Integer(0), std::string(newest_.Text(1))};
    }
    newest_.Reset();
    return newest;
}

bool OriginRules::WasKnown(std::string_view table, const Newest& newest) const {
    return newest.id <= known_ && !skipped_.Hides(table, newest.id);
}

/// A file whose number could not be stored comes a second time, and a row may travel in two files. What was
/// changed here in between must not go back. Before the last reset the numbers may have been those of a database
/// that was restored since, and say nothing.
bool OriginRules::WasTaken(std::string_view table, std::string_view uniqueID, std::string_view origin,
                           std::int64_t originID) {
    if (origin.empty()) {
        return false;
    }
    taken_.Bind(1, table);
    taken_.Bind(2, uniqueID);
    taken_.Bind(3, skipped_.End());
    taken_.Bind(4, origin);
    taken_.Bind(5, originID);
    const bool taken = taken_.Step();
    taken_.Reset();
    return taken;
}

OriginRules::Decision OriginRules::Decide(std::string_view table, std::string_view uniqueID,
                                          std::string_view origin, std::int64_t originID) {
    if (isMain_ && WasTaken(table, uniqueID, origin, originID)) {
        return {Verdict::PassOver, {}, {}};
    }
    // A full import asks half a million times: nothing is looked up where no local version can matter.
    if (latest_ <= known_ && skipped_.Empty()) {
        return {};
    }
    const Newest newest = NewestAudit(table, uniqueID);
    // Audit rows above latest_ are this import's own.
    if (WasKnown(table, newest) || newest.id > latest_) {
        return {};
    }
    const std::string arriving(origin.empty() ? std::string_view(sender_) : origin);
    if (isMain_) {
        // The sender's own version before this one: it keeps that in its row until its next change.
        if (EqualsWithoutCase(newest.origin, sender_)) {
            return {};
        }
        return {Verdict::TakeAndKeepLoser, newest.origin.empty() ? own_ : newest.origin, arriving};
    }
    // What was sent wins as soon as it reaches main, and main keeps the version that loses then.
    if (newest.id <= sent_ || EqualsWithoutCase(origin, own_)) {
        return {Verdict::PassOver, {}, {}};
    }
    return {Verdict::KeepOwn, arriving, own_};
}

} // namespace qndr::suite
