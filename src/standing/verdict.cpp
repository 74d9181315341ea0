#include "standing/verdict.h"

#include "standing/mending.h"

#include <algorithm>

namespace qndr::standing {

namespace {

constexpr int Ready = 4;
/// A message comes once an hour when there is nothing to tell.
constexpr std::int64_t SilenceMinutes = 3 * 60;

std::string Counted(std::int64_t number, const std::string& noun) {
    return std::to_string(number) + " " + noun + (number == 1 ? "" : "s");
}

/// The older of the two moments that are known.
std::string OldestOf(const std::string& left, const std::string& right) {
    return left.empty() || (!right.empty() && right < left) ? right : left;
}

Verdict JudgeProgress(const Outlook& outlook) {
    const Position& own = outlook.own.position;
    const Position& partner = outlook.partner->position;
    const std::int64_t changes = own.waiting + partner.waiting;
    if (changes > 0) {
        const std::string since = OldestOf(own.waitingSince, partner.waitingSince);
        return {Health::Behind, "",
                Counted(changes, "change") + " behind" + (since.empty() ? "" : " since " + InWords(since))};
    }
    const std::int64_t files = std::max<std::int64_t>(0, own.nextTo - partner.nextFrom) +
                               std::max<std::int64_t>(0, partner.nextTo - own.nextFrom);
    if (files > 0) {
        return {Health::Behind, "", Counted(files, "file") + " under way"};
    }
    if (outlook.provenOn.empty()) {
        return {Health::Unknown, "", "in step, and not proven yet"};
    }
    return {Health::Same, "", "the same as of " + InWords(outlook.provenOn)};
}

/// A workstation says so itself; main goes by what it says.
bool IsLasting(const StepTrouble& trouble, const Outlook& outlook) {
    if (trouble.kind.empty() || !trouble.isCertain) {
        return false;
    }
    const std::vector<std::string>& told = outlook.partner->troubles;
    return outlook.isMain ? std::find(told.begin(), told.end(), trouble.kind) != told.end()
                          : trouble.what == outlook.lasting;
}

std::string StateInWords(int state) {
    return state == 5 || state == 6 ? "a reset is under way" : "the first exchange is under way";
}

} // namespace

Verdict Judge(const Outlook& outlook) {
    if (outlook.partner == nullptr) {
        return {Health::Unknown, "", "it has not told yet how it stands"};
    }
    if (outlook.isTwice) {
        return {Health::OutOfStep, "twins", "two computers have this company: one is a copy of the other"};
    }
    const StepTrouble trouble = outlook.isMain ? FindStepTrouble(*outlook.partner, outlook.own)
                                               : FindStepTrouble(outlook.own, *outlook.partner);
    if (IsLasting(trouble, outlook)) {
        const std::string mends = outlook.mendsOn.empty() ? "" : ", mends itself at " + InWords(outlook.mendsOn);
        return {Health::OutOfStep, trouble.kind, "out of step: " + trouble.what + mends};
    }
    if (outlook.silentMinutes > SilenceMinutes) {
        return {Health::Unknown, "silent", "silent since " + InWords(outlook.partner->writtenOn)};
    }
    const int roaming = outlook.isMain ? outlook.partner->position.state : outlook.own.position.state;
    const int main = outlook.isMain ? outlook.own.position.state : outlook.partner->position.state;
    if (roaming != Ready || main != Ready) {
        return {Health::Behind, "", StateInWords(roaming != Ready ? roaming : main)};
    }
    return JudgeProgress(outlook);
}

std::string InWords(const std::string& date) {
    if (date.size() != 17) {
        return date;
    }
    return date.substr(0, 4) + "-" + date.substr(4, 2) + "-" + date.substr(6, 2) + date.substr(8, 6) + " UTC";
}

} // namespace qndr::standing
