#include "diagnosis/state_words.h"

#include "services/company_numbers.h"
#include "syncfiles/descriptor.h"

#include <string_view>

namespace qndr::diagnosis {

std::string WordsForCompanyState(std::int64_t state) {
    switch (state) {
    case SyncStateNone:
        return "none";
    case SyncStateInitialSyncRequired:
        return "initial sync required";
    case SyncStateInitialSyncRequested:
        return "initial sync requested";
    case SyncStateReady:
        return "ready";
    case SyncStateResetRequested:
        return "Reset Requested";
    case SyncStateResetPending:
        return "reset pending, awaits the full data";
    default:
        return "unknown";
    }
}

std::string WordsForWorkstationState(std::int64_t state) {
    switch (state) {
    case SyncStateNone:
        return "none, request awaited";
    case SyncStateInitialSyncRequired:
        return "initial sync requested";
    case SyncStateInitialSyncSent:
        return "initial sync sent, acknowledge awaited";
    case SyncStateReady:
        return "ready";
    case SyncStateResetRequested:
        return "Reset Requested, owes the full data";
    case SyncStateResetPending:
        return "reset pending, waiting for five quiet minutes";
    default:
        return "unknown";
    }
}

std::string WordsForWorkstation(std::int64_t state, const std::string& lastReceivedFrom, const Date& nowUtc) {
    const std::string words = WordsForWorkstationState(state);
    const auto received = ParseDate(lastReceivedFrom);
    if (state != SyncStateResetPending || !received) {
        return words;
    }
    constexpr std::size_t TimeOfDay = std::string_view("yyyy-mm-dd ").size();
    const std::string since = FormatGeneralDate(*received);
    const bool isToday = FormatGeneralDate(nowUtc).starts_with(since.substr(0, TimeOfDay));
    return words + " since " + (isToday ? since.substr(TimeOfDay) : since) + " UTC";
}

std::string WordsForDescriptorState(std::int64_t state) {
    switch (state) {
    case SyncFileInitialSyncRequest:
        return "initial sync requested";
    case SyncFileInitialSync:
        return "initial sync data";
    case SyncFileReady:
        return "ready";
    default:
        return "unknown";
    }
}

std::string Counted(std::int64_t number, const std::string& noun) {
    return std::to_string(number) + " " + noun + (number == 1 ? "" : "s");
}

std::string NumberInWords(std::int64_t number, const std::string& words) {
    return std::to_string(number) + " (" + words + ")";
}

} // namespace qndr::diagnosis
