#include "suite/engine/import_applier.h"

#include "suite/computer/operating_system.h"

namespace qndr::suite {

namespace {

/// While a large row is written its own pages are enough: what the cache holds would come on top of the record.
constexpr std::int64_t LargeRecordCacheKibibytes = 2048;

} // namespace

ImportApplier::ImportApplier(const sql::Connection& connection, const ImportBatch& first, Arrival arrival)
    : connection_(connection), arrival_(arrival),
      transaction_(connection, sql::Transaction::Kind::Write, sql::LockWait::Patience::Import),
      rules_(connection, first, arrival), audits_(connection, rules_.IsMain()), ledger_(connection) {
    KeepBeforeImport(connection_);
    givenUp_.emplace(connection_);
    sql::Statement insert =
        connection_.Prepare("INSERT INTO ImportMark (Audited, Origin, OriginID) VALUES (?1, NULL, NULL)");
    insert.Bind(1, std::int64_t{rules_.IsMain() ? 1 : 0});
    insert.Step();
}

bool ImportApplier::Begin(const std::string& sender, const std::string& fileID) {
    if (arrival_ == Arrival::InTurn) {
        sql::Statement mark = connection_.Prepare("UPDATE TakenFile SET Sender = ?1");
        mark.Bind(1, rules_.IsMain() ? std::string_view(sender) : MainReceiver);
        mark.Step();
    }
    if (!rules_.IsMain() || fileID.empty()) {
        return true;
    }
    sql::Statement last = connection_.Prepare("SELECT 1 FROM LastImports WHERE Sender = ?1 AND FileID = ?2");
    last.Bind(1, sender);
    last.Bind(2, fileID);
    if (last.Step()) {
        return false;
    }
    if (arrival_ == Arrival::ByHand) {
        return true;
    }
    sql::Statement note =
        connection_.Prepare("INSERT OR REPLACE INTO LastImports (Sender, FileID) VALUES (?1, ?2)");
    note.Bind(1, sender);
    note.Bind(2, fileID);
    note.Step();
    return true;
}

void ImportApplier::Apply(const ImportBatch& batch) {
    std::unique_ptr<sql::Measure> smallCache;
    if (batch.text.size() > bounds::LargeRecord) {
        connection_.WriteCacheOut();
        smallCache = connection_.LimitCache(LargeRecordCacheKibibytes);
        ReturnUnusedMemory();
    }
    for (const ImportRecord& record : batch.records) {
        Apply(batch, record);
    }
    records_ += static_cast<std::int64_t>(batch.records.size());
}

void ImportApplier::Commit() {
    ledger_.NoteUnkept();
    connection_.Execute("DELETE FROM ImportMark");
    transaction_.Commit();
}

ImportResult ImportApplier::Result() const {
    return {.records = records_,
            .problems = ledger_.Problems(),
            .conflicts = ledger_.Conflicts(),
            .givenUp = IsResetPending(connection_) ? givenUp_->Open() : 0};
}

void ImportApplier::Apply(const ImportBatch& batch, const ImportRecord& record) {
    ImportTable& table = TableOf(record);
    if (!table.Exists()) {
        return;
    }
    if (!record.problem.empty()) {
        ledger_.AddProblem(batch, record, record.problem);
        return;
    }
    const std::string_view uniqueID = batch.Text(record, record.uniqueID);
    const std::string_view origin = batch.Text(record, record.origin);
    OriginRules::Decision decision =
        arrival_ == Arrival::InTurn ? rules_.Decide(record.table->name, uniqueID, origin, record.originID)
                                    : rules_.DecideByHand(record.table->name, uniqueID, origin, record.originID,
                                                          table.RowJson(uniqueID).has_value());
    // What an import has taken away since is no version any more that could be kept, or be sent to anybody.
    if (decision.verdict == OriginRules::Verdict::KeepOwn && arrival_ == Arrival::InTurn &&
        !decision.ownIsDeletion && !table.RowJson(uniqueID)) {
        decision.verdict = OriginRules::Verdict::Take;
    }
    if (rules_.IsMain()) {
        MarkOrigin(batch, record);
    }
    switch (decision.verdict) {
    case OriginRules::Verdict::Take:
        if (record.isRepair) {
            TakeRepair(batch, record, table);
            return;
        }
        if (!PutAside(batch, record, table.Apply(batch, record))) {
            givenUp_->Settle(*record.table, table, uniqueID);
        }
        return;
    case OriginRules::Verdict::TakeAndKeepLoser:
        TakeAndKeepLoser(batch, record, table, decision);
        return;
    case OriginRules::Verdict::KeepOwn:
        KeepOwn(batch, record, table, decision);
        return;
    case OriginRules::Verdict::PassOver:
        return;
    }
}

bool ImportApplier::PutAside(const ImportBatch& batch, const ImportRecord& record,
                             const ImportTable::Outcome& outcome) {
    if (outcome.refusal.empty()) {
        return false;
    }
    ledger_.AddProblem(batch, record, outcome.refusal);
    return true;
}

void ImportApplier::TakeAndKeepLoser(const ImportBatch& batch, const ImportRecord& record, ImportTable& table,
                                     OriginRules::Decision& decision) {
    const std::string_view uniqueID = batch.Text(record, record.uniqueID);
    std::optional<std::string> losing = table.RowJson(uniqueID);
    const ImportTable::Outcome outcome = table.Apply(batch, record);
    if (!PutAside(batch, record, outcome) && outcome.changed) {
        ledger_.AddConflict({record.table->name, uniqueID, std::move(decision.losingOrigin),
                             std::move(decision.winningOrigin), std::move(losing), false});
    }
}

void ImportApplier::TakeRepair(const ImportBatch& batch, const ImportRecord& record, ImportTable& table) {
    const std::string_view uniqueID = batch.Text(record, record.uniqueID);
    std::optional<std::string> replaced = table.RowJson(uniqueID);
    const ImportTable::Outcome outcome = table.Apply(batch, record);
    if (!PutAside(batch, record, outcome) && outcome.changed && replaced) {
        ledger_.AddConflict({record.table->name, uniqueID, rules_.Own(),
                             std::string(batch.Text(record, record.origin)), std::move(replaced), true});
    }
}

void ImportApplier::KeepOwn(const ImportBatch& batch, const ImportRecord& record, ImportTable& table,
                            OriginRules::Decision& decision) {
    const std::string_view uniqueID = batch.Text(record, record.uniqueID);
    // Taken and undone: only the database can tell whether the versions differ, and what the row would be.
    sql::Savepoint before(connection_);
    const ImportTable::Outcome outcome = table.Apply(batch, record);
    std::optional<std::string> losing = outcome.changed ? table.RowJson(uniqueID) : std::nullopt;
    before.GoBack();
    if (!PutAside(batch, record, outcome) && outcome.changed) {
        ledger_.AddConflict({record.table->name, uniqueID, std::move(decision.losingOrigin),
                             std::move(decision.winningOrigin), std::move(losing), false});
    }
}

ImportTable& ImportApplier::TableOf(const ImportRecord& record) {
    if (record.table != lastTable_) {
        const auto [entry, added] = tables_.try_emplace(record.table, connection_, *record.table);
        if (added) {
            audits_.Prepare(record.table->name);
        }
        lastTable_ = record.table;
        lastImportTable_ = &entry->second;
    }
    return *lastImportTable_;
}

void ImportApplier::MarkOrigin(const ImportBatch& batch, const ImportRecord& record) {
    const std::string_view origin = batch.Text(record, record.origin);
    if (origin == markedOrigin_ && record.originID == markedOriginID_) {
        return;
    }
    if (!mark_) {
        mark_.emplace(connection_.Prepare("UPDATE ImportMark SET Origin = ?1, OriginID = ?2"));
    }
    if (origin.empty()) {
        mark_->BindNull(1);
        mark_->BindNull(2);
    } else {
        mark_->Bind(1, origin);
        mark_->Bind(2, record.originID);
    }
    mark_->Step();
    mark_->Reset();
    markedOrigin_ = origin;
    markedOriginID_ = record.originID;
}

} // namespace qndr::suite
