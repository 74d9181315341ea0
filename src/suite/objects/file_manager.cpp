#include "suite/objects/file_manager.h"

#include "services/failure.h"
#include "suite/objects/company_library.h"
#include "text/utf8_path.h"

#include <system_error>

namespace qndr::suite {

void FileManager::Initialize(services::SharedCodeLibrary& library) {
    const auto* company = dynamic_cast<const CompanyLibrary*>(&library.Implementation());
    if (company == nullptr) {
        throw services::Failure("the file manager cannot work with this library");
    }
    const std::filesystem::path file = text::ToPath(company->PSDFile());
    name_ = text::FromPath(file.stem());
    // A base name of dots would lead out of the local root.
    if (name_.find_first_not_of('.') == std::string::npos) {
        name_ = text::FromPath(file.filename());
    }
}

std::string FileManager::GetRootFolderPath(bool&) {
    if (name_.empty()) {
        return "";
    }
    const std::filesystem::path folder = text::ToPath(computer_.localRoot) / text::ToPath(name_);
    // The answer stands also when the folder cannot be made, and its use then fails. An empty one would be taken
    // for a folder below the one that the process happens to be in, and old files there would be cleaned up.
    std::error_code ignored;
    std::filesystem::create_directories(folder, ignored);
    return text::FromPath(folder);
}

} // namespace qndr::suite
