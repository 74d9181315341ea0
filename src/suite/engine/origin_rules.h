#pragma once

#include "suite/engine/refused_files.h"
#include "suite/engine/sent_ranges.h"
#include "suite/exchange/import_batch.h"
#include "suite/sql/connection.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace qndr::suite {

/// Whether a file comes from its sender in its turn, or a person gives it later, out of any sequence.
enum class Arrival { InTurn, ByHand };

/// Decides which version of a row stays when a record arrives. On main the order of arrival decides and every
/// record is taken; a workstation holds on to a version of its own until main says that it has taken it. So a row
/// changes hands only by an edit of somebody who sees it or by a decision of this class, and no version gets lost
/// between the two. Made inside the import's transaction, before its first write.
class OriginRules {
  public:
    /// `file` says which files its sender had accepted, and which of them it could not take in.
    OriginRules(const sql::Connection& connection, const ImportBatch& file, Arrival arrival);

    enum class Verdict {
        Take,
        TakeAndKeepLoser, ///< the version that stands here was unknown to the sender
        KeepOwn, ///< the arriving version loses against a change of this workstation that is not on its way
        PassOver ///< nothing of it is to be kept: a newer version of this workstation is on its way
    };

    struct Decision {
        Verdict verdict = Verdict::Take;
        std::string losingOrigin;
        std::string winningOrigin;
        bool ownIsDeletion = false; ///< of KeepOwn: the version that stays is that the row is not there
    };

    /// `origin` is empty for the records of a full export; otherwise `originID` is the version's number there.
    Decision Decide(std::string_view table, std::string_view uniqueID, std::string_view origin,
                    std::int64_t originID);

    /// For a file that comes by hand, of which nobody knows what its sender had seen: no version is lost. Main
    /// takes what it has not had of that origin yet; a workstation takes rows that it does not have, and of others
    /// keeps the arriving version as the losing one, for nobody else would learn of a change that is not audited.
    Decision DecideByHand(std::string_view table, std::string_view uniqueID, std::string_view origin,
                          std::int64_t originID, bool rowIsThere);

    bool IsMain() const { return isMain_; }
    const std::string& Own() const { return own_; }

  private:
    /// The newest audit row of a row; the ID is 0 when there is none.
    struct Newest {
        std::int64_t id = 0;
        std::string origin;
        bool isDeletion = false;
    };
    Newest NewestAudit(std::string_view table, std::string_view uniqueID);

    /// The sender as SentRanges names it.
    std::string_view Receiver() const;
    /// A file that does not tell what its sender had accepted counts as made with sight of all that was sent. Of
    /// this workstation's own versions it tells more: one that it changed since was not seen yet.
    bool IsOwnBeforeNewest(const Newest& newest, std::string_view origin, std::int64_t originID) const;
    bool WasKnown(std::string_view table, const Newest& newest) const;
    /// On main: the row's newest version of this origin was made no earlier.
    bool HasHad(std::string_view table, std::string_view uniqueID, std::string_view origin, std::int64_t originID);

    const sql::Connection& connection_;
    sql::Statement newest_;
    std::string own_;
    std::string sender_;
    bool isMain_ = false;
    bool tellsSeen_ = false;
    bool isResetPending_ = false;
    std::int64_t sent_ = 0;   ///< on a workstation: the audit rows up to here are out
    std::int64_t known_ = 0;  ///< the audit rows up to here were known to the sender when it made the file
    SkippedRanges skipped_;   ///< on main: what the sender never got although it is below
    NotTakenFiles notTaken_;  ///< what the sender could not take in although it is below
    std::int64_t latest_ = 0; ///< the newest audit row before this import
};

} // namespace qndr::suite
