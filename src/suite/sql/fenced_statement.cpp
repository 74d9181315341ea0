#include "suite/sql/fenced_statement.h"

#include "services/failure.h"
#include "services/variant.h"
#include "suite/sql/sql_text.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qndr::sql {
namespace {

using services::Failure;

/// What ends a literal here: nothing but its quote, and a null character the whole text. A backslash is a
/// character like any other.
constexpr std::string_view kEndsLiteral("'\0", 2);

/// Whether a placeholder of the pattern stands outside of its literals.
bool StandsBare(std::string_view pattern, const std::string& placeholder) {
    for (std::size_t at = pattern.find(placeholder); at != std::string_view::npos;
         at = pattern.find(placeholder, at + 1)) {
        if (std::ranges::count(pattern.substr(0, at), '\'') % 2 == 0) {
            return true;
        }
    }
    return false;
}

void DemandPlainValues(const services::Statement& statement) {
    const std::vector<std::string>& values = statement.Values();
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (values[i].find_first_of(kEndsLiteral) != std::string::npos) {
            throw Failure("the statement is refused: a value in it holds a quote or a null character");
        }
        if (!ParseNumber(values[i]) && StandsBare(statement.Pattern(), "{" + std::to_string(i) + "}")) {
            throw Failure("the statement is refused: a value that stands in it without quotes is no number");
        }
    }
}

std::set<std::string> DemandWordsOfPattern(const services::Statement& statement) {
    std::set<std::string> words = BareWords(statement.Pattern());
    if (!std::ranges::includes(words, BareWords(statement.Text()))) {
        throw Failure("the statement is refused: its values brought words into it");
    }
    return words;
}

} // namespace

void RunFenced(const Connection& connection, const services::Statement& statement, const StatementLimits& limits,
               const std::function<void(Statement&)>& work) {
    DemandPlainValues(statement);
    std::set<std::string> names = DemandWordsOfPattern(statement);
    const std::unique_ptr<Fence> fence = connection.MakeFence();
    const std::unique_ptr<StatementTime> time = connection.LimitTime(limits);
    try {
        Statement prepared = fence->Prepare(statement.Text(), std::move(names));
        work(prepared);
    } catch (const Failure&) {
        if (!time->Verdict().empty()) {
            throw Failure(time->Verdict());
        }
        throw;
    }
}

} // namespace qndr::sql
