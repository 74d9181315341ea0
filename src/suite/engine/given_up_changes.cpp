#include "suite/engine/given_up_changes.h"

#include "suite/schema/vocabulary.h"

#include <unordered_map>

namespace qndr::suite {

namespace {

void NoteUnconfirmedChanges(const sql::Connection& connection) {
    connection.Execute("INSERT INTO GivenUpChanges (TableName, RowUniqueID, Reason, Made) "
                       "SELECT TableName, RowUniqueID, Reason, Made FROM vwUnconfirmedChanges WHERE true "
                       "ON CONFLICT DO UPDATE SET Reason = min(Reason, excluded.Reason)");
    PassOverAuditSoFar(connection);
}

class Keeper {
  public:
    explicit Keeper(const sql::Connection& connection)
        : connection_(connection),
          keep_(connection.Prepare(
              "INSERT INTO ImportConflicts (TableName, RowUniqueID, OccurredOn, LosingOrigin, WinningOrigin, "
              "LosingValues, Deleted, Reason) SELECT ?1, ?2, GETUTCDATE(), UniqueID, MainUniqueID, ?3, ?3 IS "
              "NULL, ?4 "
              "FROM Company WHERE NOT EXISTS (SELECT 1 FROM ImportConflicts WHERE RowUniqueID = ?2 AND "
              "TableName = ?1 AND LosingValues IS ?3 AND Reason > 0 AND State = 0)")) {}

    void Keep(std::string_view tableName, std::string_view uniqueID, std::int64_t reason, bool made) {
        const Table* table = FindAuditedTable(tableName);
        if (table == nullptr) {
            return; // about a table that is not exchanged
        }
        ImportTable& rows = tables_.try_emplace(table, connection_, *table).first->second;
        if (!rows.Exists()) {
            return;
        }
        const std::optional<std::string> values = rows.RowJson(uniqueID);
        if (!values && made) {
            return; // made and deleted again, and main never heard of it
        }
        keep_.Bind(1, table->name);
        keep_.Bind(2, uniqueID);
        if (values) {
            keep_.Bind(3, *values);
        } else {
            keep_.BindNull(3);
        }
        keep_.Bind(4, reason);
        keep_.Step();
        keep_.Reset();
    }

  private:
    const sql::Connection& connection_;
    sql::Statement keep_;
    std::unordered_map<const Table*, ImportTable> tables_;
};

void KeepNotedChanges(const sql::Connection& connection) {
    sql::Statement note = connection.Prepare("SELECT TableName, RowUniqueID, Reason, Made FROM GivenUpChanges");
    if (!note.Step()) {
        return;
    }
    Keeper keeper(connection);
    do {
        keeper.Keep(note.Text(0), note.Text(1), note.Integer(2), note.Integer(3) != 0);
    } while (note.Step());
    connection.Execute("DELETE FROM GivenUpChanges");
}

} // namespace

bool IsResetPending(const sql::Connection& connection) {
    return connection.Number(
               WithNumbers("SELECT CompanyType = {Roaming} AND SyncState = {ResetPending} FROM Company")) != 0;
}

std::vector<GivenUpChange> FindChangesAtStake(const sql::Connection& connection) {
    sql::Statement row = connection.Prepare(
        "SELECT TableName, RowUniqueID, MIN(Reason) FROM (SELECT TableName, RowUniqueID, Reason FROM "
        "vwUnconfirmedChanges UNION ALL SELECT TableName, RowUniqueID, Reason FROM GivenUpChanges) "
        "GROUP BY TableName, RowUniqueID ORDER BY TableName, RowUniqueID");
    std::vector<GivenUpChange> changes;
    while (row.Step()) {
        changes.push_back({std::string(row.Text(0)), std::string(row.Text(1)), row.Integer(2)});
    }
    return changes;
}

void KeepBeforeClearing(const sql::Connection& connection) {
    NoteUnconfirmedChanges(connection);
    KeepNotedChanges(connection);
}

void PassOverAuditSoFar(const sql::Connection& connection) {
    connection.Execute("UPDATE GivenUpMark SET AuditID = max(AuditID, ifnull((SELECT MAX(ID) FROM AuditLog), 0))");
}

void KeepBeforeImport(const sql::Connection& connection) {
    if (IsResetPending(connection)) {
        NoteUnconfirmedChanges(connection);
    }
    KeepNotedChanges(connection);
}

GivenUpVersions::GivenUpVersions(const sql::Connection& connection) : connection_(connection) {
    if (Open() > 0) {
        isKept_.emplace(
            connection_.Prepare("SELECT 1 FROM ImportConflicts WHERE RowUniqueID = ?1 AND TableName = ?2 "
                                "AND Reason > 0 AND State = 0"));
    }
}

void GivenUpVersions::Settle(const Table& table, ImportTable& rows, std::string_view uniqueID) {
    if (!isKept_) {
        return;
    }
    isKept_->Bind(1, uniqueID);
    isKept_->Bind(2, table.name);
    const bool isKept = isKept_->Step();
    isKept_->Reset();
    if (!isKept) {
        return;
    }
    sql::Statement settle = connection_.Prepare(
        "UPDATE ImportConflicts SET State = ?4 WHERE RowUniqueID = ?1 AND TableName = ?2 AND LosingValues IS ?3 "
        "AND Reason > 0 AND State = 0");
    settle.Bind(1, uniqueID);
    settle.Bind(2, table.name);
    if (const std::optional<std::string> values = rows.RowJson(uniqueID)) {
        settle.Bind(3, *values);
    }
    settle.Bind(4, static_cast<std::int64_t>(ConflictState::Dismissed));
    settle.Step();
}

std::int64_t GivenUpVersions::Open() const {
    return connection_.Number("SELECT COUNT(*) FROM ImportConflicts WHERE Reason > 0 AND State = 0");
}

} // namespace qndr::suite
