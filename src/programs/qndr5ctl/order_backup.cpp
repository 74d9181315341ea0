#include "programs/qndr5ctl/order_backup.h"

#include "observation/working_folder.h"
#include "programs/qndr5ctl/archive_contents.h"
#include "services/failure.h"
#include "suite/exchange/import_reader.h"
#include "syncfiles/discovery.h"
#include "text/letter_case.h"

namespace qndr::control {

namespace {

using services::Failure;

suite::StoredValue ToStoredValue(const suite::ImportValue& value, std::string_view text) {
    switch (value.kind) {
    case suite::ImportValue::Kind::Integer:
        return value.integer;
    case suite::ImportValue::Kind::Real:
        return value.real;
    case suite::ImportValue::Kind::Text:
        return std::string(text);
    case suite::ImportValue::Kind::Bytes:
        return suite::Bytes{std::string(text)};
    case suite::ImportValue::Kind::Null:
        break;
    }
    return Null{};
}

suite::Row ToRow(const suite::ImportBatch& batch, const suite::ImportRecord& record) {
    suite::Row row{std::string(batch.Text(record, record.uniqueID)), {}};
    for (std::size_t index = 0; index < record.valueCount; ++index) {
        const suite::ImportValue& value = batch.values[record.firstValue + index];
        row.values.push_back(
            {&record.table->columns[value.column], ToStoredValue(value, batch.Text(record, value.text))});
    }
    return row;
}

bool BelongsTo(const suite::Row& item, const suite::Row& order) {
    for (const suite::ColumnValue& value : item.values) {
        const auto* text = std::get_if<std::string>(&value.value);
        if (value.column->name == "OrderUniqueID") {
            return text != nullptr && text::EqualsWithoutCase(*text, order.uniqueID);
        }
    }
    return false;
}

OrderBackup ReadOrder(const std::string& dataFile) {
    suite::ImportReader reader(dataFile, suite::ImportReader::UnknownTables::Refuse);
    std::vector<suite::Row> orders;
    std::vector<suite::Row> items;
    for (suite::ImportBatch batch; reader.Read(batch);) {
        for (const suite::ImportRecord& record : batch.records) {
            if (!record.problem.empty()) {
                throw Failure("a record cannot be read: " + record.problem);
            }
            const bool isOrder = record.table->name == "Orders";
            if (record.deletion || (!isOrder && record.table->name != "OrderItems")) {
                throw Failure("it holds more than an order");
            }
            (isOrder ? orders : items).push_back(ToRow(batch, record));
        }
    }
    if (orders.size() != 1) {
        throw Failure("it holds " + std::to_string(orders.size()) + " orders");
    }
    for (const suite::Row& item : items) {
        if (!BelongsTo(item, orders.front())) {
            throw Failure("it holds an item of another order");
        }
    }
    return {std::move(orders.front()), std::move(items)};
}

} // namespace

std::optional<BackupName> ParseBackupName(const std::string& baseName) {
    constexpr std::string_view Prefix = "ODR";
    // The order's name stands in the file's name as it is, and may hold a "~".
    const std::size_t stamp = baseName.rfind('~');
    const std::size_t token = stamp == std::string::npos || stamp == 0 ? stamp : baseName.rfind('~', stamp - 1);
    if (!baseName.starts_with(Prefix) || token == std::string::npos || token < Prefix.size()) {
        return std::nullopt;
    }
    const Date savedOn = ParseFileStamp(baseName.substr(stamp + 1), NoDate);
    if (savedOn == NoDate) {
        return std::nullopt;
    }
    return BackupName{baseName.substr(Prefix.size(), token - Prefix.size()), savedOn};
}

OrderBackup ReadOrderBackup(const ControlContext& context, const std::string& archive) {
    const ArchiveContents contents = ReadArchiveContents(archive);
    if (contents.backupEntry.empty()) {
        throw Failure("'" + archive + "' is no order backup");
    }
    const observation::WorkingFolder folder(context.services);
    const auto zip = context.services.objects.CreateZipArchive();
    if (!zip || zip->OpenZip(archive) == 0) {
        throw Failure("'" + archive + "' cannot be opened");
    }
    const auto entry = zip->GetEntryByName(contents.backupEntry);
    if (!entry || entry->Extract(folder.Path()) != 1) {
        throw Failure("'" + archive + "' cannot be unpacked: " + zip->LastErrorText());
    }
    try {
        return ReadOrder(folder.FileOf(contents.backupEntry));
    } catch (const Failure& failure) {
        throw Failure("'" + archive + "' is no order backup: " + failure.what());
    }
}

} // namespace qndr::control
