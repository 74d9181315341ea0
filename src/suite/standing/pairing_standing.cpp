#include "suite/standing/pairing_standing.h"

#include "suite/sql/sql_date.h"
#include "text/letter_case.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <utility>

namespace qndr::suite {

namespace {

/// A sign of life.
constexpr std::int64_t RepeatMinutes = 60;
constexpr std::int64_t Unknown = 1'000'000'000;

std::optional<int> Digits(const std::string& text, std::size_t at, std::size_t count) {
    int number = 0;
    const char* const end = text.data() + at + count;
    const auto [stop, error] = std::from_chars(text.data() + at, end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

/// Of a "yyyymmdd hh:nn:ss".
std::optional<std::int64_t> MinutesOf(const std::string& text) {
    if (text.size() != 17) {
        return std::nullopt;
    }
    const auto year = Digits(text, 0, 4);
    const auto month = Digits(text, 4, 2);
    const auto day = Digits(text, 6, 2);
    const auto hour = Digits(text, 9, 2);
    const auto minute = Digits(text, 12, 2);
    if (!year || !month || !day || !hour || !minute) {
        return std::nullopt;
    }
    using namespace std::chrono;
    const sys_days date = std::chrono::year(*year) / *month / *day;
    return date.time_since_epoch().count() * std::int64_t{24 * 60} + *hour * 60 + *minute;
}

} // namespace

std::string NowText(const services::Clock& clock) {
    return FormatDatabaseDate(sql::UtcNow(clock));
}

std::int64_t MinutesBetween(const std::string& from, const std::string& to) {
    const auto begin = MinutesOf(from);
    const auto end = MinutesOf(to);
    return begin && end ? *end - *begin : Unknown;
}

std::string AddMinutes(const std::string& date, std::int64_t minutes) {
    return MinutesOf(date) ? FormatDatabaseDate(sql::DateAdd("minute", minutes, date)) : date;
}

PairingStanding::PairingStanding(const sql::Connection& connection, const StandingSurroundings& surroundings,
                                 std::string own, std::string partner)
    : connection_(connection), surroundings_(surroundings), own_(std::move(own)),
      now_(NowText(surroundings.clock)), stored_(ReadPartnerStanding(connection, partner)), memory_(stored_) {
    if (!memory_.heard.empty()) {
        partner_ = standing::ReadMessage(memory_.heard);
    }
}

std::string PairingStanding::PathTo() const {
    return surroundings_.syncFolder + standing::FileName(memory_.partner, own_);
}

std::string PairingStanding::PathFrom() const {
    return surroundings_.syncFolder + standing::FileName(own_, memory_.partner);
}

PairingStanding::News PairingStanding::Hear() {
    const std::string facts = StandingFileFacts(PathFrom());
    const bool isKnown = facts == memory_.heardFile;
    // What it gave up is looked at until it has heard of that; it is remembered nowhere.
    if (facts.empty() || (isKnown && !(partner_ && partner_->gaveUp))) {
        return News::None;
    }
    std::optional<StandingFile> file = ReadStandingFile(surroundings_.archives.Reads(), PathFrom());
    if (!file || !text::EqualsWithoutCase(file->message.from, memory_.partner) ||
        !text::EqualsWithoutCase(file->message.to, own_)) {
        return News::None;
    }
    memory_.heardFile = facts;
    News news = News::Message;
    if (partner_ && file->message.number <= partner_->number) {
        if (file->message.writtenOn <= partner_->writtenOn) {
            givenUp_ = isKnown ? std::move(file->givenUp) : "";
            return News::None;
        }
        news = file->message.number < partner_->number ? News::Forgotten : News::Message;
    }
    NoteComputer(file->message.computer);
    partner_ = std::move(file->message);
    proof_ = std::move(file->proof);
    rows_ = std::move(file->rows);
    givenUp_ = std::move(file->givenUp);
    memory_.heard = standing::ToText(*partner_);
    memory_.heardOn = now_;
    return news;
}

/// A company that moves to another computer does so once. One whose messages come from two in turn is there twice:
/// somebody has copied a disk.
void PairingStanding::NoteComputer(const std::string& name) {
    std::string& known = memory_.computers;
    const std::string present = known.substr(0, known.find('\n'));
    if (name.empty() || text::EqualsWithoutCase(present, name)) {
        return;
    }
    const std::size_t end = known.find('\n');
    const std::string former =
        end == std::string::npos ? "" : known.substr(end + 1, known.find('\n', end + 1) - end - 1);
    const bool isBack = text::EqualsWithoutCase(former, name);
    known = name + (present.empty() ? "" : "\n" + present) + (isBack ? "\ntwice" : "");
}

bool PairingStanding::HasToTell(const standing::Message& message) const {
    const std::optional<standing::Message> told = standing::ReadMessage(memory_.told);
    const bool hasOffer = partner_ && !partner_->proof.empty() && partner_->proof != message.proof;
    return !told || !standing::SaysTheSame(*told, message) || (hasOffer && told->heard < message.heard) ||
           std::abs(MinutesBetween(told->writtenOn, now_)) >= RepeatMinutes ||
           StandingFileFacts(PathTo()) != memory_.toldFile;
}

void PairingStanding::Tell(StandingFile file) {
    file.message.number = NextNumber();
    file.message.writtenOn = now_;
    if (!WriteStandingFile(PathTo(), file).empty()) {
        return; // the next pass tries again
    }
    ++memory_.number;
    memory_.told = standing::ToText(file.message);
    memory_.toldFile = StandingFileFacts(PathTo());
}

void PairingStanding::Save() {
    if (!(memory_ == stored_)) {
        WritePartnerStanding(connection_, memory_);
        stored_ = memory_;
    }
}

} // namespace qndr::suite
