#pragma once

#include "programs/qndr5ctl/control_context.h"
#include "programs/qndr5ctl/opened_company.h"
#include "programs/qndr5ctl/sync_folder_report.h"

#include <cstdint>
#include <string>
#include <vector>

namespace qndr::control {

/// A file as it lies in the Sync folder.
struct ListedFile {
    std::string name;
    std::int64_t size = 0;
    std::int64_t ageSeconds = 0; ///< by the stamp of its name, or else by its last modification
    std::string damage;          ///< why its descriptor cannot be read; empty otherwise
    FolderFile file;
    /// Of a misnamed file: the name that it had, where the present one still begins with it.
    std::string properName = {};
};

/// Reads what lies in the folder itself, by name; changes nothing there. A file that vanishes meanwhile is left
/// out. Raises services::Failure when there is no such folder, or no temporary folder can be had.
std::vector<ListedFile> ReadSyncFolder(const ControlContext& context, const std::string& folder);

/// What the company goes by at this moment.
CompanyFacts FactsOf(const OpenedCompany& company);

} // namespace qndr::control
