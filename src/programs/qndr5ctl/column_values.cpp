#include "programs/qndr5ctl/column_values.h"

#include "programs/qndr5ctl/did_you_mean.h"
#include "programs/qndr5ctl/opened_company.h"
#include "services/failure.h"
#include "shared/formatting.h"
#include "shared/records.h"
#include "text/base64.h"
#include "text/letter_case.h"
#include "text/utf8.h"
#include "text/utf8_path.h"

#include <fstream>
#include <iterator>

namespace qndr::control {

using services::Failure;

namespace {

/// The most that the other end's import takes in one value.
constexpr std::int64_t LargestFile = 64LL * 1024 * 1024;

[[noreturn]] void Refuse(const suite::Column& column, const std::string& text, const std::string& wanted) {
    throw Failure("'" + text + "' does not fit the column " + std::string(column.name) + ", which holds " +
                  wanted);
}

suite::StoredValue BooleanValue(const suite::Column& column, const std::string& text) {
    const std::string word = text::ToLowerCase(text);
    if (word == "1" || word == "yes" || word == "true") {
        return std::int64_t{1};
    }
    if (word == "0" || word == "no" || word == "false") {
        return std::int64_t{0};
    }
    Refuse(column, text, "1 (yes) or 0 (no)");
}

suite::StoredValue NumberValue(const suite::Column& column, const std::string& text) {
    suite::StoredValue number = suite::NumberOrText(text);
    const bool whole = std::holds_alternative<std::int64_t>(number);
    if (column.type == suite::ColumnType::Integer && !whole) {
        Refuse(column, text, "a whole number");
    }
    if (!whole && !std::holds_alternative<double>(number)) {
        Refuse(column, text, "a number, with a point for its decimals");
    }
    return number;
}

suite::StoredValue DateValue(const suite::Column& column, const std::string& text) {
    const auto date = ParseDate(text);
    if (!date) {
        Refuse(column, text, "a date in UTC: yyyy-mm-dd, yyyymmdd or mm/dd/yyyy, with or without hh:nn:ss");
    }
    return FormatSQLDate(*date, false);
}

suite::StoredValue BytesValue(const ControlContext& context, const suite::Column& column,
                              const std::string& text) {
    if (!text.starts_with('@')) {
        Refuse(column, text, "bytes from a file: @FILE");
    }
    const std::string path = text.substr(1);
    if (!context.services.fileTools.FileExists(path)) {
        throw Failure("there is no file '" + path + "'");
    }
    if (context.services.fileTools.GetFileSize(path) > LargestFile) {
        throw Failure("the file '" + path + "' is larger than the 64 MiB that can be exchanged");
    }
    std::ifstream file(text::ToPath(path), std::ios::binary);
    suite::Bytes bytes{{std::istreambuf_iterator<char>(file), {}}};
    if (!file) {
        throw Failure("the file '" + path + "' cannot be read");
    }
    return bytes;
}

suite::StoredValue ParseValue(const ControlContext& context, const suite::Column& column,
                              const std::string& text) {
    if (column.type == suite::ColumnType::Text) {
        if (!text::IsUtf8(text)) {
            throw Failure("the text for the column " + std::string(column.name) + " is no UTF-8");
        }
        return text;
    }
    if (text.empty()) {
        return Null{};
    }
    switch (column.type) {
    case suite::ColumnType::Boolean:
        return BooleanValue(column, text);
    case suite::ColumnType::Date:
        return DateValue(column, text);
    case suite::ColumnType::Bytes:
        return BytesValue(context, column, text);
    case suite::ColumnType::Reference:
        return NormalizeUniqueID(text);
    default:
        return NumberValue(column, text);
    }
}

struct CellMaker {
    const suite::Column& column;

    Json operator()(Null) const { return {}; }
    Json operator()(std::int64_t number) const { return number; }
    Json operator()(double number) const {
        const std::string text = Variant(number).ToText();
        const bool isPlain = text.find_first_not_of("0123456789.-") == std::string::npos && !text.starts_with('.');
        return isPlain ? Json(text::DecimalNumber{text}) : Json(text);
    }
    Json operator()(const std::string& text) const {
        return column.type == suite::ColumnType::Date && !text.empty() ? StoredDate(text) : Json(text);
    }
    Json operator()(const suite::Bytes& bytes) const {
        std::string text;
        text::AppendBase64(text, bytes.content);
        return text;
    }
};

} // namespace

const suite::Table& TableNamed(const std::string& name) {
    const suite::Table* table = suite::FindAuditedTable(name);
    if (table == nullptr) {
        std::vector<std::string_view> names;
        for (const suite::Table& each : suite::AuditedTables()) {
            names.push_back(each.name);
        }
        throw Failure("there is no table '" + name + "' whose changes are exchanged" + DidYouMean(name, names));
    }
    return *table;
}

Assignment::Assignment(const std::string& text) {
    const std::size_t end = text.find('=');
    if (end == std::string::npos || end == 0) {
        throw Failure("'" + text + "' is not of the form COLUMN=VALUE");
    }
    column = text.substr(0, end);
    value = text.substr(end + 1);
}

suite::ColumnValue ParseColumnValue(const ControlContext& context, const suite::Table& table,
                                    const Assignment& assignment) {
    const suite::Column* column = suite::FindExchangedColumn(table, assignment.column);
    if (column == nullptr) {
        std::vector<std::string_view> names;
        for (const suite::Column& each : table.columns) {
            if (!each.local) {
                names.push_back(each.name);
            }
        }
        throw Failure("the table " + std::string(table.name) + " has no column '" + assignment.column +
                      "' that can be given" + DidYouMean(assignment.column, names));
    }
    return {column, ParseValue(context, *column, assignment.value)};
}

std::string ParseUniqueID(std::string_view text) {
    constexpr std::string_view Form = "00000000-0000-0000-0000-000000000000";
    std::string id = NormalizeUniqueID(text);
    bool fits = id.size() == Form.size();
    for (std::size_t i = 0; fits && i < Form.size(); ++i) {
        const bool hexadecimal = (id[i] >= '0' && id[i] <= '9') || (id[i] >= 'A' && id[i] <= 'F');
        fits = Form[i] == '-' ? id[i] == '-' : hexadecimal;
    }
    if (!fits) {
        throw Failure("'" + std::string(text) + "' is no GUID");
    }
    return id;
}

Json CellForPeople(const suite::ColumnValue& value) {
    const auto* bytes = std::get_if<suite::Bytes>(&value.value);
    return bytes == nullptr ? CellForMachines(value)
                            : Json("(" + std::to_string(bytes->content.size()) + " bytes)");
}

Json CellForMachines(const suite::ColumnValue& value) {
    return std::visit(CellMaker{*value.column}, value.value);
}

} // namespace qndr::control
