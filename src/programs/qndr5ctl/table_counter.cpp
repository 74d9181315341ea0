#include "programs/qndr5ctl/table_counter.h"

#include "services/failure.h"

namespace qndr::control {

using services::Failure;

TableCounter::TableCounter() : parser_(XML_ParserCreate("UTF-8"), &XML_ParserFree) {
    if (!parser_) {
        throw Failure("there is no memory to read the data with");
    }
    XML_SetUserData(parser_.get(), this);
    XML_SetElementHandler(parser_.get(), &StartElement, &EndElement);
}

void TableCounter::Take(std::string_view piece) {
    Parse(piece, false);
}

std::vector<TableCount> TableCounter::Finish() {
    Parse({}, true);
    if (!isExchange_) {
        throw Failure("the data is no exchange document");
    }
    return counts_;
}

void TableCounter::Parse(std::string_view piece, bool last) {
    if (XML_Parse(parser_.get(), piece.data(), static_cast<int>(piece.size()), last ? 1 : 0) != XML_STATUS_OK) {
        throw Failure("the data is damaged in line " + std::to_string(XML_GetCurrentLineNumber(parser_.get())) +
                      ": " + XML_ErrorString(XML_GetErrorCode(parser_.get())));
    }
}

void TableCounter::StartElement(void* self, const char* name, const char** attributes) {
    auto& counter = *static_cast<TableCounter*>(self);
    const std::string_view element = name;
    ++counter.depth_;
    if (counter.depth_ == 1) {
        counter.isExchange_ = element == "Exchange";
    } else if (counter.depth_ == 2 && element == "Table") {
        counter.StartTable(attributes);
    } else if (counter.depth_ == 3 && element == "Record" && !counter.counts_.empty()) {
        ++counter.counts_[counter.current_].records;
    }
}

void TableCounter::EndElement(void* self, const char*) {
    --static_cast<TableCounter*>(self)->depth_;
}

void TableCounter::StartTable(const char** attributes) {
    std::pair<std::string, bool> table;
    for (; *attributes != nullptr; attributes += 2) {
        const std::string_view name = attributes[0];
        const std::string_view value = attributes[1];
        if (name == "Name") {
            table.first = value;
        } else if (name == "Deleted") {
            table.second = value == "1";
        }
    }
    const auto [place, isNew] = indexes_.try_emplace(table, counts_.size());
    if (isNew) {
        counts_.push_back({table.first, table.second, 0});
    }
    current_ = place->second;
}

} // namespace qndr::control
