#include "programs/qndr5ctl/commands.h"
#include "programs/qndr5ctl/observations.h"
#include "programs/qndr5ctl/output.h"
#include "services/failure.h"

namespace qndr::control {

namespace {

struct DoctorArguments {
    WhatToObserve what;
    bool json = false;
};

std::string_view SeverityWord(Severity severity) {
    return severity == Severity::Error ? "error" : "warning";
}

/// For people a heading, what it is and what to do; for machines the same in parts.
Facts FactsOf(const Finding& finding) {
    Facts facts;
    facts.Add("Trouble", "", finding.subject + " (" + finding.code + ")");
    facts.Add("", "code", finding.code);
    facts.Add("", "severity", SeverityWord(finding.severity));
    facts.Add("", "subject", finding.subject);
    facts.Add("What", "text", finding.text);
    facts.Add("To do", "remedy", finding.remedy);
    return facts;
}

void PrintJson(const ControlContext& context, const Observations& seen, const std::vector<Finding>& findings) {
    Json list = Json::Array();
    for (const Finding& finding : findings) {
        list.Append(FactsOf(finding).ToJson());
    }
    Json result = Json::Object();
    result.Set("healthy", findings.empty())
        .Set("companies", seen.companies.size())
        .Set("files", seen.files.size())
        .Set("findings", std::move(list));
    context.out << result.ToText() << '\n';
}

void Print(const ControlContext& context, const Observations& seen, const std::vector<Finding>& findings) {
    if (findings.empty()) {
        context.out << "All is well: companies asked " << seen.companies.size() << ", files in the Sync folder "
                    << seen.files.size() << ".\n";
    }
    for (const Finding& finding : findings) {
        if (&finding != &findings.front()) {
            context.out << '\n';
        }
        FactsOf(finding).Print(context.out);
    }
}

void Doctor(const ControlContext& context, const DoctorArguments& arguments) {
    const Observations seen = Observe(context, arguments.what);
    const std::vector<Finding> findings = Diagnose(seen);
    if (arguments.json) {
        PrintJson(context, seen, findings);
    } else {
        Print(context, seen, findings);
    }
    if (!findings.empty()) {
        throw services::Failure(findings.size() == 1
                                    ? "there is 1 trouble"
                                    : "there are " + std::to_string(findings.size()) + " troubles");
    }
}

} // namespace

void AddDoctorCommand(CLI::App& program, const ControlContext& context) {
    const auto doctor = AddCommand<DoctorArguments>(
        program, context, "doctor",
        "Name what is wrong with the exchange and what to do about it; changes nothing. Exit status 1 when "
        "something is",
        Doctor);
    doctor.app
        .add_option(
            "--companies", doctor.arguments.what.companiesFolders,
            "A folder of company files, once for each folder; this computer's Companies location when none "
            "is given. More can be proved where main and its workstations are both at hand")
        ->allow_extra_args(false);
    doctor.app.add_option("--sync", doctor.arguments.what.syncFolder,
                          "The Sync folder; this computer's Sync location when it is not given");
    doctor.app
        .add_option("--days", doctor.arguments.what.days,
                    "A workstation that is silent, and a file that lies, for longer than this are told")
        ->capture_default_str()
        ->check(CLI::Range(std::int64_t{1}, std::int64_t{3650}));
    doctor.app.add_flag("--probe", doctor.arguments.what.probe,
                        "Also make a file in the Sync folder and take it out again, which proves the rights there "
                        "and compares the clocks");
    AddJsonFlag(doctor.app, doctor.arguments.json);
}

} // namespace qndr::control
