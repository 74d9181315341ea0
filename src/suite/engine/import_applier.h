#pragma once

#include "suite/engine/audit_switch.h"
#include "suite/engine/given_up_changes.h"
#include "suite/engine/import.h"
#include "suite/engine/import_ledger.h"
#include "suite/engine/import_table.h"
#include "suite/engine/origin_rules.h"
#include "suite/exchange/import_batch.h"
#include "suite/sql/connection.h"

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>

namespace qndr::suite {

/// Takes the records of one file into a company database, as one transaction. Every operation raises
/// services::Failure when the database as a whole does not work; nothing is changed unless Commit comes to its
/// end.
class ImportApplier {
  public:
    /// Waits for the right to write, and marks what follows as an import: a main company audits it as a change of
    /// the record's origin, a workstation does not audit it.
    /// `first` tells of the file; its records are not looked at.
    ImportApplier(const sql::Connection& connection, const ImportBatch& first, Arrival arrival);

    /// Marks the file as taken in, for whoever stores its number. False when main took this very file last from
    /// its sender: then nothing of it is to be applied, and the mark alone to be committed. A workstation takes a
    /// file any number of times, for its tables may have been cleared since. One that comes by hand has no number
    /// to be stored and is not the last one.
    bool Begin(const std::string& sender, const std::string& fileID);

    void Apply(const ImportBatch& batch);
    /// Durable when it returns.
    void Commit();

    /// To be asked before Commit.
    ImportResult Result() const;

  private:
    void Apply(const ImportBatch& batch, const ImportRecord& record);
    /// True when the database refused the record and it was put aside.
    bool PutAside(const ImportBatch& batch, const ImportRecord& record, const ImportTable::Outcome& outcome);
    void TakeAndKeepLoser(const ImportBatch& batch, const ImportRecord& record, ImportTable& table,
                          OriginRules::Decision& decision);
    /// What stood here is kept without asking anybody: it may be what somebody altered behind the audit's back.
    void TakeRepair(const ImportBatch& batch, const ImportRecord& record, ImportTable& table);
    void KeepOwn(const ImportBatch& batch, const ImportRecord& record, ImportTable& table,
                 OriginRules::Decision& decision);
    ImportTable& TableOf(const ImportRecord& record);
    void MarkOrigin(const ImportBatch& batch, const ImportRecord& record);

    const sql::Connection& connection_;
    const Arrival arrival_;
    sql::Transaction transaction_;
    OriginRules rules_;
    AuditSwitch audits_;
    ImportLedger ledger_;
    std::optional<GivenUpVersions> givenUp_;
    std::int64_t records_ = 0;
    std::optional<sql::Statement> mark_;
    std::string markedOrigin_;
    std::int64_t markedOriginID_ = 0;
    std::unordered_map<const Table*, ImportTable> tables_;
    const Table* lastTable_ = nullptr;
    ImportTable* lastImportTable_ = nullptr;
};

} // namespace qndr::suite
