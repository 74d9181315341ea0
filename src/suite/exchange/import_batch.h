#pragma once

#include "suite/schema/company_schema.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qndr::suite {

/// A piece of the text of a record, counted from where the record's text begins.
struct TextSpan {
    std::size_t offset = 0;
    std::size_t length = 0;
};

struct ImportValue {
    enum class Kind : std::uint8_t { Null, Integer, Real, Text, Bytes };

    std::size_t column = 0; ///< index in the table's columns
    Kind kind = Kind::Null;
    std::int64_t integer = 0;
    double real = 0;
    TextSpan text;
};

/// One record of an exchange file, with the columns that this table knows.
struct ImportRecord {
    const Table* table = nullptr;
    bool deletion = false;
    std::size_t text = 0; ///< where the record's text begins in the batch
    TextSpan uniqueID;
    TextSpan origin;
    std::int64_t originID = 0;
    bool isRepair = false; ///< sent again because the two sides were found to differ
    std::size_t firstValue = 0;
    std::size_t valueCount = 0;
    std::uint64_t columns = 0; ///< bit n is set when the table's column n has a value here
    std::string problem;       ///< why the record cannot be taken; empty otherwise
};

/// Some consecutive records of a file. The buffers are used again and again, so that reading allocates nothing.
struct ImportBatch {
    std::string from;    ///< UniqueID of the sending company
    std::string seen;    ///< how many files of which companies the sender had accepted (sent_ranges.h)
    std::string refused; ///< which files of which companies its sender could not take in (refused_files.h)
    std::string fileID;  ///< which file this is; empty for one that may be taken any number of times
    std::string text;
    std::vector<ImportValue> values;
    std::vector<ImportRecord> records;

    std::string_view Text(const ImportRecord& record, TextSpan span) const {
        return {text.data() + record.text + span.offset, span.length};
    }
};

} // namespace qndr::suite
