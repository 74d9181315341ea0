#pragma once

#include "services/company_services.h"
#include "suite/computer/computer.h"

#include <string>

namespace qndr::suite {

/// The file locations of a company on one computer.
class FileManager : public services::FileManager {
  public:
    explicit FileManager(const Computer& computer) : computer_(computer) {}

    /// Raises services::Failure for a library of another make.
    void Initialize(services::SharedCodeLibrary& library) override;
    /// The folder named after the company's .psd file below the computer's local root, made when it is missing.
    /// The path comes back also when the folder cannot be made; empty when the library knows no .psd file.
    std::string GetRootFolderPath(bool& flag) override;
    void PreTerminate() override {}

  private:
    const Computer& computer_;
    std::string name_;
};

} // namespace qndr::suite
