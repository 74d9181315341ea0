#include "suite/company/file_manager.h"

#include "services/failure.h"
#include "suite/company/company_library.h"
#include "suite/company/utf8_path.h"

#include <system_error>

namespace qndr::suite {

void FileManager::Initialize(services::SharedCodeLibrary& library) {
    const auto* company = dynamic_cast<const CompanyLibrary*>(&library.Implementation());
    if (company == nullptr) {
        throw services::Failure("the file manager cannot work with this library");
    }
    baseName_ = FromPath(ToPath(company->PSDFile()).stem());
}

std::string FileManager::GetRootFolderPath(bool&) {
    // A base name of dots would lead out of the local root.
    if (baseName_.find_first_not_of('.') == std::string::npos) {
        return "";
    }
    const std::filesystem::path folder = ToPath(computer_.localRoot) / ToPath(baseName_);
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    return error ? "" : FromPath(folder);
}

} // namespace qndr::suite
