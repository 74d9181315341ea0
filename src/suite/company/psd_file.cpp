#include "suite/company/psd_file.h"

#include "suite/company/connection_string.h"
#include "suite/company/utf8_path.h"

#include <system_error>

namespace qndr::suite {

bool PsdFile::Load(const std::string& path) {
    connectionString_.clear();
    const std::string text = iniTools_.GetValue("COMPANY", "ConnectionString", "", path);
    if (text.empty()) {
        return false;
    }
    std::error_code error;
    const std::filesystem::path file = std::filesystem::absolute(ToPath(path), error);
    if (error) {
        return false;
    }
    connectionString_ = ResolveConnectionString(text, FromPath(file.parent_path()));
    return true;
}

} // namespace qndr::suite
