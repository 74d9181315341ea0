#include "simulation/doctor.h"

#include "observation/company_facts.h"
#include "observation/observe.h"
#include "observation/sync_folder_files.h"

#include <set>
#include <utility>

namespace qndr::simulation {

Doctor::Doctor(std::vector<SimulatedComputer*> computers, const SyncFolders& folders)
    : computers_(std::move(computers)), folders_(folders) {
    for (SimulatedComputer* const computer : computers_) {
        suite::VirtualTime& time = computer->Time();
        outside_.push_back(std::make_unique<ComputerServices>(computer->Places(), TimeServices{time, time, time},
                                                              "doctor", std::vector<std::string>{}));
    }
}

Doctor::~Doctor() = default;

const diagnosis::FolderFile& Doctor::Read(std::size_t computer, const std::string& name) {
    const std::string path = folders_.Folder(computer) + "/" + name;
    const std::uintmax_t size = std::filesystem::file_size(path);
    const auto date = std::filesystem::last_write_time(path);
    ReadFile& known = read_[path];
    if (known.file.entry.FilePath.empty() || known.size != size || known.date != date) {
        known = {size, date, observation::ReadFileOfSyncFolder(outside_[computer]->Services(), path).file};
    }
    return known.file;
}

std::map<std::string, Prophecy> Doctor::Foresee(std::size_t computer) {
    std::map<std::string, Prophecy> foreseen;
    std::vector<diagnosis::FolderFile> files;
    const std::set<std::string> names = folders_.Names(computer);
    for (const std::string& name : names) {
        files.push_back(Read(computer, name));
    }
    const diagnosis::CompanyFacts facts = observation::ReadCompanyFacts(computers_[computer]->Company());
    const std::vector<diagnosis::Judgement> judgements = diagnosis::JudgeFiles(files, {facts});
    auto name = names.begin();
    for (std::size_t file = 0; file < files.size(); ++file, ++name) {
        foreseen[*name] = {files[file], judgements[file]};
    }
    return foreseen;
}

std::vector<diagnosis::Finding> Doctor::Troubles(std::size_t computer) const {
    observation::WhatToObserve all;
    for (const SimulatedComputer* const each : computers_) {
        all.companiesFolders.push_back(each->Companies());
    }
    std::vector<diagnosis::Finding> troubles;
    for (const observation::WhatToObserve& what : {observation::WhatToObserve(), all}) {
        const auto seen =
            observation::Observe(computers_[computer]->Places(), outside_[computer]->Services(), what);
        for (diagnosis::Finding& finding : diagnosis::Diagnose(seen)) {
            if (finding.severity != diagnosis::Severity::Note) {
                troubles.push_back(std::move(finding));
            }
        }
    }
    return troubles;
}

} // namespace qndr::simulation
