// The forms in which values are stored and sent: XML text, base64, and the JSON of kept rows.
#include "services/failure.h"
#include "suite/company_fixture.h"
#include "suite/engine/row_json.h"
#include "suite/exchange/xml_text.h"
#include "suite/sql/sqlite/sqlite_connection.h"
#include "support.h"
#include "text/base64.h"

#include <expat.h>

namespace qndr::suite {
namespace {

using fuzz::Require;

/// The text of the one element, and whether it is marked as base64.
struct Element {
    std::string text;
    bool encoded = false;
    bool null = false;
};

void XMLCALL Start(void* element, const char*, const char** attributes) {
    for (; *attributes != nullptr; attributes += 2) {
        const std::string name = attributes[0];
        static_cast<Element*>(element)->encoded |= name == "Encoding";
        static_cast<Element*>(element)->null |= name == "Null";
    }
}

void XMLCALL Text(void* element, const char* text, int length) {
    static_cast<Element*>(element)->text.append(text, static_cast<std::size_t>(length));
}

Element Parse(const std::string& xml) {
    Element element;
    XML_Parser parser = XML_ParserCreate("UTF-8");
    XML_SetUserData(parser, &element);
    XML_SetStartElementHandler(parser, &Start);
    XML_SetCharacterDataHandler(parser, &Text);
    Require(XML_Parse(parser, xml.data(), static_cast<int>(xml.size()), 1) == XML_STATUS_OK,
            "values make good XML");
    XML_ParserFree(parser);
    return element;
}

void CheckXml(const std::string& value) {
    const XmlColumn column("C");
    std::string xml;
    column.AppendText(xml, value);
    Element element = Parse(xml);
    Require(!element.encoded || text::DecodeBase64(element.text, 0), "encoded text is base64");
    Require(element.text == value, "text reads back from XML");

    xml.clear();
    column.AppendBytes(xml, value);
    element = Parse(xml);
    Require(element.encoded && text::DecodeBase64(element.text, 0) && element.text == value,
            "bytes read back from XML");
}

void CheckBase64(const std::string& value) {
    std::string text;
    text::AppendBase64(text, value);
    Require(text.size() == (value.size() + 2) / 3 * 4, "base64 has four digits for three bytes");
    Require(text::DecodeBase64(text, 0) && text == value, "bytes read back from base64");

    std::string decoded = "before" + value;
    if (text::DecodeBase64(decoded, 6)) {
        Require(decoded.starts_with("before") && decoded.size() - 6 <= value.size(),
                "decoding keeps what precedes");
        std::string again;
        text::AppendBase64(again, std::string_view(decoded).substr(6));
        Require(text::DecodeBase64(again, 0) && again == decoded.substr(6),
                "decoded text encodes and decodes alike");
    }
}

const sql::Connection& Connection() {
    static const StandingClock clock;
    static const sql::SqliteConnection connection(fuzz::Scratch() / "rows.db", clock, sql::Missing::Create);
    return connection;
}

void CheckRow(const std::string& value, std::int64_t number) {
    static sql::Statement row = Connection().Prepare(
        "SELECT ?1 AS A, ?2 AS \"b \"\"\\c\", NULL AS N, ?3 AS I, CAST(?1 AS REAL) AS R, '' AS E");
    row.Bind(1, value);
    row.BindBytes(2, value);
    row.Bind(3, number);
    Require(row.Step(), "there is a row");
    const std::vector<RowJsonValue> values = ReadRowJson(Connection(), RowAsJson(row));
    Require(values.size() == 6 && values[0].column == "A" && values[1].column == "b \"\\c",
            "all columns are there");
    Require(values[0].form != RowJsonValue::Form::Null && values[0].content == value, "text reads back from JSON");
    Require(values[1].form == RowJsonValue::Form::Base64 && values[1].content == value,
            "bytes read back from JSON");
    Require(values[2].form == RowJsonValue::Form::Null, "NULL stays NULL");
    Require(values[3].content == std::to_string(number), "a number reads back from JSON");
    const double real = row.Real(4);
    Require(std::strtod(values[4].content.c_str(), nullptr) == real, "a real number reads back from JSON");
    Require(values[5].form == RowJsonValue::Form::Text && values[5].content.empty(), "an empty text stays one");
    row.Reset();
}

/// Any text: it is read, or refused with a failure.
void CheckForeignJson(const std::string& json) {
    try {
        for (const RowJsonValue& value : ReadRowJson(Connection(), json)) {
            Require(value.form != RowJsonValue::Form::Null || value.content.empty(), "NULL has no content");
        }
    } catch (const services::Failure&) {
        return;
    }
}

} // namespace
} // namespace qndr::suite

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace qndr::suite;
    const std::string value = qndr::fuzz::AsText(data, size);
    CheckBase64(value);
    CheckXml(value);
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < size && i < sizeof number; ++i) {
        number = number << 8 | data[i];
    }
    CheckRow(value, static_cast<std::int64_t>(number));
    CheckForeignJson(value);
    return 0;
}
