#pragma once

#include "suite/schema/company_schema.h"
#include "suite/sql/connection.h"

#include <cstdint>
#include <string>

namespace qndr::suite {

/// The version of an open company database. Companies from before the number was kept are told by their tables; 0
/// is no company. Raises services::Failure when the database does not work.
std::int64_t ReadSchemaVersion(const sql::Connection& company);

/// Makes an older company what this code works with: its tables by numbered steps, all views and triggers anew, in
/// one transaction. Nothing is done to a company of the present version. Before an older one is touched, a copy of
/// it as it stands is made beside the database (CopyOfOlderSchema); where that fails, nothing is changed. Raises
/// services::Failure, with nothing changed, for a company of a newer version too.
void BringUpToDate(const sql::Connection& company, const services::Clock& clock);

/// Raises services::Failure for a company of a newer version: what that one keeps this code would not keep.
void RefuseNewerSchema(std::int64_t version);

/// Deletes the copies of a company's older versions, after a pass that went well. Says nothing.
void ForgetOlderSchemas(const std::string& databaseFile);

/// Where the copy of a company lies that was of this version.
std::string CopyOfOlderSchema(const std::string& databaseFile, std::int64_t version);

} // namespace qndr::suite
