#include "suite/engine/row_json.h"

#include "services/failure.h"
#include "suite/exchange/xml_text.h"
#include "text/base64.h"
#include "text/json.h"

#include <array>
#include <charconv>
#include <cmath>

namespace qndr::suite {

namespace {

/// The shortest text that reads back as the same double.
void AppendReal(std::string& out, double number) {
    if (std::isinf(number)) {
        out += number < 0 ? "-9e999" : "9e999"; // how the database writes and reads what lies beyond a double
        return;
    }
    std::array<char, 32> digits{};
    out.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
}

bool IsWholeInJson(std::string_view text) {
    // The database's reader ends a text at an escaped null character.
    return text.find('\0') == std::string_view::npos && IsXmlUtf8(text);
}

void AppendValue(std::string& json, const sql::Statement& row, int column) {
    const sql::ValueType type = row.Type(column);
    if (type == sql::ValueType::Null) {
        json += "null";
    } else if (type == sql::ValueType::Real) {
        json += '"';
        AppendReal(json, row.Real(column));
        json += '"';
    } else if (type == sql::ValueType::Bytes || !IsWholeInJson(row.Text(column))) {
        json += R"({"base64":")";
        text::AppendBase64(json, row.Bytes(column));
        json += "\"}";
    } else {
        text::AppendJsonText(json, row.Text(column));
    }
}

} // namespace

std::string RowAsJson(const sql::Statement& row) {
    std::string json = "{";
    for (int i = 0; i < row.ColumnCount(); ++i) {
        json += i == 0 ? "" : ",";
        text::AppendJsonText(json, row.ColumnName(i));
        json += ':';
        AppendValue(json, row, i);
    }
    return json + "}";
}

std::vector<RowJsonValue> ReadRowJson(const sql::Connection& connection, std::string_view json) {
    sql::Statement member = connection.Prepare(
        "SELECT key, type, CASE type WHEN 'object' THEN json_extract(value, '$.base64') ELSE value END "
        "FROM json_each(?1)");
    member.Bind(1, json);
    std::vector<RowJsonValue> values;
    while (member.Step()) {
        RowJsonValue value;
        value.column = member.Text(0);
        value.content = member.Text(2);
        if (member.Text(1) == "text") {
            value.form = RowJsonValue::Form::Text;
        } else if (member.Text(1) == "object" && !member.IsNull(2) && text::DecodeBase64(value.content, 0)) {
            value.form = RowJsonValue::Form::Base64;
        } else if (member.Text(1) != "null") {
            throw services::Failure("the value of '" + value.column + "' is not readable");
        }
        values.push_back(std::move(value));
    }
    return values;
}

} // namespace qndr::suite
