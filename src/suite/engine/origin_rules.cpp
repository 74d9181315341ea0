#include "suite/engine/origin_rules.h"

#include "suite/files/ascii_case.h"

namespace qndr::suite {

namespace {

/// What Company.CompanyType says of a workstation; every other company is one that others report to.
constexpr std::int64_t RoamingWorkstationType = 2;

} // namespace

OriginRules::OriginRules(const SqliteConnection& connection, const std::string& sender)
    : newest_(connection.Prepare(
          "SELECT ID, Origin, OriginID FROM AuditLog WHERE TableName = ?1 AND AuditUniqueID = ?2 "
          "ORDER BY ID DESC LIMIT 1")),
      own_(connection.Value("SELECT UniqueID FROM Company").value_or("")), sender_(sender),
      isMain_(connection.Number("SELECT CompanyType FROM Company") != RoamingWorkstationType),
      latest_(connection.Number("SELECT MAX(ID) FROM AuditLog")) {
    if (!isMain_) {
        known_ = connection.Number("SELECT LastAuditID FROM Company");
        return;
    }
    SqliteStatement workstation =
        connection.Prepare("SELECT LastAuditID FROM RoamingWorkstations WHERE UniqueID = ?1");
    workstation.Bind(1, sender);
    known_ = workstation.Step() ? workstation.Integer(0) : 0;
}

OriginRules::Newest OriginRules::NewestAudit(std::string_view table, std::string_view uniqueID) {
    newest_.Bind(1, table);
    newest_.Bind(2, uniqueID);
    Newest newest;
    if (newest_.Step()) {
        newest = {newest_.Integer(0), std::string(newest_.Text(1)), newest_.Integer(2)};
    }
    newest_.Reset();
    return newest;
}

OriginRules::Decision OriginRules::Decide(std::string_view table, std::string_view uniqueID,
                                          std::string_view origin, std::int64_t originID) {
    const bool comesBack = !isMain_ && !origin.empty() && EqualsWithoutCase(origin, own_);
    // A full import asks half a million times: nothing is looked up where no local version can matter.
    if (!comesBack && latest_ <= known_) {
        return {};
    }
    const Newest newest = NewestAudit(table, uniqueID);
    const std::string arriving(origin.empty() ? std::string_view(sender_) : origin);
    if (comesBack) {
        return {newest.id > originID ? Verdict::PassOver : Verdict::Take, {}, {}};
    }
    // Audit rows above latest_ are this import's own.
    if (newest.id <= known_ || newest.id > latest_) {
        return {};
    }
    const bool localVersion = newest.origin.empty();
    if (!isMain_) {
        return localVersion ? Decision{Verdict::KeepOwn, arriving, own_} : Decision{};
    }
    if (EqualsWithoutCase(newest.origin, sender_)) {
        return {};
    }
    return {Verdict::TakeAndKeepLoser, localVersion ? own_ : newest.origin, arriving};
}

std::int64_t OriginRules::VersionToConfirm(std::string_view table, std::string_view uniqueID,
                                           std::string_view origin, std::int64_t originID) {
    if (origin.empty()) {
        return 0;
    }
    const Newest newest = NewestAudit(table, uniqueID);
    return EqualsWithoutCase(newest.origin, origin) && newest.originID < originID ? newest.id : 0;
}

} // namespace qndr::suite
