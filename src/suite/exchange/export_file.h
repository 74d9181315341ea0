#pragma once

#include "suite/computer/file_calls.h"

#include <string>
#include <string_view>

namespace qndr::suite {

/// A file that appears under its name only when it is complete. It lives no longer than the step that packs it, so
/// it need not survive a power cut. Every operation raises services::Failure when the disk or the folder refuses
/// it.
class ExportFile {
  public:
    /// Makes a file of a temporary name beside `path`, readable by this user alone.
    explicit ExportFile(std::string path);
    /// Removes the temporary file when Finish did not come to its end.
    ~ExportFile();
    ExportFile(const ExportFile&) = delete;
    ExportFile& operator=(const ExportFile&) = delete;

    void Write(std::string_view text);
    /// Gives the file its name, in the place of any file of that name.
    void Finish();

  private:
    std::string path_;
    std::string temporaryPath_;
    OpenFile file_;
};

} // namespace qndr::suite
