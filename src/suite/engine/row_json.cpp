#include "suite/engine/row_json.h"

#include "suite/engine/base64.h"
#include "suite/engine/xml_text.h"

#include <string_view>

namespace qndr::suite {

namespace {

void AppendJsonText(std::string& out, std::string_view text) {
    constexpr std::string_view Digits = "0123456789abcdef";
    out += '"';
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        if (code < 0x20) {
            out += "\\u00";
            out += Digits[code >> 4];
            out += Digits[code & 15U];
            continue;
        }
        if (c == '"' || c == '\\') {
            out += '\\';
        }
        out += c;
    }
    out += '"';
}

} // namespace

std::string RowAsJson(const SqliteStatement& row) {
    std::string json = "{";
    for (int i = 0; i < row.ColumnCount(); ++i) {
        json += i == 0 ? "" : ",";
        AppendJsonText(json, row.ColumnName(i));
        json += ':';
        const int type = sqlite3_column_type(row.Handle(), i);
        if (type == SQLITE_NULL) {
            json += "null";
        } else if (type == SQLITE_BLOB || !IsUtf8(row.Text(i))) {
            json += '"';
            AppendBase64(json, row.Bytes(i));
            json += '"';
        } else {
            AppendJsonText(json, row.Text(i));
        }
    }
    return json + "}";
}

} // namespace qndr::suite
