#include "suite/exchange/import_reader.h"

#include "services/failure.h"
#include "suite/exchange/import_values.h"
#include "text/base64.h"
#include "text/letter_case.h"

#include <limits>
#include <utility>

namespace qndr::suite {

namespace {

using services::Failure;

constexpr std::size_t ChunkSize = 128 * 1024;

/// More than a main company of a thousand workstations could tell of.
constexpr std::size_t LongestRefusedList = 512 * 1024;

/// Stored in every file: never change.
constexpr int FormatVersion = 1;

constexpr std::size_t UnknownColumn = std::numeric_limits<std::size_t>::max();
constexpr std::size_t UniqueIDColumn = UnknownColumn - 1;

enum Depth { InDocument = 0, InExchange = 1, InTable = 2, InRecord = 3, InColumn = 4 };

std::string_view Attribute(const char** attributes, std::string_view name) {
    for (; *attributes != nullptr; attributes += 2) {
        if (name == attributes[0]) {
            return attributes[1];
        }
    }
    return {};
}

} // namespace

struct ImportReader::Handlers {
    static ImportReader& Of(void* reader) { return *static_cast<ImportReader*>(reader); }
    static void XMLCALL Start(void* reader, const char* name, const char** attributes) {
        Of(reader).StartElement(name, attributes);
    }
    static void XMLCALL End(void* reader, const char*) { Of(reader).EndElement(); }
    static void XMLCALL Text(void* reader, const char* text, int length) {
        Of(reader).AddText({text, static_cast<std::size_t>(length)});
    }
    /// Comments and the like.
    static void XMLCALL Other(void* reader, const char*, int) { Of(reader).quietBytes_ = 0; }
    static void XMLCALL Doctype(void* reader, const char*, const char*, const char*, int) {
        Of(reader).Refuse("a document type is not allowed");
    }
};

ImportReader::ImportReader(const std::string& path, UnknownTables unknownTables)
    : parser_(XML_ParserCreate("UTF-8"), &XML_ParserFree), unknownTables_(unknownTables) {
    file_.rdbuf()->pubsetbuf(nullptr, 0);
    file_.open(path, std::ios::binary);
    if (!file_) {
        throw Failure("the file '" + path + "' could not be opened");
    }
    if (parser_ == nullptr) {
        throw Failure("there is no memory for reading a file");
    }
    XML_SetUserData(parser_.get(), this);
    XML_SetElementHandler(parser_.get(), &Handlers::Start, &Handlers::End);
    XML_SetCharacterDataHandler(parser_.get(), &Handlers::Text);
    XML_SetDefaultHandlerExpand(parser_.get(), &Handlers::Other);
    XML_SetStartDoctypeDeclHandler(parser_.get(), &Handlers::Doctype);
}

bool ImportReader::Read(ImportBatch& batch) {
    batch.text.clear();
    batch.values.clear();
    batch.records.clear();
    if (atEnd_) {
        return false;
    }
    batch_ = &batch;
    TakeUp(batch);
    // A long record fills one batch alone instead of being moved from batch to batch.
    while (!atEnd_ && batch.records.empty()) {
        ParseNext();
    }
    SetAside(batch);
    batch.from = from_;
    batch.seen = seen_;
    batch.refused = refused_;
    batch.fileID = fileID_;
    return true;
}

void ImportReader::ParseNext() {
    void* const buffer = XML_GetBuffer(parser_.get(), static_cast<int>(ChunkSize));
    if (buffer == nullptr) {
        throw Failure("there is no memory for reading a file");
    }
    file_.read(static_cast<char*>(buffer), static_cast<std::streamsize>(ChunkSize));
    if (file_.bad()) {
        throw Failure("the file could not be read to its end");
    }
    atEnd_ = file_.eof();
    const auto length = static_cast<int>(file_.gcount());
    quietBytes_ += static_cast<std::size_t>(length);
    const std::size_t before = quietBytes_;
    if (XML_ParseBuffer(parser_.get(), length, atEnd_ ? 1 : 0) != XML_STATUS_OK) {
        RaiseParserError();
    }
    if (quietBytes_ == before &&
        quietBytes_ > (depth_ == InDocument ? bounds::LongestOutermostTag : bounds::LongestTag)) {
        throw FileRefused("a tag of the file is too long");
    }
}

void ImportReader::RaiseParserError() const {
    const XML_Error error = XML_GetErrorCode(parser_.get());
    if (error == XML_ERROR_NO_MEMORY) {
        throw Failure("there is no memory for reading a file");
    }
    throw FileRefused(!refusal_.empty() ? refusal_ : XML_ErrorString(error));
}

void ImportReader::SetAside(ImportBatch& batch) {
    // A record that is passed over has nothing in the batch; what is known of a record is the last taken one's.
    if (depth_ < InRecord || table_ == nullptr) {
        return;
    }
    setAside_.text.assign(batch.text, record_.text);
    setAside_.values.assign(batch.values.begin() + static_cast<std::ptrdiff_t>(record_.firstValue),
                            batch.values.end());
    batch.text.resize(record_.text);
    batch.values.resize(record_.firstValue);
    record_.text = 0;
    record_.firstValue = 0;
}

void ImportReader::TakeUp(ImportBatch& batch) {
    batch.text += setAside_.text;
    batch.values.insert(batch.values.end(), setAside_.values.begin(), setAside_.values.end());
    setAside_.text.clear();
    setAside_.values.clear();
}

void ImportReader::Refuse(const std::string& reason) {
    if (refusal_.empty()) {
        refusal_ = reason;
    }
    XML_StopParser(parser_.get(), XML_FALSE);
}

void ImportReader::StartElement(std::string_view name, const char** attributes) {
    quietBytes_ = 0;
    switch (depth_++) {
    case InDocument:
        StartExchange(name, attributes);
        break;
    case InExchange:
        StartTable(name, attributes);
        break;
    case InTable:
        StartRecord(name, attributes);
        break;
    case InRecord:
        StartColumn(name, attributes);
        break;
    default:
        Refuse("a column holds an element");
        break;
    }
    // The names further out are known, or refused by now.
    const bool known = depth_ != InColumn || (table_ != nullptr && value_.column != UnknownColumn);
    if (!(known || strangeNames_.Admit(name)) || !strangeNames_.AdmitAttributes(attributes)) {
        Refuse("the file has too many strange names");
    }
}

void ImportReader::StartExchange(std::string_view name, const char** attributes) {
    int version = 0;
    if (name != "Exchange" || !ParseWhole(Attribute(attributes, "Version"), version) || version < 1) {
        return Refuse("this is no exchange file");
    }
    if (version > FormatVersion) {
        return Refuse("the file was written by a newer version");
    }
    from_ = Attribute(attributes, "From");
    seen_ = Attribute(attributes, "Seen");
    refused_ = Attribute(attributes, "Refused");
    fileID_ = Attribute(attributes, "FileID");
    if (refused_.size() > LongestRefusedList) {
        Refuse("the list of refused files is too long");
    }
}

void ImportReader::StartTable(std::string_view name, const char** attributes) {
    if (name != "Table") {
        return Refuse("something other than a table stands in the file");
    }
    const std::string_view table = Attribute(attributes, "Name");
    table_ = FindAuditedTable(table);
    deletion_ = Attribute(attributes, "Deleted") == "1";
    if (table_ == nullptr && unknownTables_ == UnknownTables::Refuse && !IsClosedToFiles(table)) {
        Refuse("the table '" + std::string(table) + "' is unknown");
    }
    if (table_ != nullptr && table_->columns.size() > std::numeric_limits<std::uint64_t>::digits) {
        Refuse("the table '" + std::string(table) + "' has more columns than an import can take");
    }
}

void ImportReader::StartRecord(std::string_view name, const char** attributes) {
    if (name != "Record") {
        return Refuse("something other than a record stands in a table");
    }
    elements_ = 0;
    hasUniqueID_ = false;
    if (table_ == nullptr) {
        return;
    }
    record_.table = table_;
    record_.deletion = deletion_;
    record_.text = batch_->text.size();
    record_.firstValue = batch_->values.size();
    record_.columns = 0;
    record_.problem.clear();
    record_.uniqueID = {};
    record_.originID = 0;
    record_.isRepair = Attribute(attributes, "Repair") == "1";
    nextColumn_ = 0;
    const std::string_view origin = Attribute(attributes, "Origin");
    record_.origin = {0, origin.size()};
    batch_->text += origin;
    if (!origin.empty() && !ParseWhole(Attribute(attributes, "OriginID"), record_.originID)) {
        record_.problem = "The number of its version is not readable.";
    }
}

std::size_t ImportReader::FindColumn(std::string_view name) const {
    if (text::EqualsWithoutCase(name, "UniqueID")) {
        return UniqueIDColumn;
    }
    const std::vector<Column>& columns = table_->columns;
    for (std::size_t i = 0; i < columns.size() && !deletion_; ++i) {
        if (text::EqualsWithoutCase(name, columns[i].name)) {
            return columns[i].local ? UnknownColumn : i;
        }
    }
    return UnknownColumn;
}

std::string ImportReader::ColumnName() const {
    return std::string(value_.column == UniqueIDColumn ? "UniqueID" : table_->columns[value_.column].name);
}

bool ImportReader::Repeats(std::size_t column) {
    if (column == UniqueIDColumn) {
        return std::exchange(hasUniqueID_, true);
    }
    return column != UnknownColumn && (record_.columns >> column & 1U) != 0;
}

void ImportReader::StartColumn(std::string_view name, const char** attributes) {
    value_.column = UnknownColumn;
    if (++elements_ > bounds::MostElements) {
        return Refuse("a record of the file has too many values");
    }
    if (table_ == nullptr) {
        return;
    }
    const std::vector<Column>& columns = table_->columns;
    // Files hold the columns in the table's order, so that the next one is nearly always the one that is meant.
    const bool expected =
        nextColumn_ < columns.size() && columns[nextColumn_].name == name && !columns[nextColumn_].local;
    value_.column = expected && !deletion_ ? nextColumn_ : FindColumn(name);
    if (value_.column < columns.size()) {
        nextColumn_ = value_.column + 1;
    }
    if (Repeats(value_.column)) {
        record_.problem = "The column '" + ColumnName() + "' stands in it twice.";
        value_.column = UnknownColumn;
    }
    value_.kind = ImportValue::Kind::Text;
    value_.text.offset = batch_->text.size() - record_.text;
    encoded_ = false;
    tooLarge_ = false;
    if (*attributes != nullptr) {
        encoded_ = Attribute(attributes, "Encoding") == "base64";
        if (Attribute(attributes, "Null") == "1") {
            value_.kind = ImportValue::Kind::Null;
        }
    }
}

void ImportReader::AddText(std::string_view text) {
    quietBytes_ = 0;
    if (depth_ != InColumn || table_ == nullptr || value_.column == UnknownColumn || tooLarge_) {
        return;
    }
    const std::size_t length = batch_->text.size() - record_.text + text.size();
    if (length > bounds::LargestRecord) {
        tooLarge_ = true;
        batch_->text.resize(record_.text + value_.text.offset);
        return;
    }
    // Growing by doubling would need three times the record's room.
    if (length > bounds::LargeRecord && batch_->text.capacity() < record_.text + bounds::LargestRecord) {
        batch_->text.reserve(record_.text + bounds::LargestRecord);
    }
    batch_->text += text;
}

void ImportReader::EndElement() {
    quietBytes_ = 0;
    switch (--depth_) {
    case InRecord:
        return EndColumn();
    case InTable:
        return EndRecord();
    default:
        return;
    }
}

void ImportReader::EndColumn() {
    if (table_ == nullptr || value_.column == UnknownColumn) {
        return;
    }
    const std::size_t offset = record_.text + value_.text.offset;
    if (tooLarge_) {
        record_.problem = "The value of the column '" + ColumnName() + "' is too large.";
    } else if (encoded_ && !text::DecodeBase64(batch_->text, offset)) {
        batch_->text.resize(offset);
        record_.problem = "The value of the column '" + ColumnName() + "' is not base64.";
    }
    value_.text.length = batch_->text.size() - offset;
    if (value_.column == UniqueIDColumn) {
        record_.uniqueID = value_.kind == ImportValue::Kind::Null ? TextSpan{} : value_.text;
        return;
    }
    ConvertValue(value_, batch_->Text(record_, value_.text), table_->columns[value_.column].type, encoded_);
    record_.columns |= std::uint64_t{1} << value_.column;
    batch_->values.push_back(value_);
}

void ImportReader::EndRecord() {
    if (table_ == nullptr) {
        return;
    }
    if (record_.problem.empty() && record_.uniqueID.length == 0) {
        record_.problem = "The record has no UniqueID.";
    }
    record_.valueCount = batch_->values.size() - record_.firstValue;
    batch_->records.push_back(record_);
}

} // namespace qndr::suite
