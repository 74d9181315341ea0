#pragma once

#include "services/company_library.h"
#include "services/platform.h"
#include "services/registry_tools.h"
#include "suite/computer/computer_trouble.h"
#include "suite/objects/company_marks.h"
#include "suite/sql/connection.h"

#include <memory>
#include <string>

namespace qndr::suite {

/// The SharedCodeLibrary of this suite. The engine and the file manager get at it through Implementation(). While
/// this computer's trouble stands there is no location, QNDRSQL is not available and no event is recorded.
class CompanyLibrary : public services::SharedCodeLibrary {
  public:
    /// All of them must outlive the library; `wait` as for a connection. A company that is among the `marks` stays
    /// so until the library's end.
    CompanyLibrary(services::RegistryTools& registry, const services::Clock& clock, ComputerTrouble& trouble,
                   sql::LockWait* wait = nullptr, const CompanyMarks* marks = nullptr);
    ~CompanyLibrary() override;
    CompanyLibrary(const CompanyLibrary&) = delete;
    CompanyLibrary& operator=(const CompanyLibrary&) = delete;

    void SetConnectionString(const std::string& text) override;
    void SetPSDFile(const std::string& path) override;
    void SetOperatingMode(std::int16_t mode) override;
    std::int16_t OperatingMode() const override;
    services::Profiles& Profiles() override;
    services::Security& Security() override;
    services::Options& Options() override;
    services::Database& Database() override;
    /// For the clearing of a reset: first keeps the changes that are given up. That it cannot, and that a
    /// statement of the clearing fails, is this computer's trouble: the reset must not end as if it were complete.
    services::SqlConnection* QNDRSQL() override;
    void RecordEvent(const std::string& text, std::optional<std::int32_t> number) override;
    /// Records the trouble that stands, once for as long as it lasts, and what was stored again after one.
    void PreTerminate() override;

    /// The company's connection, opened at its first use. Raises services::Failure when it cannot be opened.
    sql::Connection& Connection();
    const std::string& PSDFile() const;

  private:
    void Record(const std::string& text, std::optional<std::int32_t> number);
    void TellOfTrouble();
    void AwaitFirstData();

    struct State;
    std::unique_ptr<State> state_;
};

} // namespace qndr::suite
