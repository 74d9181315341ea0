#include "suite/standing/repair.h"

#include "suite/schema/company_schema.h"
#include "suite/schema/vocabulary.h"
#include "suite/standing/row_digests.h"
#include "text/letter_case.h"
#include "text/sql_name.h"

#include <map>
#include <optional>
#include <set>

namespace qndr::suite {

namespace {

using standing::RowDigest;
using standing::RowList;

/// The newest audit row of a row of a table.
struct NewestChange {
    std::int64_t id = 0; ///< 0 for none
    bool isDeletion = false;
};

/// Enters versions of rows in the audit log again.
class AuditLogEntries {
  public:
    explicit AuditLogEntries(const sql::Connection& connection)
        : connection_(connection),
          newest_(connection.Prepare(
              "SELECT ID, AuditType FROM AuditLog WHERE TableName = ?1 COLLATE NOCASE AND AuditUniqueID = ?2 "
              "ORDER BY ID DESC LIMIT 1")),
          mark_(connection.Prepare("INSERT INTO RepairAudits (AuditID) SELECT MAX(ID) FROM AuditLog")) {}

    NewestChange Newest(const Table& table, const std::string& uniqueID) {
        newest_.Bind(1, table.name);
        newest_.Bind(2, uniqueID);
        NewestChange newest;
        if (newest_.Step()) {
            newest = {newest_.Integer(0), newest_.Integer(1) == std::int64_t{AuditDeletion}};
        }
        newest_.Reset();
        return newest;
    }

    /// The row as it stands, as the version that it is; false when there is none.
    bool EnterRow(const Table& table, const std::string& uniqueID, AuditType type) {
        const std::string data =
            table.auditData.empty() ? "NULL" : "T." + text::QuotedName(std::string(table.auditData));
        sql::Statement enter = connection_.Prepare(
            "INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, "
            "OriginID) SELECT ?1, T.ID, ?3, GETUTCDATE(), T.UniqueID, " +
            data + ", Newest.Origin, Newest.OriginID FROM " + text::QuotedName(std::string(table.name)) +
            " AS T LEFT JOIN AuditLog AS Newest ON Newest.ID = (SELECT MAX(ID) FROM AuditLog WHERE TableName = ?1 "
            "COLLATE NOCASE AND AuditUniqueID = ?2) WHERE T.UniqueID = ?2");
        enter.Bind(1, table.name);
        enter.Bind(2, uniqueID);
        enter.Bind(3, static_cast<std::int64_t>(type));
        return Finish(enter);
    }

    void EnterDeletion(std::int64_t auditID) {
        sql::Statement enter = connection_.Prepare(
            "INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, "
            "OriginID) SELECT TableName, RecordID, AuditType, GETUTCDATE(), AuditUniqueID, AuditData, Origin, "
            "OriginID FROM AuditLog WHERE ID = ?1");
        enter.Bind(1, auditID);
        Finish(enter);
    }

  private:
    bool Finish(sql::Statement& enter) {
        enter.Step();
        if (enter.ChangedRows() == 0) {
            return false;
        }
        mark_.Step();
        mark_.Reset();
        return true;
    }

    const sql::Connection& connection_;
    sql::Statement newest_;
    sql::Statement mark_;
};

/// A row of which the two sides do not hold the same.
struct Difference {
    const Table* table = nullptr;
    std::string uniqueID;
    bool mainHasIt = false;
    bool workstationHasIt = false;
    std::int64_t ownChange = 0; ///< of the workstation's
};

/// The lists of one table.
struct ListedTable {
    std::size_t buckets = 0; ///< 0: a part of the table's rows
    std::set<std::size_t> whole;
    std::map<std::string, const RowDigest*> rows; ///< by identity in lower case
};

std::map<const Table*, ListedTable> ByTable(const std::vector<RowList>& lists) {
    std::map<const Table*, ListedTable> tables;
    for (const RowList& list : lists) {
        const Table* const table = FindAuditedTable(list.table);
        if (table == nullptr || (list.buckets & (list.buckets - 1)) != 0) {
            continue;
        }
        ListedTable& listed = tables[table];
        listed.buckets = list.buckets;
        listed.whole.insert(list.bucket);
        for (const RowDigest& row : list.rows) {
            listed.rows[text::ToLowerCase(row.uniqueID)] = &row;
        }
    }
    return tables;
}

void FindDifferences(const sql::Connection& connection, const Table& table, ListedTable& listed,
                     std::vector<Difference>& differences) {
    ForEachRow(connection, table, [&](std::string_view uniqueID, const standing::Digest& digest) {
        const auto row = listed.rows.find(text::ToLowerCase(uniqueID));
        if (row != listed.rows.end()) {
            const RowDigest& held = *row->second;
            if (held.digest != digest) {
                differences.push_back({&table, std::string(uniqueID), true, held.IsThere(), held.ownChange});
            }
            listed.rows.erase(row);
        } else if (listed.buckets != 0 && listed.whole.contains(BucketOf(uniqueID, listed.buckets))) {
            differences.push_back({&table, std::string(uniqueID), true, false, 0});
        }
    });
    for (const auto& [uniqueID, row] : listed.rows) {
        if (row->IsThere()) {
            differences.push_back({&table, row->uniqueID, false, true, row->ownChange});
        }
    }
}

std::vector<Difference> FindDifferences(const sql::Connection& connection, const std::vector<RowList>& lists) {
    const sql::Transaction reading(connection, sql::Transaction::Kind::Read);
    std::vector<Difference> differences;
    for (auto& [table, listed] : ByTable(lists)) {
        FindDifferences(connection, *table, listed, differences);
    }
    return differences;
}

class MainRepair {
  public:
    MainRepair(const sql::Connection& connection, std::string_view workstation, std::int64_t place)
        : workstation_(workstation), place_(place), entries_(connection),
          had_(connection.Prepare(
              "SELECT 1 FROM AuditLog WHERE TableName = ?1 COLLATE NOCASE AND AuditUniqueID = ?2 "
              "AND Origin = ?3 AND OriginID >= ?4")),
          count_(connection.Prepare(
              "INSERT INTO RepairedRows (Workstation, TableName, RowUniqueID, Times) VALUES (?1, ?2, ?3, 1) "
              "ON CONFLICT DO UPDATE SET Times = Times + 1")),
          times_(connection.Prepare("SELECT Times FROM RepairedRows WHERE Workstation = ?1 AND TableName = ?2 AND "
                                    "RowUniqueID = ?3")) {}

