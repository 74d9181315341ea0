#include "standing/mending.h"

#include <algorithm>

namespace qndr::standing {

namespace {

constexpr int Requested = 2;
constexpr int Sent = 3;
constexpr int Ready = 4;
constexpr int ResetPending = 6;
constexpr int Required = 1;

constexpr std::int64_t RequestFile = FirstExchangeFile + 2; // SyncState -2
constexpr std::int64_t FirstDataFile = FirstExchangeFile - 1;
constexpr std::int64_t AcknowledgeFile = FirstExchangeFile - 4;

bool Holds(const std::vector<std::int64_t>& files, std::int64_t number) {
    return std::find(files.begin(), files.end(), number) != files.end();
}

/// Whether one of the two sees the file in its Sync folder.
bool ToMain(const Message& own, const Message& main, std::int64_t number) {
    return Holds(own.filesTo, number) || Holds(main.filesFrom, number);
}

bool ToWorkstation(const Message& own, const Message& main, std::int64_t number) {
    return Holds(own.filesFrom, number) || Holds(main.filesTo, number);
}

/// The file that its receiver expects next and does not see. Where its sender still sees it, it is late, or has
/// arrived as something that nobody can read.
StepTrouble Missing(const std::string& what, bool senderSeesIt) {
    return {"sequence-lost", what + (senderSeesIt ? " does not arrive" : " was lost"), Remedy::Reset,
            !senderSeesIt};
}

StepTrouble InRunningOrder(const Message& own, const Message& main) {
    const Position& here = own.position;
    const Position& there = main.position;
    if (there.nextTo < here.nextFrom) {
        return {"sequence-ahead", "main has forgotten files that it had sent", Remedy::Reset};
    }
    if (there.nextFrom > here.nextTo) {
        return {"sequence-ahead", "main has taken files that this company knows nothing of", Remedy::Reset};
    }
    if (there.nextTo > here.nextFrom && !Holds(own.filesFrom, here.nextFrom)) {
        return Missing("the file " + std::to_string(here.nextFrom) + " of main",
                       Holds(main.filesTo, here.nextFrom));
    }
    if (here.nextTo > there.nextFrom && !Holds(main.filesFrom, there.nextFrom)) {
        return Missing("the file " + std::to_string(there.nextFrom) + " to main",
                       Holds(own.filesTo, there.nextFrom));
    }
    return {};
}

StepTrouble InFirstExchange(const Message& own, const Message& main) {
    const int there = main.position.state;
    if (there == Required || ToMain(own, main, RequestFile)) {
        return {};
    }
    if (there != Sent && there != Ready) {
        return {"lost-request", "the request for the first data was lost", Remedy::InitialSync};
    }
    if (!ToWorkstation(own, main, FirstDataFile)) {
        return {"lost-initial-sync", "the first data were lost", Remedy::InitialSync};
    }
    return {};
}

StepTrouble InReset(const Message& own, const Message& main) {
    const int there = main.position.state;
    if (there == Required || there == Sent) {
        return {"lost-reset", "main does not look at a reset now", Remedy::InitialSync};
    }
    const bool mayTakeData = own.position.nextFrom == 0 && ToWorkstation(own, main, 0);
    if (there == Ready && !ToMain(own, main, ResetRequestFile) && !mayTakeData) {
        return {"lost-reset", "the request of a reset or its data were lost", Remedy::Reset};
    }
    return {};
}

} // namespace

StepTrouble FindStepTrouble(const Message& own, const Message& main) {
    const int there = main.position.state;
    switch (own.position.state) {
    case Requested:
        return InFirstExchange(own, main);
    case Ready:
        if (there == Ready) {
            return InRunningOrder(own, main);
        }
        if (there == Sent && !ToMain(own, main, AcknowledgeFile)) {
            return {"lost-acknowledge", "main was never told that the first data came", Remedy::InitialSync};
        }
        return {};
    case ResetPending:
        return InReset(own, main);
    default:
        return {};
    }
}

} // namespace qndr::standing
