#include "suite/files/text_files.h"

#include "services/failure.h"
#include "suite/computer/file_calls.h"
#include "suite/files/file_writing.h"
#include "text/letter_case.h"

namespace qndr::suite {

std::int32_t DiskTextFileTools::WriteTextFile(const std::string& path, const std::string& text,
                                              const std::string& charset, std::int32_t flag) {
    if (!text::EqualsWithoutCase(charset, "utf-8") || flag != 0) {
        return 0;
    }
    return ReplaceFile(path, text).empty() ? 1 : 0;
}

void DiskTextAppender::Append(const std::string& path, const std::string& text) {
    OpenFile file;
    std::error_code error = file.OpenForAppending(path);
    if (!error) {
        error = file.Write(text);
    }
    if (!error) {
        error = file.Close();
    }
    if (error) {
        throw services::Failure("the file '" + path + "' cannot be written to: " + error.message());
    }
}

} // namespace qndr::suite
