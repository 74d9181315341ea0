// INI files, company files and connection strings. The first line of the input is a value, a connection string and
// a path at once; the rest is a file.
#include "services/failure.h"
#include "suite/files/ini_files.h"
#include "suite/objects/psd_file.h"
#include "suite/sql/connection_string.h"
#include "suite/sql/sqlite/sqlite_connection.h"
#include "support.h"

namespace qndr::suite {
namespace {

using fuzz::Require;

std::string Stored(const std::string& value) {
    const std::size_t first = value.find_first_not_of(" \t");
    return first == std::string::npos ? "" : value.substr(first, value.find_last_not_of(" \t") - first + 1);
}

/// Empty when the file was written, otherwise the reason why not.
std::string Write(DiskIniTools& ini, const std::string& key, const std::string& value, const std::string& path) {
    try {
        ini.SetValue("COMPANY", key, value, path);
        return "";
    } catch (const services::Failure& failure) {
        return failure.what();
    }
}

void CheckIni(const std::string& value, const std::string& text) {
    constexpr const char* Missing = "no such key";
    DiskIniTools ini;
    const std::string path = fuzz::Scratch().Write("company.psd", text);
    const std::string other = ini.GetValue("COMPANY", "ConnectionString", Missing, path);
    const std::string elsewhere = ini.GetValue("GENERAL", "Name", Missing, path);
    Require(ini.GetValue("company", "CONNECTIONSTRING", Missing, path) == other, "names have no letter case");
    if (const std::string reason = Write(ini, "Name", value, path); !reason.empty()) {
        Require(fuzz::Scratch().Read("company.psd") == text, "a refused value leaves the file as it is");
        return;
    }
    // The second time the file is one that was written here.
    for (int time = 1; time <= 2; ++time) {
        Require(ini.GetValue("COMPANY", "Name", Missing, path) == Stored(value), "a value reads back trimmed");
        Require(ini.GetValue("COMPANY", "ConnectionString", Missing, path) == other &&
                    ini.GetValue("GENERAL", "Name", Missing, path) == elsewhere,
                "the other values stay");
        Require(Write(ini, "Name", value, path).empty(), "what was written once is written again");
    }
}

void CheckCompanyFile(const std::string& text) {
    DiskIniTools ini;
    PsdFile file(ini);
    const bool loaded = file.Load(fuzz::Scratch().Write("company.psd", text));
    Require(loaded == !file.ConnectionString().empty(), "a company file has a connection string or is none");
}

void CheckConnectionString(const std::string& text) {
    std::string file;
    try {
        file = sql::SqliteFileOf(text);
    } catch (const services::Failure&) {
        Require(sql::ResolveConnectionString(text, "/companies") == text, "another make's string stays");
        return;
    }
    Require(!file.empty(), "a database file has a name");
    Require(sql::SqliteFileOf(sql::SqliteConnectionString(file)) == file,
            "a file reads back from its connection string");
    const std::string resolved = sql::ResolveConnectionString(text, "/companies");
    Require(sql::SqliteFileOf(resolved).starts_with('/'), "a resolved file is named from the root");
    Require(sql::ResolveConnectionString(resolved, "/elsewhere") == resolved, "a resolved string stays");
}

} // namespace
} // namespace qndr::suite

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace qndr::suite;
    std::string input = qndr::fuzz::AsText(data, size);
    const std::string line = qndr::fuzz::TakeLine(input);
    CheckConnectionString(line);
    if (!line.empty()) {
        CheckConnectionString(qndr::sql::SqliteConnectionString(line));
        Require(qndr::sql::SqliteFileOf(qndr::sql::SqliteConnectionString(line)) == line,
                "every path has a connection string");
    }
    CheckCompanyFile(input);
    CheckIni(line, input);
    return 0;
}
