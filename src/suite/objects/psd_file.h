#pragma once

#include "services/company_services.h"
#include "services/ini_tools.h"

#include <string>

namespace qndr::suite {

/// A company file: an INI file whose section [COMPANY] has the keys Name and ConnectionString. Of a connection
/// string for SQLite a relative path is taken from the folder of the company file, so that both can be moved
/// together.
class PsdFile : public services::PsdFile {
  public:
    explicit PsdFile(services::IniTools& iniTools) : iniTools_(iniTools) {}

    bool Load(const std::string& path) override;
    /// Names the database by an absolute path. Empty when the last Load gave false.
    std::string ConnectionString() const override { return connectionString_; }

  private:
    services::IniTools& iniTools_;
    std::string connectionString_;
};

} // namespace qndr::suite
