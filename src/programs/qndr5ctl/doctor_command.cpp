#include "diagnosis/diagnosis.h"
#include "observation/folder_probe.h"
#include "observation/observe.h"
#include "programs/qndr5ctl/commands.h"
#include "programs/qndr5ctl/output.h"
#include "services/failure.h"

#include <algorithm>
#include <cctype>

namespace qndr::control {

using diagnosis::Finding;
using diagnosis::Observations;
using diagnosis::Severity;

namespace {

struct DoctorArguments {
    observation::WhatToObserve what;
    std::string level = "warning";
    bool probe = false;
    bool json = false;
};

std::string SeverityWord(Severity severity) {
    return severity == Severity::Error ? "error" : severity == Severity::Warning ? "warning" : "note";
}

/// What to do in one text, for machines that show it to a person.
std::string WholeRemedy(const Finding& finding) {
    std::string remedy = finding.remedy;
    for (const std::string& command : finding.commands) {
        remedy += (remedy.empty() ? "" : &command == &finding.commands.front() ? ": " : "; ") + command;
    }
    return remedy;
}

/// For people a heading, what it is and what to do; for machines the same in parts.
Facts FactsOf(const Finding& finding) {
    const std::string word = SeverityWord(finding.severity);
    Facts facts;
    facts.Add(static_cast<char>(std::toupper(word.front())) + word.substr(1), "",
              finding.subject + " (" + finding.code + ")");
    facts.Add("", "code", finding.code);
    facts.Add("", "severity", word);
    facts.Add("", "subject", finding.subject);
    facts.Add("What", "text", finding.text);
    facts.Add("", "remedy", WholeRemedy(finding));
    if (!finding.remedy.empty()) {
        facts.Add("To do", "", finding.remedy + (finding.commands.empty() ? "." : ":"));
    }
    Json commands = Json::Array();
    for (const std::string& command : finding.commands) {
        facts.Add("Run", "", command);
        commands.Append(command);
    }
    facts.Add("", "commands", std::move(commands));
    return facts;
}

Severity SeverityOf(const std::string& word) {
    return word == "error" ? Severity::Error : word == "note" ? Severity::Note : Severity::Warning;
}

std::size_t CountFrom(const std::vector<Finding>& findings, Severity level) {
    return static_cast<std::size_t>(std::count_if(
        findings.begin(), findings.end(), [&](const Finding& finding) { return finding.severity <= level; }));
}

void PrintJson(const ControlContext& context, const Observations& seen, const std::vector<Finding>& findings) {
    Json list = Json::Array();
    for (const Finding& finding : findings) {
        list.Append(FactsOf(finding).ToJson());
    }
    Json result = Json::Object();
    result.Set("healthy", CountFrom(findings, Severity::Warning) == 0)
        .Set("companies", seen.companies.size())
        .Set("files", seen.files.size())
        .Set("findings", std::move(list));
    context.out << result.ToText() << '\n';
}

void Print(const ControlContext& context, const Observations& seen, const std::vector<Finding>& findings) {
    for (const Finding& finding : findings) {
        FactsOf(finding).Print(context.out);
        context.out << '\n';
    }
    if (CountFrom(findings, Severity::Warning) == 0) {
        const bool isWhole = std::none_of(findings.begin(), findings.end(), [](const Finding& finding) {
            return finding.code == diagnosis::troubles::OneSideOnly.code;
        });
        context.out << (isWhole ? "All is well" : "Nothing is wrong as far as it can be seen from here")
                    << ": companies asked " << seen.companies.size() << ", files in the Sync folder "
                    << seen.files.size() << ".\n";
    }
}

void Doctor(const ControlContext& context, const DoctorArguments& arguments) {
    Observations seen = observation::Observe(context.computer, context.services, arguments.what);
    if (seen.syncFolderExists && seen.IsRightFolder()) {
        seen.probe = observation::ProbeFolder(context.services, seen.syncFolder);
    }
    const std::vector<Finding> findings = diagnosis::Diagnose(seen);
    if (arguments.json) {
        PrintJson(context, seen, findings);
    } else {
        Print(context, seen, findings);
    }
    const std::size_t count = CountFrom(findings, SeverityOf(arguments.level));
    if (count > 0) {
        throw services::Failure(count == 1 ? "there is 1 trouble"
                                           : "there are " + std::to_string(count) + " troubles");
    }
}

} // namespace

void AddDoctorCommand(const CommandLine& program, const ControlContext& context) {
    const auto doctor = AddCommand<DoctorArguments>(
        program, context, "doctor",
        "Name what is wrong with the exchange and what to do about it. Exit status 1 when something is. Changes "
        "nothing, but makes a small file in the Sync folder and takes it out again, which proves the rights there "
        "and compares the clocks",
        Doctor);
    doctor.app
        .Add("--companies", doctor.arguments.what.companiesFolders,
             "A folder of company files, once for each folder; this computer's Companies location when none "
             "is given. More can be proved where main and its workstations are both at hand")
        .OneValueATime();
    doctor.app.Add("--sync", doctor.arguments.what.syncFolder,
                   "The Sync folder; this computer's Sync location when it is not given");
    doctor.app
        .Add("--days", doctor.arguments.what.days,
             "A workstation that is silent, and a file that lies, for longer than this are told")
        .ShowDefault()
        .Between(1, 3650);
    doctor.app
        .Add("--level", doctor.arguments.level,
             "From what on the exit status is 1; warning when it is not given. All findings are told")
        .OneOf({"error", "warning", "note"});
    // What it asked for is always done now; scripts may still give it.
    doctor.app.AddFlag("--probe", doctor.arguments.probe, "").Hidden();
    doctor.app.AddJsonFlag(doctor.arguments.json);
}

} // namespace qndr::control
