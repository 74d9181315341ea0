#pragma once

#include "composition/computer_services.h"
#include "programs/qndr5ctl/control_program.h"
#include "suite/computer/operating_system.h"
#include "suite/computer/virtual_time.h"
#include "suite/database/sqlite_connection.h"
#include "suite/files/zip_archive.h"

#include <gtest/gtest.h>

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

/// One computer in a temporary folder, with the real suite, and the command line typed on it.
class Qndr5ctl : public testing::Test {
  protected:
    Qndr5ctl() { fs::create_directories(home_); }
    ~Qndr5ctl() override { fs::remove_all(home_); }

    Outcome Run(const std::vector<std::string>& arguments) {
        const suite::Computer computer = suite::Computer::InFolder((home_ / "computer").string(), "DESK");
        const ComputerServices services(computer, {time_, time_, time_}, "qndr5ctl", {});
        std::ostringstream out;
        std::ostringstream errors;
        Outcome outcome;
        outcome.status = RunControlProgram(arguments, {computer, services.Services(), out}, errors);
        outcome.out = out.str();
        outcome.errors = errors.str();
        return outcome;
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

    std::string File(const std::string& name) const { return (home_ / name).string(); }
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
        return static_cast<std::size_t>(std::distance(fs::recursive_directory_iterator(home_), {}));
    }

    /// A statement on the database beside a company file.
    void OnDatabase(const std::string& name, const std::string& statement) {
        suite::SqliteConnection(File(name + ".db"), time_, suite::SqliteConnection::Missing::Create)
            .Execute(statement);
    }
    /// The value at a JSON path, read by a parser that is not ours: Booleans are 1 and 0, null is empty.
    std::string JsonAt(const std::string& json, const std::string& path) {
        const suite::SqliteConnection parser(File("json.db"), time_, suite::SqliteConnection::Missing::Create);
        auto row = parser.Prepare("SELECT json_extract(?1, ?2)");
        row.Bind(1, json);
        row.Bind(2, path);
        row.Step();
        return row.IsNull(0) ? "" : std::string(row.Text(0));
    }
    void Pack(const std::string& folder, const std::string& archive) const {
        suite::LibZipArchive zip;
        ASSERT_EQ(zip.NewZip(File(archive)), 1);
        ASSERT_EQ(zip.AppendFiles(File(folder + "/*.*"), 1), 1) << zip.LastErrorText();
        ASSERT_EQ(zip.WriteZipAndClose(), 1) << zip.LastErrorText();
    }
    void SetAge(const std::string& name, int seconds) const {
        fs::last_write_time(File(name), started_ - std::chrono::seconds(seconds));
    }

    const fs::path home_ = fs::temp_directory_path() / ("qndr5ctl_test." + suite::RandomToken());
    const fs::file_time_type started_ = fs::file_time_type::clock::now();
    suite::VirtualTime time_{*ParseDate("2026-11-22 19:08:52")};
};

} // namespace qndr::control
