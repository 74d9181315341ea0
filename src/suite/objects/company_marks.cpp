#include "suite/objects/company_marks.h"

#include "services/failure.h"
#include "suite/computer/operating_system.h"
#include "suite/schema/company_events.h"
#include "text/utf8_path.h"

#include <filesystem>
#include <system_error>

namespace qndr::suite {
namespace {

/// An agent at work may hold the database for long; what cannot be recorded now will be at a later pass.
constexpr std::int32_t kEventMilliseconds = 1000;
/// As long as it goes on it is recorded again after so many hours. Less than a day, behind which it counts as
/// over.
constexpr std::int64_t kRecordedAgainHours = 12;

/// The database has one mark, whatever links lead to it.
std::string WithoutLinks(const std::string& database) {
    std::error_code error;
    const std::filesystem::path path = std::filesystem::canonical(text::ToPath(database), error);
    return error ? database : text::FromPath(path);
}

void Record(const sql::Connection& company, const std::string& text) {
    sql::Statement statement = company.Prepare(
        "INSERT INTO CompanyEvents (OccurredOn, EventText, EventNumber) SELECT GETUTCDATE(), ?1, ?2"
        " WHERE NOT EXISTS (SELECT 1 FROM CompanyEvents WHERE EventNumber = ?2 AND EventText = ?1"
        " AND OccurredOn > DATEADD(hour, ?3, GETUTCDATE()))");
    statement.Bind(1, text);
    statement.Bind(2, std::int64_t{AnotherAgentEvent});
    statement.Bind(3, -kRecordedAgainHours);
    statement.Step();
}

} // namespace

CompanyMarks::Mark CompanyMarks::Take(sql::Connection& company) {
    const std::string database = WithoutLinks(company.Path());
    if (Mark mark = Find(database)) {
        return mark;
    }
    const std::string path = database + ".agent";
    auto mark = std::make_shared<InstanceLock>(path, database);
    switch (mark->Take()) {
    case InstanceLock::Answer::HeldByAnother:
        Tell(company, database, "another agent is at work on it");
        return nullptr;
    case InstanceLock::Answer::Denied:
        Tell(company, database, "the mark of another agent, '" + path + "', is closed to this user");
        return nullptr;
    case InstanceLock::Answer::Held:
    case InstanceLock::Answer::Unavailable:
        break;
    }
    leftAlone_.erase(database);
    marks_[database] = mark;
    return mark;
}

CompanyMarks::Mark CompanyMarks::Find(const std::string& database) const {
    const auto found = marks_.find(WithoutLinks(database));
    return found == marks_.end() ? nullptr : found->second.lock();
}

void CompanyMarks::Tell(sql::Connection& company, const std::string& database, const std::string& reason) {
    if (leftAlone_.insert(database).second && tell_) {
        tell_("the company of '" + database + "' was left alone: " + reason);
    }
    try {
        company.SetBusyTimeout(kEventMilliseconds);
        Record(company, "The company was left alone by the agent of " + UserName() + " on " + computerName_ +
                            ": " + reason + ".");
    } catch (const services::Failure&) {
        // A full or locked event list changes nothing about the answer.
    }
}

} // namespace qndr::suite
