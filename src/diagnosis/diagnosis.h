#pragma once

#include "diagnosis/observations.h"
#include "diagnosis/troubles.h"

#include <string>
#include <vector>

namespace qndr::diagnosis {

/// One trouble and what to do about it, for people; the code is for machines.
struct Finding {
    std::string code;
    Severity severity = Severity::Error;
    std::string subject; ///< the company, workstation, file, folder or setting that it is about
    std::string text;
    std::string remedy;                ///< what to do, or before which commands; may be empty when there are some
    std::vector<std::string> commands; ///< for a POSIX shell, in this order
};

/// Every trouble that the observations prove, errors first. Where an exchange is merely in the middle, with files
/// on their way, nothing is named.
std::vector<Finding> Diagnose(const Observations& observations);

} // namespace qndr::diagnosis
