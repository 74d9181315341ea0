#pragma once

#include "services/failure.h"
#include "suite/exchange/import_batch.h"
#include "suite/exchange/import_bounds.h"

#include <expat.h>

#include <fstream>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

namespace qndr::suite {

/// Something is wrong with the file itself: at any other time and on any other computer it would be refused too.
class FileRefused : public services::Failure {
  public:
    using Failure::Failure;
};

/// Reads an exchange file piece by piece. What the company database must not take from a file (unknown tables and
/// columns, local keys and columns) is left out here. Touches no database.
class ImportReader {
  public:
    enum class UnknownTables { PassOver, Refuse };

    /// Raises services::Failure when the file cannot be opened.
    ImportReader(const std::string& path, UnknownTables unknownTables);

    /// Fills the batch with the next records and gives true, or gives false at the end of the file. A batch may be
    /// empty. Raises FileRefused when the file is not well-formed, is no exchange file of a version that is known
    /// here or goes beyond the bounds, and services::Failure when it cannot be read.
    bool Read(ImportBatch& batch);

  private:
    struct Handlers;
    friend struct Handlers;

    void ParseNext();
    void StartElement(std::string_view name, const char** attributes);
    void EndElement();
    void AddText(std::string_view text);
    void Refuse(const std::string& reason);
    [[noreturn]] void RaiseParserError() const;

    void StartExchange(std::string_view name, const char** attributes);
    void StartTable(std::string_view name, const char** attributes);
    void StartRecord(std::string_view name, const char** attributes);
    void StartColumn(std::string_view name, const char** attributes);
    void EndColumn();
    void EndRecord();
    std::size_t FindColumn(std::string_view name) const;
    std::string ColumnName() const;
    bool Repeats(std::size_t column);
    /// Takes the record that a batch breaks off in out of it, for the next one to begin with.
    void SetAside(ImportBatch& batch);
    void TakeUp(ImportBatch& batch);

    std::ifstream file_;
    std::unique_ptr<std::remove_pointer_t<XML_Parser>, void (*)(XML_Parser)> parser_;
    UnknownTables unknownTables_;
    std::string refusal_;
    bool atEnd_ = false;

    int depth_ = 0;
    std::string from_;
    std::string seen_;
    std::string refused_;
    std::string fileID_;
    const Table* table_ = nullptr; ///< null: the table's records are passed over
    bool deletion_ = false;

    ImportBatch* batch_ = nullptr;
    ImportBatch setAside_;
    ImportRecord record_;
    ImportValue value_;
    StrangeNames strangeNames_;
    std::size_t quietBytes_ = 0; ///< how much was read since the parser last told of anything
    std::size_t elements_ = 0;   ///< of the record
    bool hasUniqueID_ = false;
    std::size_t nextColumn_ = 0; ///< where the next column's name is looked for first
    bool encoded_ = false;
    bool tooLarge_ = false;
};

} // namespace qndr::suite
