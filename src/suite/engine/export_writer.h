#pragma once

#include "suite/engine/export_list.h"
#include "suite/exchange/export_file.h"
#include "suite/exchange/xml_text.h"
#include "suite/sql/connection.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace qndr::suite {

/// Whether the records that an audit row names tell whose version they are. A copy to be kept (an order backup)
/// does not: it is to be taken back like any other version, however old it is.
enum class ExportOrigin { Tell, Withhold };

/// Writes entries as one exchange file. The caller holds a read transaction, so that all of them show one state.
class ExportWriter {
  public:
    ExportWriter(const sql::Connection& connection, ExportFile& file, ExportOrigin origin);

    /// Raises services::Failure for every trouble but an entry that this database cannot understand (its view is
    /// missing), or that asks for more than its table: that one is passed over, for it would otherwise stop the
    /// exchange at every try.
    void WriteAll(const ExportList& list);

    std::int64_t RecordCount() const { return records_; }
    /// One line for each kind of statement that was passed over.
    const std::vector<std::string>& PassedOver() const { return passedOver_; }

  private:
    /// A statement that serves all entries that differ in nothing but the ID of their row.
    struct Source {
        explicit Source(sql::Statement prepared) : statement(std::move(prepared)) {}
        sql::Statement statement;
        std::vector<int> columns; ///< those that travel: all but the local key
        std::vector<XmlColumn> elements;
        int uniqueID = -1;
        int auditID = -1;
        int origin = -1;
        int originID = -1;
        int repair = -1;
    };

    void Write(const ExportList::Kind& kind, const ExportList::Entry& entry);
    sql::Statement PrepareFenced(const ExportList::Kind& kind);
    Source* SourceFor(const ExportList::Kind& kind, std::size_t index);
    void OpenTable(const ExportList::Kind& kind);
    void CloseTable();
    void WriteRecord(const Source& source, const ExportList::Kind& kind);
    void AppendOrigin(std::string_view origin, std::int64_t id, bool isRepair);
    void AppendNewestOrigin(const std::string& table, std::string_view uniqueID);
    void FlushBeyond(std::size_t size);

    const sql::Connection& connection_;
    ExportFile& file_;
    XmlColumn::Spill spill_ = [this] { FlushBeyond(0); };
    ExportOrigin origin_;
    std::unique_ptr<sql::Fence> fence_;
    std::string own_;
    sql::Statement newestAudit_;
    std::unordered_map<std::size_t, std::optional<Source>> sources_; ///< by kind; nothing: not understood
    std::string text_;
    std::string openTable_;
    bool openDeletion_ = false;
    bool tableIsOpen_ = false;
    std::int64_t records_ = 0;
    std::vector<std::string> passedOver_;
};

} // namespace qndr::suite
