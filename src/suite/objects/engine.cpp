#include "suite/objects/engine.h"

#include "services/failure.h"
#include "suite/engine/import.h"
#include "suite/engine/sent_ranges.h"
#include "suite/objects/company_library.h"
#include "suite/schema/company_versions.h"

#include <exception>
#include <optional>
#include <utility>

namespace qndr::suite {

namespace {

/// "1 record was", "2 records were"
std::string Counted(std::int64_t number, const std::string& noun, const std::string& one,
                    const std::string& several) {
    return std::to_string(number) + " " + noun + (number == 1 ? " " + one : "s " + several);
}

} // namespace

void ImportExportEngine::Initialize(services::SharedCodeLibrary& library) {
    library_ = dynamic_cast<CompanyLibrary*>(&library.Implementation());
    if (library_ == nullptr) {
        throw services::Failure("the engine cannot work with a library of another make");
    }
}

void ImportExportEngine::ClearExports() {
    pending_ = {};
    isIncomplete_ = false;
}

void ImportExportEngine::AddToExport(const std::string& table, const std::string& statement, bool deletion) {
    try {
        pending_.Add(table, statement, deletion);
    } catch (const services::Failure&) {
        isIncomplete_ = true;
        throw;
    }
}

bool ImportExportEngine::DoExport(const std::string& path) {
    const ExportList list = std::exchange(pending_, {});
    if (std::exchange(isIncomplete_, false)) {
        if (library_ != nullptr) {
            Tell("An export failed: an entry of it was not understood.");
        }
        return false;
    }
    return Export(list, ExportOrigin::Tell, path);
}

bool ImportExportEngine::ExportOrder(std::int32_t id, const std::string& path) {
    const std::string number = std::to_string(id);
    try {
        if (library_ == nullptr || trouble_.Stands() ||
            library_->Connection().Number("SELECT COUNT(*) FROM Orders WHERE ID = " + number) == 0) {
            return false;
        }
    } catch (const services::Failure&) {
        return false;
    }
    ExportList list;
    list.Add("Orders", services::ExportOfRow("Orders", id), false);
    list.Add("OrderItems",
             services::ExportOfTable("OrderItems",
                                     "OrderUniqueID = (SELECT UniqueID FROM Orders WHERE ID = " + number + ")"),
             false);
    return Export(list, ExportOrigin::Withhold, path);
}

bool ImportExportEngine::Export(const ExportList& list, ExportOrigin origin, const std::string& path) {
    if (library_ == nullptr || trouble_.Stands()) {
        return false;
    }
    std::vector<std::string> events;
    std::optional<std::int64_t> snapshot;
    try {
        ExportFile file(path);
        const sql::Connection& connection = library_->Connection();
        {
            sql::Transaction transaction(connection, sql::Transaction::Kind::Read);
            ExportWriter writer(connection, file, origin);
            writer.WriteAll(list);
            if (origin == ExportOrigin::Tell && list.HoldsWholeTables()) {
                snapshot = connection.Number("SELECT MAX(ID) FROM AuditLog");
            }
            events = writer.PassedOver();
            if (verbose_) {
                events.push_back(Counted(writer.RecordCount(), "record", "was", "were") + " exported.");
            }
        }
        if (snapshot) {
            NoteSnapshot(connection, *snapshot);
        }
        file.Finish();
    } catch (const std::exception& failure) {
        Tell(std::string("An export failed: ") + failure.what());
        return false;
    }
    for (const std::string& event : events) {
        Tell(event);
    }
    return true;
}

bool ImportExportEngine::ImportFile(const std::string& path) {
    if (trouble_.Refuses()) {
        return false;
    }
    try {
        if (library_ == nullptr) {
            throw services::Failure("the engine has no company");
        }
        const auto unknownTables =
            ignoreUnknownTables_ ? ImportReader::UnknownTables::PassOver : ImportReader::UnknownTables::Refuse;
        const ImportResult result = Import(library_->Connection(), path, unknownTables);
        trouble_.NoteImported();
        if (result.problems > 0) {
            Tell(Counted(result.problems, "record", "could not be imported and was",
                         "could not be imported and were") +
                 " put aside.");
        }
        if (result.conflicts > 0) {
            Tell(Counted(result.conflicts, "record", "was", "were") + " changed on both sides; the version" +
                 (result.conflicts == 1 ? " that lost was" : "s that lost were") + " kept.");
        }
        if (result.givenUp > 0) {
            Tell(Counted(result.givenUp, "change", "that was given up by a reset is",
                         "that were given up by a reset are") +
                 " kept.");
        }
        if (verbose_) {
            Tell(Counted(result.records, "record", "was", "were") + " imported.");
        }
        return true;
    } catch (const FileRefused& refusal) {
        Tell(std::string("A file could not be imported: ") + refusal.what());
    } catch (const std::exception& failure) {
        trouble_.Note(std::string("A file could not be stored and is kept: ") + failure.what());
    }
    return false;
}

void ImportExportEngine::PreTerminate() {
    if (library_ != nullptr && !trouble_.Stands()) {
        try {
            ForgetOlderSchemas(library_->Connection().Path());
        } catch (const services::Failure&) {
            // The database cannot be opened: the copies stay.
        }
    }
    library_ = nullptr;
    ClearExports();
}

void ImportExportEngine::Tell(const std::string& text) {
    try {
        library_->RecordEvent(text, std::nullopt);
    } catch (const services::Failure&) {
        // The work is done or given up by now, and its result says so; a full or locked event list changes
        // nothing.
    }
}

} // namespace qndr::suite
