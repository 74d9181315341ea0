#pragma once

#include "diagnosis/fates.h"

namespace qndr::diagnosis {

// One company that meets a file of its own, in the order of its agent's steps.

Judgement JudgeAtMain(const CompanyFacts& company, const FolderFile& file, const std::vector<FolderFile>& files);
/// A Roaming Workstation goes by the addressee alone.
Judgement JudgeAtRoaming(const CompanyFacts& company, const FolderFile& file,
                         const std::vector<FolderFile>& files);

// What both go by.

bool IsAddressedTo(const FolderFile& file, const std::string& identity);
/// As a first request is, whose sender does not know the identity of main.
bool IsAddressedToMain(const FolderFile& file);
Judgement Takes(const CompanyFacts& company);
/// The rule of both directions: equal, nothing else.
Judgement BySequence(const CompanyFacts& receiver, std::int64_t sequence, std::int64_t expected);

} // namespace qndr::diagnosis
