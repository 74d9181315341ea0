#include "programs/qndr5ctl_fixture.h"
#include "support/dealer.h"

#include <sys/stat.h>

namespace qndr::control {
namespace {

class NewFiles : public ::testing::Test {
  protected:
    NewFiles() { umask(mask_); }
    ~NewFiles() override { umask(mask_); }

    /// Every file and folder below it that others can reach, but for the folder itself.
    static std::string OpenToOthers(const std::string& folder) {
        std::string found;
        for (const auto& entry : fs::recursive_directory_iterator(folder)) {
            const auto wanted = entry.is_directory() ? 0700 : 0600;
            if (entry.status().permissions() != fs::perms(wanted)) {
                found += entry.path().string().substr(folder.size()) + "\n";
            }
        }
        return found;
    }
    static std::size_t FilesBelow(const std::string& folder) {
        return fs::exists(folder) ? static_cast<std::size_t>(std::ranges::count_if(
                                        fs::recursive_directory_iterator(folder),
                                        [](const auto& entry) { return entry.is_regular_file(); }))
                                  : 0;
    }

    const mode_t mask_ = umask(0022);
};

TEST_F(NewFiles, AreForTheirUserAloneWhateverTheMaskAndShareTheSyncFolderWithItsWriters) {
    struct Case {
        mode_t mask;
        unsigned syncFolder;
        unsigned syncFile;
    };
    for (const auto& [mask, syncFolder, syncFile] :
         {Case{0000, 0755, 0600}, Case{0022, 02770, 0660}, Case{0777, 0777, 0666}, Case{0022, 0775, 0660}}) {
        SCOPED_TRACE(mask);
        const test::TemporaryFolder folder(test::QuickPlace());
        testing::Dealer dealer(folder.Path(), 1);
        const auto& laptop = dealer.Laptop();
        dealer.SetUp(0);
        // The folders of a computer are a person's; all that is in them is made under this mask.
        for (const std::string name : {"main", "laptop-1"}) {
            fs::remove_all(folder / name);
            for (const std::string below : {"", "/Companies"}) {
                fs::create_directory(folder / (name + below));
                fs::permissions(folder / (name + below), fs::perms(0700));
            }
        }
        fs::permissions(dealer.SyncFolder(), fs::perms(syncFolder));
        const auto type = [&](const std::string& name, const std::vector<std::string>& arguments) {
            umask(mask);
            const Outcome outcome = Type(suite::Computer::InFolder(folder / name, name), dealer.Time(), arguments);
            EXPECT_EQ(outcome.status, 0) << outcome.errors;
        };
        for (const std::string name : {"main", "laptop-1"}) {
            const bool isMain = name == "main";
            type(name, {"company", "create", folder / (name + "/Companies/dealer.psd"), "--type",
                        isMain ? "main" : "roaming", "--name", name});
            type(name, {"location", "set", "Sync", dealer.SyncFolder()});
            type(name, {"role", isMain ? "main" : "roaming"});
            type(name, {"settings", "set", "DebugSyncAgent", "1"});
            type(name, {"settings", "set", "KeepSyncFiles", "1"});
        }
        const std::string main = dealer.Main().Psd();
        type("main", {"option", "set", main, "Roaming Workstations", "EnableSync", "1"});
        type("main", {"option", "set", main, "Roaming Workstations", "SyncComputerName", "main"});
        type("main", {"workstation", "add", main, laptop.Psd()});
        for (int round = 0; round < 3; ++round) {
            for (const auto* computer : {&laptop, &dealer.Main()}) {
                umask(mask);
                computer->RunPass();
            }
            if (round == 1) {
                type("laptop-1", {"add", laptop.Psd(), "Orders", "OrderNumber=7"});
            }
        }
        umask(mask);
        laptop.RunPass();
        EXPECT_EQ(OpenToOthers(folder / "main"), "");
        EXPECT_EQ(OpenToOthers(folder / "laptop-1"), "");
        for (const std::string& kept : {laptop.KeptFolder("History"), laptop.KeptFolder("Deleted"),
                                        laptop.KeptFolder("Orders"), laptop.LogFolder() + "/Velmoran/Logs"}) {
            EXPECT_GT(FilesBelow(kept), 0U) << kept;
        }
        EXPECT_GT(dealer.FilesInSyncFolder(), 0U);
        for (const std::string& path : dealer.SyncFiles()) {
            EXPECT_EQ(fs::status(path).permissions(), fs::perms(syncFile)) << path;
        }
    }
}

} // namespace
} // namespace qndr::control
