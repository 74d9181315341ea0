#include "suite/engine/export_file.h"

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

ExportFile::ExportFile(std::string path) : path_(std::move(path)), folder_(FolderPart(path_)) {
    const std::string candidate = folder_ + "~$" + RandomToken() + ".tmp";
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
    Demand(file_.MakeDurable(), temporaryPath_);
    Demand(file_.Close(), temporaryPath_);
    Demand(RenameFile(temporaryPath_, path_, Existing::Replace), path_);
    // A caller that hears of a failure must find no file: from here on the destructor takes the file away.
    temporaryPath_ = path_;
    Demand(MakeFolderDurable(folder_), folder_);
    temporaryPath_.clear();
}

} // namespace qndr::suite
