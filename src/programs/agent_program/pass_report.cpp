#include "programs/agent_program/pass_report.h"

#include <algorithm>
#include <cctype>
#include <ostream>
#include <utility>

namespace qndr {
namespace {

/// The shortest run of letters and digits that counts as made up: tokens of files and names of working files.
constexpr std::size_t ShortestToken = 16;

bool IsTrouble(const std::string& message) {
    return message.starts_with("Error: ") || message.starts_with("Warning: ");
}

/// The line with its random tokens and stamps left out, so that the same trouble has the same text in each pass.
std::string WithoutTokens(const std::string& message) {
    std::string kept;
    for (std::size_t at = 0; at < message.size();) {
        std::size_t end = at;
        while (end < message.size() && std::isalnum(static_cast<unsigned char>(message[end])) != 0) {
            ++end;
        }
        if (end - at < ShortestToken) {
            end = std::max(end, at + 1);
            kept.append(message, at, end - at);
        }
        at = end;
    }
    return kept;
}

} // namespace

void PassReport::LineReported(const std::string& message) {
    const bool isObstacle = message.starts_with("This file will not be processed");
    if (message == "Begin syncing as main" || message == "Start syncing as roaming") {
        companyReached_ = true;
    } else if (message == "Stopping Sync") {
        inLastPass_ = std::exchange(inPass_, {});
    } else if (isObstacle || IsTrouble(message)) {
        errors_ = errors_ || !isObstacle;
        const std::string line = WithoutTokens(message);
        if (inPass_.insert(line).second && !inLastPass_.contains(line)) {
            out_ << program_ << ": " << message << std::endl;
        }
    }
}

int PassReport::Status() const {
    if (companyReached_) {
        return errors_ ? WithErrors : 0;
    }
    const bool isTold = !inLastPass_.empty();
    out_ << program_ << ": no pass was made" << (isTold ? "" : ": there is no company in the Companies folder")
         << std::endl;
    return NoPassMade;
}

} // namespace qndr
