#include "suite/exchange/export_file.h"

#include "services/failure.h"
#include "suite/computer/operating_system.h"
#include "suite/files/path_text.h"

#include <utility>

namespace qndr::suite {

namespace {

void Demand(const std::error_code& error, const std::string& path) {
    if (error) {
        throw services::Failure("the file '" + path + "' could not be written: " + error.message());
    }
}

} // namespace

ExportFile::ExportFile(std::string path) : path_(std::move(path)) {
    const std::string candidate = FolderPart(path_) + "~$" + RandomToken() + ".tmp";
    Demand(file_.CreateNew(candidate, FileAccess::Private), candidate);
    temporaryPath_ = candidate;
}

ExportFile::~ExportFile() {
    if (!temporaryPath_.empty()) {
        file_.Close();
        DeleteName(temporaryPath_);
    }
}

void ExportFile::Write(std::string_view text) {
    Demand(file_.Write(text), temporaryPath_);
}

void ExportFile::Finish() {
    Demand(file_.Close(), temporaryPath_);
    Demand(RenameFile(temporaryPath_, path_, Existing::Replace), path_);
    temporaryPath_.clear();
}

} // namespace qndr::suite
