#include "suite/exchange/import_values.h"

namespace qndr::suite {

namespace {

/// Text such as "inf" is no number to the database, so it must not become one here.
bool LooksNumeric(std::string_view text) {
    const char c = text.empty() ? ' ' : text[text.size() > 1 && text[0] == '-' ? 1 : 0];
    return (c >= '0' && c <= '9') || c == '.';
}

} // namespace

void ConvertValue(ImportValue& value, std::string_view text, ColumnType type, bool encoded) {
    if (value.kind == ImportValue::Kind::Null) {
        return;
    }
    switch (type) {
    case ColumnType::Bytes:
        if (encoded) {
            value.kind = ImportValue::Kind::Bytes;
        }
        return;
    case ColumnType::Integer:
    case ColumnType::Boolean:
    case ColumnType::Decimal:
        if (encoded || !LooksNumeric(text)) {
            return;
        }
        if (ParseWhole(text, value.integer)) {
            value.kind = ImportValue::Kind::Integer;
        } else if (ParseWhole(text, value.real)) {
            value.kind = ImportValue::Kind::Real;
        }
        return;
    default:
        return;
    }
}

} // namespace qndr::suite
