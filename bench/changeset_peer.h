#pragma once

#include "services/file_tools.h"
#include "services/object_factory.h"
#include "services/platform.h"
#include "suite/sql/sqlite/sqlite_connection.h"

#include <memory>
#include <string>
#include <vector>

struct sqlite3_session;

namespace qndr::bench {

/// Seconds of each piece of the peer's way, in their order.
struct PeerTimes {
    double make = 0;
    double pack = 0;
    double drop = 0;
    double unpack = 0;
    double apply = 0;
    double close = 0; ///< of the copy; behind the commit
};

/// Records what a connection changes in some tables, from its construction on.
class ChangeRecorder {
  public:
    ChangeRecorder(const sql::Connection& connection, const std::vector<std::string>& tables);

    /// What was changed, in the database's own form.
    std::string Changeset() const;

  private:
    std::unique_ptr<sqlite3_session, void (*)(sqlite3_session*)> session_;
};

/// A copy of a company that follows it by changesets of the database's own making: rows are found by their local
/// key, there is no audit, no descriptor, no sequence and no conflict. It has the company's indexes.
class ChangesetPeer {
  public:
    /// Makes the copy and its folders below `folder`. The company must have been closed by all.
    ChangesetPeer(const std::string& folder, const std::string& company, const services::Clock& clock);

    /// Writes the recorded changes to a file.
    void Make(const ChangeRecorder& recorder, PeerTimes& times) const;
    /// Carries that file to the copy: through an archive like the agent's, a durable copy of it and one durable
    /// transaction. Raises services::Failure when anything is refused or a change does not fit.
    void Carry(services::ObjectFactory& objects, services::FileTools& fileTools, PeerTimes& times) const;

    const std::string& DatabaseFile() const { return database_; }

  private:
    std::string out_;    ///< where the changeset and its archive are made
    std::string folder_; ///< the shared folder
    std::string in_;     ///< where the archive is unpacked
    std::string database_;
    const services::Clock& clock_;
};

} // namespace qndr::bench
