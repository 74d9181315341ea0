#include "suite/objects/psd_file.h"

#include "suite/sql/connection_string.h"
#include "text/utf8_path.h"

#include <system_error>

namespace qndr::suite {

bool PsdFile::Load(const std::string& path) {
    connectionString_.clear();
    const std::string text = iniTools_.GetValue("COMPANY", "ConnectionString", "", path);
    if (text.empty()) {
        return false;
    }
    std::error_code error;
    const std::filesystem::path file = std::filesystem::absolute(text::ToPath(path), error);
    if (error) {
        return false;
    }
    connectionString_ = sql::ResolveConnectionString(text, text::FromPath(file.parent_path()));
    return true;
}

} // namespace qndr::suite
