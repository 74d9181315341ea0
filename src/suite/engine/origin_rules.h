#pragma once

#include "suite/database/sqlite_connection.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace qndr::suite {

/// Decides which version of a row stays when a record arrives. On main the order of arrival decides and every
/// record is taken; a workstation does not let go of what main has not seen yet. Made inside the import's
/// transaction, before its first write.
class OriginRules {
  public:
    OriginRules(const SqliteConnection& connection, const std::string& sender);

    enum class Verdict {
        Take,
        TakeAndKeepLoser, ///< the version that stands here was unknown to the sender
        KeepOwn,          ///< the arriving version loses against an unsent change of this workstation
        PassOver          ///< an older version of this workstation's own, a newer one is on its way
    };

    struct Decision {
        Verdict verdict = Verdict::Take;
        std::string losingOrigin;
        std::string winningOrigin;
    };

    /// `origin` is empty for the records of a full export.
    Decision Decide(std::string_view table, std::string_view uniqueID, std::string_view origin,
                    std::int64_t originID);

    bool IsMain() const { return isMain_; }

    /// The audit row whose version main must send out once more, under the number of the arriving one; 0 when
    /// there is none. To be asked on main when a record has changed nothing. The sender passes over older versions
    /// of its own for as long as it waits for the newest one to come back, and would wait for ever.
    std::int64_t VersionToConfirm(std::string_view table, std::string_view uniqueID, std::string_view origin,
                                  std::int64_t originID);

  private:
    /// The newest audit row of a row; the ID is 0 when there is none.
    struct Newest {
        std::int64_t id = 0;
        std::string origin;
        std::int64_t originID = 0;
    };
    Newest NewestAudit(std::string_view table, std::string_view uniqueID);

    SqliteStatement newest_;
    std::string own_;
    std::string sender_;
    bool isMain_ = false;
    std::int64_t known_ = 0;  ///< the audit rows up to here are known at the other end
    std::int64_t latest_ = 0; ///< the newest audit row before this import
};

} // namespace qndr::suite
