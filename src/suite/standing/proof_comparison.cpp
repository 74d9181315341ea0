#include "suite/standing/proof_comparison.h"

#include "suite/schema/vocabulary.h"
#include "suite/standing/row_digests.h"
#include "text/letter_case.h"

#include <map>
#include <set>
#include <string>

namespace qndr::suite {

namespace {

using standing::RowList;

/// The workstation's own changes by table and row.
class OwnChanges {
  public:
    OwnChanges(const sql::Connection& connection, std::int64_t confirmed)
        : newest_(connection.Prepare(
              "SELECT ifnull(MAX(ID), 0) FROM AuditLog WHERE TableName = ?1 COLLATE NOCASE AND AuditUniqueID = ?2 "
              "AND ID > (SELECT AuditID FROM GivenUpMark)")) {
        sql::Statement rows = connection.Prepare("SELECT TableName, AuditUniqueID FROM AuditLog WHERE ID > ?1");
        rows.Bind(1, confirmed);
        while (rows.Step()) {
            unconfirmed_[text::ToLowerCase(rows.Text(0))].insert(text::ToLowerCase(rows.Text(1)));
        }
    }

    /// The identities of the table's rows that main may not have as they stand here.
    const std::set<std::string>& Unconfirmed(std::string_view table) const {
        static const std::set<std::string> none;
        const auto found = unconfirmed_.find(text::ToLowerCase(table));
        return found == unconfirmed_.end() ? none : found->second;
    }
    std::int64_t Newest(std::string_view table, std::string_view uniqueID) {
        newest_.Bind(1, table);
        newest_.Bind(2, uniqueID);
        newest_.Step();
        const std::int64_t id = newest_.Integer(0);
        newest_.Reset();
        return id;
    }

  private:
    sql::Statement newest_;
    std::map<std::string, std::set<std::string>> unconfirmed_;
};

class Comparison {
  public:
    Comparison(const sql::Connection& connection, std::int64_t confirmed)
        : connection_(connection), changes_(connection, confirmed) {}

    void CompareWhole(const Table& table, const standing::TableDigests& proof) {
        const std::size_t buckets = proof.buckets.size();
        const standing::TableDigests own = DigestTable(connection_, table, buckets);
        std::map<std::size_t, RowList> differing;
        for (std::size_t bucket = 0; bucket < buckets; ++bucket) {
            if (!(own.buckets[bucket] == proof.buckets[bucket])) {
                result_.alike = false;
                differing[bucket] = {proof.table, buckets, bucket, {}};
            }
        }
        // They wait for a proof that knows them.
        for (const std::string& uniqueID : changes_.Unconfirmed(table.name)) {
            differing.erase(BucketOf(uniqueID, buckets));
        }
        if (!differing.empty()) {
            List(table, differing, buckets);
        }
    }

    void ListPart(const Table& table) {
        RowList list{std::string(table.name), 0, 0, {}};
        const std::set<std::string>& unconfirmed = changes_.Unconfirmed(table.name);
        ForEachRow(connection_, table, [&](std::string_view uniqueID, const standing::Digest& digest) {
            if (rows_ < standing::MostRows && !unconfirmed.contains(text::ToLowerCase(uniqueID))) {
                ++rows_;
                list.rows.push_back({std::string(uniqueID), digest, 0});
            }
        });
        for (standing::RowDigest& row : list.rows) {
            row.ownChange = changes_.Newest(table.name, row.uniqueID);
        }
        if (!list.rows.empty()) {
            result_.lists.push_back(std::move(list));
        }
    }

    ProofComparison Result() && { return std::move(result_); }

  private:
    void List(const Table& table, std::map<std::size_t, RowList>& differing, std::size_t buckets) {
        const auto add = [&](std::string_view uniqueID, const standing::Digest& digest, std::int64_t ownChange) {
            if (const auto list = differing.find(BucketOf(uniqueID, buckets)); list != differing.end()) {
                list->second.rows.push_back({std::string(uniqueID), digest, ownChange});
            }
        };
        ForEachRow(connection_, table,
                   [&](std::string_view uniqueID, const standing::Digest& digest) { add(uniqueID, digest, 0); });
        for (auto& [bucket, list] : differing) {
            for (standing::RowDigest& row : list.rows) {
                row.ownChange = changes_.Newest(table.name, row.uniqueID);
            }
        }
        AddDeletions(table, add);
        // A list is whole or not there: main takes a row that is missing in it for missing.
        for (auto& [bucket, list] : differing) {
            if (rows_ + list.rows.size() <= standing::MostRows) {
                rows_ += list.rows.size();
                result_.lists.push_back(std::move(list));
            }
        }
    }

    template <typename Add> void AddDeletions(const Table& table, const Add& add) {
        sql::Statement deleted = connection_.Prepare(
            "SELECT AuditUniqueID, MAX(ID), AuditType FROM AuditLog WHERE TableName = ?1 COLLATE NOCASE "
            "AND ID > (SELECT AuditID FROM GivenUpMark) GROUP BY AuditUniqueID HAVING AuditType = ?2");
        deleted.Bind(1, table.name);
        deleted.Bind(2, std::int64_t{AuditDeletion});
        while (deleted.Step()) {
            add(deleted.Text(0), standing::Digest(), deleted.Integer(1));
        }
    }

    const sql::Connection& connection_;
    OwnChanges changes_;
    std::size_t rows_ = 0;
    ProofComparison result_{.alike = true, .lists = {}};
};

} // namespace

ProofComparison CompareWithProof(const sql::Connection& connection,
                                 const std::vector<standing::TableDigests>& proof, std::int64_t confirmed) {
    const sql::Transaction reading(connection, sql::Transaction::Kind::Read);
    Comparison comparison(connection, confirmed);
    for (const standing::TableDigests& digests : proof) {
        const Table* const table = FindAuditedTable(digests.table);
        if (table != nullptr && IsWhollyExported(*table)) {
            comparison.CompareWhole(*table, digests);
        }
    }
    for (const Table& table : AuditedTables()) {
        if (!IsWhollyExported(table)) {
            comparison.ListPart(table);
        }
    }
    return std::move(comparison).Result();
}

} // namespace qndr::suite
