#pragma once

#include "diagnosis/company_facts.h"
#include "suite/sql/connection.h"

namespace qndr::observation {

/// What the company goes by at this moment. Raises services::Failure when its database cannot be read.
diagnosis::CompanyFacts ReadCompanyFacts(const sql::Connection& company);

} // namespace qndr::observation
