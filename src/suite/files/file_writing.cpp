#include "suite/files/file_writing.h"

#include "suite/computer/operating_system.h"
#include "suite/files/path_text.h"

namespace qndr::suite {

std::string ReplaceFile(const std::string& path, std::string_view text, FileAccess access) {
    const std::string working = FolderPart(path) + "~$" + RandomToken() + ".tmp";
    OpenFile file;
    if (const std::error_code error = file.CreateNew(working, access)) {
        return error.message();
    }
    if (access == FileAccess::Private) {
        file.AllowAs(path);
    }
    std::error_code error = file.Write(text);
    if (!error) {
        error = file.Close();
    }
    if (!error) {
        error = RenameFile(working, path, Existing::Replace);
    }
    if (error) {
        DeleteName(working);
    }
    return error ? error.message() : "";
}

} // namespace qndr::suite
