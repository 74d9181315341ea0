#pragma once

#include "composition/computer_services.h"
#include "programs/qndr5ctl/control_program.h"
#include "suite/computer/virtual_time.h"
#include "suite/files/zip_archive.h"
#include "suite/sql/sqlite/sqlite_connection.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace qndr::control {

namespace fs = std::filesystem;

struct Outcome {
    int status = -1;
    std::string out;
    std::string errors;
};

/// A command line typed on a computer. The gate, if there is one, stands in front of all that it asks for.
inline Outcome Type(const suite::Computer& computer, suite::VirtualTime& time,
                    const std::vector<std::string>& arguments, services::CallGate* gate = nullptr) {
    const ComputerServices services(computer, {time, time, time}, "qndr5ctl", {}, gate);
    std::ostringstream out;
    std::ostringstream errors;
    const int status = RunControlProgram(arguments, {computer, services.Services(), out}, errors);
    return {status, out.str(), errors.str()};
}

/// The first value of a query that takes these texts as ?1 and so on, for JSON: a parser that is not ours. NULL
/// and no row are empty, Booleans 1 and 0.
inline std::string Ask(const std::string& query, const std::vector<std::string>& parameters) {
    sqlite3* parser = nullptr;
    EXPECT_EQ(sqlite3_open(":memory:", &parser), SQLITE_OK);
    sqlite3_stmt* prepared = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(parser, query.c_str(), -1, &prepared, nullptr), SQLITE_OK) << query;
    for (int index = 0; const std::string& parameter : parameters) {
        sqlite3_bind_text(prepared, ++index, parameter.data(), static_cast<int>(parameter.size()),
                          SQLITE_TRANSIENT);
    }
    const bool isThere = sqlite3_step(prepared) == SQLITE_ROW && sqlite3_column_type(prepared, 0) != SQLITE_NULL;
    const std::string value = isThere ? reinterpret_cast<const char*>(sqlite3_column_text(prepared, 0)) : "";
    sqlite3_finalize(prepared);
    sqlite3_close(parser);
    return value;
}
inline std::string JsonAt(const std::string& json, const std::string& path) {
    return Ask("SELECT json_extract(?1, ?2)", {json, path});
}

/// Packs all that is in a folder.
inline void PackFolder(const std::string& folder, const std::string& archive) {
    suite::LibZipArchive zip;
    ASSERT_EQ(zip.NewZip(archive), 1);
    ASSERT_EQ(zip.AppendFiles(folder + "/*.*", 1), 1) << zip.LastErrorText();
    ASSERT_EQ(zip.WriteZipAndClose(), 1) << zip.LastErrorText();
}

/// One computer in a temporary folder, with the real suite, and the command line typed on it.
class Qndr5ctl : public testing::Test {
  protected:
    Outcome Run(const std::vector<std::string>& arguments) {
        return Type(suite::Computer::InFolder(File("computer"), "DESK"), time_, arguments);
    }

    std::string MustRun(const std::vector<std::string>& arguments) {
        const Outcome outcome = Run(arguments);
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        EXPECT_EQ(outcome.errors, "");
        return outcome.out;
    }

    /// A command that must fail with status 1 and one line that says `reason`.
    void MustFail(const std::vector<std::string>& arguments, const std::string& reason) {
        const Outcome outcome = Run(arguments);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_TRUE(outcome.errors.starts_with("qndr5ctl: ")) << outcome.errors;
        EXPECT_NE(outcome.errors.find(reason), std::string::npos) << outcome.errors;
        EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1) << outcome.errors;
    }

    std::string File(const std::string& name) const { return home_ / name; }
    void Write(const std::string& name, const std::string& content) const {
        fs::create_directories(fs::path(File(name)).parent_path());
        std::ofstream(File(name), std::ios::binary | std::ios::app) << content;
    }
    std::string NewCompany(const std::string& name, const std::string& type,
                           const std::vector<std::string>& more = {}) {
        const std::string file = File(name + ".psd");
        std::vector<std::string> arguments{"company", "create", file, "--type", type, "--name", name};
        arguments.insert(arguments.end(), more.begin(), more.end());
        MustRun(arguments);
        return file;
    }
    std::size_t FilesInHome() const {
        return static_cast<std::size_t>(std::distance(fs::recursive_directory_iterator(home_.Path()), {}));
    }

    /// A statement on the database beside a company file.
    void OnDatabase(const std::string& name, const std::string& statement) {
        sql::SqliteConnection(File(name + ".db"), time_, sql::Missing::Create).Execute(statement);
    }
    void Pack(const std::string& folder, const std::string& archive) const {
        PackFolder(File(folder), File(archive));
    }
    void SetAge(const std::string& name, int seconds) const {
        fs::last_write_time(File(name), started_ - std::chrono::seconds(seconds));
    }

    const test::TemporaryFolder home_{test::QuickPlace()};
    const fs::file_time_type started_ = fs::file_time_type::clock::now();
    suite::VirtualTime time_{*ParseDate("2026-11-22 19:08:52")};
};

} // namespace qndr::control
