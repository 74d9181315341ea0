#include "composition/lock_pauses.h"

#include "composition/message_pause.h"
#include "shared/failure_rule.h"
#include "shared/settings.h"
#include "suite/files/path_text.h"

#include <algorithm>

namespace qndr {
namespace {

/// The company's name, as far as the path of its database tells it.
std::string CompanyOf(const std::string& database) {
    const std::string name = suite::NamePart(database);
    return name.substr(0, name.rfind('.'));
}

/// A wait shorter than this (milliseconds) is nothing that anybody has to be told of.
constexpr std::int32_t kWorthTelling = 1000;
constexpr std::int32_t kLongestPause = 1000;

} // namespace

std::int32_t LockPauses::Pause(const std::string& database, Patience patience, std::int32_t waited) {
    if (waited >= Limit(patience)) {
        return 0;
    }
    if (patience == Patience::Import && waited >= kWorthTelling) {
        if (IsAskedToStop()) {
            return 0;
        }
        if (!isTold_) {
            isTold_ = true;
            Tell("Waiting for the database of " + CompanyOf(database));
        }
    }
    // Short at first, for most locks are: the wait grows by a half each time.
    const std::int32_t pause = std::min({1 + waited / 2, kLongestPause, Limit(patience) - waited});
    LetPass(messages_, timers_, timerName_, pause);
    return pause;
}

void LockPauses::Over() {
    if (isTold_) {
        isTold_ = false;
        Tell("");
    }
}

void LockPauses::Tell(const std::string& text) {
    if (teller_) {
        Attempt([&] { teller_(text); });
    }
}

bool LockPauses::IsAskedToStop() {
    std::int32_t stop = 0;
    Attempt([&] {
        stop = registryTools_.GetLong(services::CurrentUserHive, settings::RootKey, settings::StopSync, 0);
    });
    return stop != 0;
}

} // namespace qndr
