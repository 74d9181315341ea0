#pragma once

#include "services/company_library.h"
#include "services/gated/forwarding.h"

namespace qndr::services {

class DatabaseWrapper : public Forwarding<Database> {
  public:
    using Forwarding::Forwarding;

    Variant ExecuteScaler(const Statement& statement, const std::string& second,
                          const Variant& fallback) override {
        return Ask(calls::Database::ExecuteScaler, Raises,
                   [&](Database& database) { return database.ExecuteScaler(statement, second, fallback); });
    }
    std::int32_t ExecuteNonQuery(const Statement& statement) override {
        return Ask(calls::Database::ExecuteNonQuery, -1,
                   [&](Database& database) { return database.ExecuteNonQuery(statement); });
    }
    std::unique_ptr<RecordDocument> ExecuteRead(const Statement& statement) override {
        return Ask(calls::Database::ExecuteRead, nullptr,
                   [&](Database& database) { return database.ExecuteRead(statement); });
    }
    std::string LastSQLErrorDescription() const override {
        return Ask(calls::Database::LastSQLErrorDescription, Raises,
                   [](Database& database) { return database.LastSQLErrorDescription(); });
    }
};

class SqlConnectionWrapper : public Forwarding<SqlConnection> {
  public:
    using Forwarding::Forwarding;

    std::int32_t ExecuteNonQuery(const Statement& statement) override {
        return Ask(calls::SqlConnection::ExecuteNonQuery, -1,
                   [&](SqlConnection& connection) { return connection.ExecuteNonQuery(statement); });
    }
    void PreTerminate() override {
        Ask(calls::SqlConnection::PreTerminate, DoesNothing,
            [](SqlConnection& connection) { return connection.PreTerminate(); });
    }
};

class ProfilesWrapper : public Forwarding<Profiles> {
  public:
    using Forwarding::Forwarding;

    void SetProfile(const std::string& name) override {
        Ask(calls::Profiles::SetProfile, Raises, [&](Profiles& profiles) { return profiles.SetProfile(name); });
    }
};

class SecurityWrapper : public Forwarding<Security> {
  public:
    using Forwarding::Forwarding;

    bool IsRoamingWorkstation() const override {
        return Ask(calls::Security::IsRoamingWorkstation, Raises,
                   [](Security& security) { return security.IsRoamingWorkstation(); });
    }
};

class OptionsWrapper : public Forwarding<Options> {
  public:
    using Forwarding::Forwarding;

    Variant GetCompanyOption(const std::string& section, const std::string& key,
                             const Variant& fallback) override {
        return Ask(calls::Options::GetCompanyOption, Raises,
                   [&](Options& options) { return options.GetCompanyOption(section, key, fallback); });
    }
    std::string UserFileLocation(const std::string& name) override {
        return Ask(calls::Options::UserFileLocation, "",
                   [&](Options& options) { return options.UserFileLocation(name); });
    }
};

/// Its sub-objects are behind the gate too.
class SharedCodeLibraryWrapper : public Forwarding<SharedCodeLibrary> {
  public:
    SharedCodeLibraryWrapper(std::unique_ptr<SharedCodeLibrary> target, CallGate* gate)
        : Forwarding(std::move(target), gate),
          profiles_(*Pass([](SharedCodeLibrary& library) { return &library.Profiles(); }), gate),
          security_(*Pass([](SharedCodeLibrary& library) { return &library.Security(); }), gate),
          options_(*Pass([](SharedCodeLibrary& library) { return &library.Options(); }), gate),
          database_(*Pass([](SharedCodeLibrary& library) { return &library.Database(); }), gate) {}

    void SetConnectionString(const std::string& text) override {
        Ask(calls::SharedCodeLibrary::SetConnectionString, Raises,
            [&](SharedCodeLibrary& library) { return library.SetConnectionString(text); });
    }
    void SetPSDFile(const std::string& path) override {
        Ask(calls::SharedCodeLibrary::SetPSDFile, Raises,
            [&](SharedCodeLibrary& library) { return library.SetPSDFile(path); });
    }
    void SetOperatingMode(std::int16_t mode) override {
        Ask(calls::SharedCodeLibrary::SetOperatingMode, Raises,
            [&](SharedCodeLibrary& library) { return library.SetOperatingMode(mode); });
    }
    std::int16_t OperatingMode() const override {
        return Ask(calls::SharedCodeLibrary::OperatingMode, Raises,
                   [](SharedCodeLibrary& library) { return library.OperatingMode(); });
    }
    services::Profiles& Profiles() override { return profiles_; }
    services::Security& Security() override { return security_; }
    services::Options& Options() override { return options_; }
    services::Database& Database() override { return database_; }
    SqlConnection* QNDRSQL() override {
        SqlConnection* const connection = Ask(calls::SharedCodeLibrary::QNDRSQL, nullptr,
                                              [](SharedCodeLibrary& library) { return library.QNDRSQL(); });
        return connection == nullptr ? nullptr : &connection_.emplace(*connection, Gate());
    }
    void RecordEvent(const std::string& text, std::optional<std::int32_t> number) override {
        Ask(calls::SharedCodeLibrary::RecordEvent, Raises,
            [&](SharedCodeLibrary& library) { return library.RecordEvent(text, number); });
    }
    void PreTerminate() override {
        Ask(calls::SharedCodeLibrary::PreTerminate, DoesNothing,
            [](SharedCodeLibrary& library) { return library.PreTerminate(); });
    }
    SharedCodeLibrary& Implementation() override {
        return *Pass([](SharedCodeLibrary& library) { return &library.Implementation(); });
    }

  private:
    ProfilesWrapper profiles_;
    SecurityWrapper security_;
    OptionsWrapper options_;
    DatabaseWrapper database_;
    std::optional<SqlConnectionWrapper> connection_;
};

} // namespace qndr::services