    void Repair(const Difference& difference) {
        const Table& table = *difference.table;
        const NewestChange newest = entries_.Newest(table, difference.uniqueID);
        if (newest.id > place_) {
            return;
        }
        if (Times(difference) >= MostRepairs) {
            ++work_.stubborn;
            return;
        }
        const bool isTheirs = difference.ownChange > 0 && !HasHad(difference);
        const bool isUnknown = !difference.mainHasIt && !newest.isDeletion;
        if (isTheirs || isUnknown) {
            Ask(difference);
        } else if (difference.mainHasIt) {
            entries_.EnterRow(table, difference.uniqueID, AuditUpdate);
            NoteSent(difference);
        } else {
            entries_.EnterDeletion(newest.id);
            NoteSent(difference);
        }
        Bind(count_, difference);
        count_.Step();
        count_.Reset();
    }

    RepairWork Result() && {
        for (auto& [table, list] : asked_) {
            work_.asked.push_back(std::move(list));
        }
        return std::move(work_);
    }

  private:
    void Bind(sql::Statement& statement, const Difference& difference) const {
        statement.Bind(1, workstation_);
        statement.Bind(2, difference.table->name);
        statement.Bind(3, difference.uniqueID);
    }
    std::int64_t Times(const Difference& difference) {
        Bind(times_, difference);
        const std::int64_t times = times_.Step() ? times_.Integer(0) : 0;
        times_.Reset();
        return times;
    }
    bool HasHad(const Difference& difference) {
        had_.Bind(1, difference.table->name);
        had_.Bind(2, difference.uniqueID);
        had_.Bind(3, workstation_);
        had_.Bind(4, difference.ownChange);
        const bool had = had_.Step();
        had_.Reset();
        return had;
    }
    void Ask(const Difference& difference) {
        RowList& list = asked_[difference.table];
        list.table = difference.table->name;
        list.rows.push_back(
            {difference.uniqueID, difference.mainHasIt ? standing::Digest{0, 1} : standing::Digest(), 0});
    }
    void NoteSent(const Difference& difference) {
        work_.sent.push_back(std::string(difference.table->name) + " " + difference.uniqueID);
    }

    std::string workstation_;
    std::int64_t place_;
    AuditLogEntries entries_;
    sql::Statement had_;
    sql::Statement count_;
    sql::Statement times_;
    std::map<const Table*, RowList> asked_;
    RepairWork work_;
};

} // namespace

RepairWork RepairListedRows(const sql::Connection& connection, std::string_view workstation, std::int64_t place,
                            const std::vector<RowList>& lists) {
    const std::vector<Difference> differences = FindDifferences(connection, lists);
    if (differences.empty()) {
        return {};
    }
    sql::Transaction transaction(connection, sql::Transaction::Kind::Write);
    MainRepair repair(connection, workstation, place);
    for (const Difference& difference : differences) {
        repair.Repair(difference);
    }
    transaction.Commit();
    return std::move(repair).Result();
}

void ForgetRepairs(const sql::Connection& connection, std::string_view workstation) {
    sql::Statement forget = connection.Prepare("DELETE FROM RepairedRows WHERE Workstation = ?1");
    forget.Bind(1, workstation);
    forget.Step();
}

std::int64_t SendRowsAgain(const sql::Connection& connection, std::int64_t sent,
                           const std::vector<RowList>& asked) {
    sql::Transaction transaction(connection, sql::Transaction::Kind::Write);
    AuditLogEntries entries(connection);
    std::int64_t count = 0;
    for (const RowList& list : asked) {
        const Table* const table = FindAuditedTable(list.table);
        if (table == nullptr) {
            continue;
        }
        for (const RowDigest& row : list.rows) {
            const NewestChange newest = entries.Newest(*table, row.uniqueID);
            if (newest.id > sent) {
                continue;
            }
            if (entries.EnterRow(*table, row.uniqueID, row.IsThere() ? AuditUpdate : AuditInsertion)) {
                ++count;
            } else if (newest.isDeletion) {
                entries.EnterDeletion(newest.id);
                ++count;
            }
        }
    }
    transaction.Commit();
    return count;
}

} // namespace qndr::suite
