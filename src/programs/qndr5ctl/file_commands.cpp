#include "programs/qndr5ctl/archive_contents.h"
#include "programs/qndr5ctl/commands.h"
#include "programs/qndr5ctl/output.h"
#include "programs/qndr5ctl/sync_words.h"
#include "programs/qndr5ctl/whole_number.h"
#include "syncfiles/descriptor.h"

namespace qndr::control {

namespace {

struct ShowArguments {
    std::string archive;
    bool json = false;
};

/// What a descriptor's value says to a person, the value alone where it speaks for itself.
std::string InWords(const std::string& key, const std::string& value) {
    const auto whole = ParseWholeNumber(value);
    if (!whole) {
        return value;
    }
    if (key == "SyncState") {
        return NumberInWords(*whole, WordsForDescriptorState(*whole));
    }
    if (key == "FromType") {
        return NumberInWords(*whole, WordsForCompanyType(*whole));
    }
    if (key == "Sequence" && *whole == SyncResetSequence) {
        return NumberInWords(*whole, "asks for a reset");
    }
    if (key == "IsSyncReset" && *whole == 1) {
        return NumberInWords(*whole, "full data that answers a reset");
    }
    return value;
}

void Show(const ControlContext& context, const ShowArguments& arguments) {
    const ArchiveContents contents = ReadArchiveContents(arguments.archive);
    Facts descriptor;
    for (const auto& [key, value] :
         contents.descriptor.value_or(std::vector<std::pair<std::string, std::string>>{})) {
        descriptor.Add(key, "", InWords(key, value));
        descriptor.Add("", key, value);
    }
    Listing entries({{"Entry", "name"}, {"Bytes", "size"}, {"Packed", "packedSize"}});
    for (const ArchiveEntry& entry : contents.entries) {
        entries.Add({entry.name, entry.size, entry.packedSize});
    }
    Listing tables({{"Table", "table"}, {"Records", "records"}, {"Deletions", "deletion"}});
    for (const TableCount& table : contents.tables.value_or(std::vector<TableCount>{})) {
        tables.Add({table.table, table.records, table.deletion});
    }

    if (arguments.json) {
        Json file = Json::Object();
        file.Set("descriptor", contents.descriptor ? descriptor.ToJson() : Json());
        file.Set("entries", entries.ToJson());
        file.Set("tables", contents.tables ? tables.ToJson() : Json());
        context.out << file.ToText() << '\n';
        return;
    }
    if (contents.descriptor) {
        descriptor.Print(context.out);
    } else {
        context.out << (contents.backupEntry.empty()
                            ? "This archive has no descriptor (id.dat); it is no sync file.\n"
                            : "This is an order backup; 'order show' shows what it holds.\n");
    }
    context.out << '\n';
    entries.PrintTable(context.out, "This archive is empty.");
    if (contents.tables) {
        context.out << '\n';
        tables.PrintTable(context.out, "The data holds no tables.");
    }
}

} // namespace

void AddFileCommands(CLI::App& program, const ControlContext& context) {
    CLI::App& group = AddGroup(program, "file", "Look into sync files and order backups");
    const auto show =
        AddCommand<ShowArguments>(group, context, "show", "Descriptor, entries and record counts", Show);
    show.app.add_option("ARCHIVE", show.arguments.archive, "A sync file or an order backup")->required();
    AddJsonFlag(show.app, show.arguments.json);
}

} // namespace qndr::control
