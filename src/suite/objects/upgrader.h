#pragma once

#include "services/company_services.h"
#include "suite/schema/company_schema.h"

#include <string>

namespace qndr::suite {

class Upgrader : public services::Upgrader {
  public:
    std::string LatestVersion() const override { return std::string(CompanyDatabaseVersion); }
    void PreTerminate() override {}
};

} // namespace qndr::suite
