#include "programs/qndr5ctl/archive_contents.h"
#include "programs/qndr5ctl/commands.h"
#include "programs/qndr5ctl/file_import.h"
#include "programs/qndr5ctl/output.h"
#include "programs/qndr5ctl/sync_words.h"
#include "programs/qndr5ctl/taken_out_files.h"
#include "syncfiles/descriptor.h"
#include "text/shell_text.h"
#include "text/whole_number.h"

namespace qndr::control {

namespace {

struct ShowArguments {
    std::string archive;
    bool json = false;
};

/// What a descriptor's value says to a person, the value alone where it speaks for itself.
std::string InWords(const std::string& key, const std::string& value) {
    const auto whole = text::ParseWholeNumber(value);
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

bool IsNumeric(const std::string& key) {
    return key == "MessageCode" || key == "SyncState" || key == "Sequence" || key == "IsSyncReset" ||
           key == "ReferenceCode" || key == "FromType";
}

void Show(const ControlContext& context, const ShowArguments& arguments) {
    const ArchiveContents contents = ReadArchiveContents(arguments.archive);
    Facts descriptor;
    for (const auto& [key, value] :
         contents.descriptor.value_or(std::vector<std::pair<std::string, std::string>>{})) {
        descriptor.Add(key, "", InWords(key, value));
        const auto number = text::ParseWholeNumber(value);
        descriptor.Add("", key, number && IsNumeric(key) ? Json(*number) : Json(value));
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

struct ImportArguments {
    std::string archive;
    std::string company;
};

void Import(const ControlContext& context, const ImportArguments& arguments) {
    const OpenedCompany company(context, arguments.company);
    const suite::ImportResult result = ImportByHand(context, company, arguments.archive);
    company.RecordEvent("The file '" + context.services.fileTools.GetFileName(arguments.archive) +
                        "' was imported by hand.");
    context.out << "Imported the file by hand: " << Counted(result.records, "record") << ", "
                << Counted(result.conflicts, "losing version") << " kept, " << Counted(result.problems, "record")
                << " put aside.\n";
    if (result.conflicts > 0) {
        context.out << "See 'qndr5ctl conflicts list " << text::ShellQuoted(arguments.company) << "'.\n";
    }
}

struct TakeOutArguments {
    std::vector<std::string> files;
};

void TakeOutAll(const ControlContext& context, const TakeOutArguments& arguments) {
    for (const std::string& file : arguments.files) {
        context.out << "Moved to " << TakeOut(context, file) << '\n';
    }
}

} // namespace

void AddFileCommands(const CommandLine& program, const ControlContext& context) {
    const CommandLine group = program.AddGroup("file", "Look into sync files and order backups, and move them");
    const auto show =
        AddCommand<ShowArguments>(group, context, "show", "Descriptor, entries and record counts", Show);
    show.app.Add("ARCHIVE", show.arguments.archive, "A sync file or an order backup").Required();
    show.app.AddJsonFlag(show.arguments.json);

    const auto import = AddCommand<ImportArguments>(
        group, context, "import",
        "Take a file of changes into a company by hand, one that came late or was retired; no version is lost",
        Import);
    import.app.Add("ARCHIVE", import.arguments.archive, "The sync file, where it lies").Required();
    import.app.Add("FILE", import.arguments.company, "The .psd file of the company that it is for").Required();

    const auto takeOut = AddCommand<TakeOutArguments>(
        group, context, "take-out", "Move files out of the Sync folder, to a place where nothing is deleted",
        TakeOutAll);
    takeOut.app.Add("ARCHIVE", takeOut.arguments.files, "The files").Required();
}

} // namespace qndr::control
