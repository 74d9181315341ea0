// The reader of exchange files: its records hold together, and it does not matter where a file is cut into pieces.
#include "services/failure.h"
#include "suite/exchange/import_reader.h"
#include "support.h"

#include <algorithm>
#include <bit>
#include <numeric>
#include <optional>

namespace qndr::suite {
namespace {

using fuzz::Require;

/// How many bytes the reader takes from a file at once.
constexpr std::size_t PieceSize = 128 * 1024;

void CheckSpan(const ImportBatch& batch, const ImportRecord& record, TextSpan span) {
    Require(record.text <= batch.text.size() && span.offset <= batch.text.size() - record.text &&
                span.length <= batch.text.size() - record.text - span.offset,
            "a record's texts lie in its batch");
}

void Describe(const ImportBatch& batch, const ImportRecord& record, std::string& out) {
    Require(record.table != nullptr, "a record has a table");
    CheckSpan(batch, record, record.uniqueID);
    CheckSpan(batch, record, record.origin);
    Require(!record.problem.empty() || record.uniqueID.length > 0, "a record without an identity is a problem");
    const auto add = [&](std::string_view text) { out.append(text).append("|"); };
    add(record.table->name);
    add(record.deletion ? "deleted" : "");
    add(batch.Text(record, record.uniqueID));
    add(batch.Text(record, record.origin));
    add(std::to_string(record.originID));
    add(record.problem);
    Require(record.firstValue <= batch.values.size() &&
                record.valueCount <= batch.values.size() - record.firstValue,
            "a record's values lie in its batch");
    std::uint64_t columns = 0;
    for (std::size_t i = 0; i < record.valueCount; ++i) {
        const ImportValue& value = batch.values[record.firstValue + i];
        Require(value.column < record.table->columns.size() && !record.deletion &&
                    !record.table->columns[value.column].local,
                "a value is one of a column that travels");
        columns |= std::uint64_t{1} << value.column;
        CheckSpan(batch, record, value.text);
        add(std::to_string(value.column) + ' ' + std::to_string(static_cast<int>(value.kind)));
        if (value.kind == ImportValue::Kind::Integer) {
            add(std::to_string(value.integer));
        } else if (value.kind == ImportValue::Kind::Real) {
            add(std::to_string(std::bit_cast<std::uint64_t>(value.real)));
        }
        add(value.kind == ImportValue::Kind::Null ? "" : batch.Text(record, value.text));
    }
    Require(columns == record.columns, "the marks are those of the columns with a value");
    out += '\n';
}

/// All records of the file; nothing when it is refused.
std::optional<std::string> ReadAll(const std::string& text, ImportReader::UnknownTables unknownTables) {
    const std::string path = fuzz::Scratch().Write("data.xml", text);
    ImportReader reader(path, unknownTables);
    ImportBatch batch;
    std::string all;
    try {
        while (reader.Read(batch)) {
            for (const ImportRecord& record : batch.records) {
                Describe(batch, record, all);
            }
        }
    } catch (const services::Failure& failure) {
        Require(*failure.what() != '\0', "a refusal has a reason");
        return std::nullopt;
    }
    return all + batch.from + "|" + batch.seen + "|" + batch.fileID;
}

/// The same file with blanks in its first tag, so many that the reader's first piece ends in the middle of the
/// rest; nothing when there is no such place.
std::optional<std::string> CutElsewhere(const std::string& text) {
    constexpr std::string_view tag = "<Exchange ";
    const std::size_t place = text.find(tag);
    if (place == std::string::npos) {
        return std::nullopt;
    }
    const std::size_t sum = std::accumulate(text.begin(), text.end(), text.size(), [](std::size_t so, char c) {
        return so * 31 + static_cast<unsigned char>(c);
    });
    const std::size_t behind = place + tag.size();
    const std::size_t cut = behind + sum % (text.size() - behind + 1);
    return text.substr(0, behind) + std::string(PieceSize - std::min(cut, PieceSize), ' ') + text.substr(behind);
}

} // namespace
} // namespace qndr::suite

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace qndr::suite;
    const std::string text = qndr::fuzz::AsText(data, size);
    const auto tolerant = ReadAll(text, ImportReader::UnknownTables::PassOver);
    const auto strict = ReadAll(text, ImportReader::UnknownTables::Refuse);
    Require(!strict || strict == tolerant, "without unknown tables both ways read alike");
    if (const auto other = CutElsewhere(text)) {
        Require(ReadAll(*other, ImportReader::UnknownTables::PassOver) == tolerant,
                "it does not matter where a file is cut into pieces");
    }
    return 0;
}
