#include "suite/admin/company_creation.h"

#include "services/failure.h"
#include "suite/schema/company_schema.h"
#include "suite/sql/connection.h"
#include "suite/sql/connection_string.h"
#include "text/letter_case.h"
#include "text/utf8_path.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

namespace qndr::suite {

namespace {

using services::Failure;

/// Removes files, which were absent before, unless they are kept.
class UnfinishedFiles {
  public:
    explicit UnfinishedFiles(std::vector<std::filesystem::path> paths) : paths_(std::move(paths)) {}
    UnfinishedFiles(const UnfinishedFiles&) = delete;
    UnfinishedFiles& operator=(const UnfinishedFiles&) = delete;
    ~UnfinishedFiles() {
        std::error_code ignored;
        for (const auto& path : paths_) {
            std::filesystem::remove(path, ignored);
        }
    }
    void Keep() { paths_.clear(); }

  private:
    std::vector<std::filesystem::path> paths_;
};

void RefuseExisting(const std::filesystem::path& path) {
    std::error_code error;
    const auto status = std::filesystem::symlink_status(path, error);
    if (status.type() == std::filesystem::file_type::not_found) {
        return;
    }
    if (!std::filesystem::status_known(status)) {
        throw Failure("'" + text::FromPath(path) + "' cannot be looked at: " + error.message());
    }
    throw Failure("'" + text::FromPath(path) + "' exists already");
}

void CheckTexts(const NewCompany& company) {
    if (company.type != MainCompanyType && company.type != RoamingCompanyType) {
        throw Failure("a company is of type 1 (main) or 2 (roaming)");
    }
    if (company.name.find_first_not_of(' ') == std::string::npos) {
        throw Failure("a company needs a name");
    }
    // A line of the .psd file cannot carry them.
    for (const std::string& text : {company.name, company.psdFile, company.connectionString}) {
        if (std::any_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; })) {
            throw Failure("names and paths of a company hold no line breaks and no other control characters");
        }
    }
    // Agents take notice of no other extension.
    if (!text::EqualsWithoutCase(text::FromPath(text::ToPath(company.psdFile).extension()), ".psd")) {
        throw Failure("the name of a company file ends in .psd, unlike '" + company.psdFile + "'");
    }
}

void MakeDatabase(const std::filesystem::path& path, const NewCompany& company, const std::string& uniqueID,
                  const services::Clock& clock) {
    const std::unique_ptr<sql::Connection> made = sql::Open(text::FromPath(path), clock, sql::Missing::Create);
    const sql::Connection& connection = *made;
    sql::Transaction transaction(connection, sql::Transaction::Kind::Write);
    connection.ExecuteScript(CompanySchemaScript());
    sql::Statement insert = connection.Prepare(
        "INSERT INTO Company (ID, UniqueID, Name, CompanyType, DatabaseVersion) VALUES (1, ?, ?, ?, ?)");
    insert.Bind(1, uniqueID);
    insert.Bind(2, company.name);
    insert.Bind(3, std::int64_t{company.type});
    insert.Bind(4, CompanyDatabaseVersion);
    insert.Step();
    transaction.Commit();
}

} // namespace

void CreateCompany(const NewCompany& company, services::IniTools& iniTools, services::SystemTools& systemTools,
                   const services::Clock& clock) {
    CheckTexts(company);
    const std::filesystem::path psd = text::ToPath(company.psdFile);
    const std::string connectionString =
        company.connectionString.empty()
            ? sql::SqliteConnectionString(text::FromPath(psd.filename().replace_extension(text::ToPath(".db"))))
            : company.connectionString;
    const std::filesystem::path database = psd.parent_path() / text::ToPath(sql::SqliteFileOf(connectionString));

    std::vector<std::filesystem::path> files{psd};
    for (const char* const suffix : {"", "-wal", "-shm"}) {
        files.push_back(database);
        files.back() += suffix;
    }
    std::for_each(files.begin(), files.end(), &RefuseExisting);

    UnfinishedFiles unfinished(std::move(files));
    MakeDatabase(database, company, systemTools.GetIdentifierText(), clock);

    // The .psd comes last: an agent that finds it finds a whole company behind it.
    iniTools.SetValue("COMPANY", "Name", company.name, company.psdFile);
    iniTools.SetValue("COMPANY", "ConnectionString", connectionString, company.psdFile);
    unfinished.Keep();
}

} // namespace qndr::suite
