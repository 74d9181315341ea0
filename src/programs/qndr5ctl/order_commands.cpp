#include "observation/computer_places.h"
#include "programs/qndr5ctl/column_values.h"
#include "programs/qndr5ctl/commands.h"
#include "programs/qndr5ctl/order_restore.h"
#include "programs/qndr5ctl/output.h"
#include "services/failure.h"

#include <algorithm>
#include <tuple>

namespace qndr::control {

using services::Failure;

namespace {

struct ListArguments {
    std::string company;
    std::string folder;
    bool json = false;
};

struct ShowArguments {
    std::string archive;
    bool json = false;
};

struct RestoreArguments {
    std::string archive;
    std::string company;
};

struct ListedBackup {
    BackupName name;
    std::string path;
    std::int64_t size = 0;
};

/// Where this computer keeps the order backups of a company; its database need not open.
std::string BackupFolderOf(const ControlContext& context, const std::string& psdFile) {
    if (!context.services.fileTools.FileExists(psdFile)) {
        throw Failure("there is no file '" + psdFile + "'");
    }
    const auto library = context.services.objects.CreateSharedCodeLibrary();
    const auto manager = context.services.objects.CreateFileManager();
    if (!library || !manager) {
        throw Failure("the company services are not available");
    }
    library->SetPSDFile(psdFile);
    manager->Initialize(*library);
    bool flag = false;
    services::PathTools& pathTools = context.services.pathTools;
    std::string folder = pathTools.FixPath(manager->GetRootFolderPath(flag), true);
    manager->PreTerminate();
    library->PreTerminate();
    for (const char* below : {"Sync Local", "Orders"}) {
        folder = pathTools.FixPath(folder.append(below), true);
    }
    return folder;
}

std::vector<std::string> FoldersToList(const ControlContext& context, const ListArguments& arguments) {
    if (!arguments.folder.empty()) {
        if (!context.services.pathTools.FolderExists(arguments.folder)) {
            throw Failure("there is no folder '" + arguments.folder + "'");
        }
        return {arguments.folder};
    }
    if (!arguments.company.empty()) {
        return {BackupFolderOf(context, arguments.company)};
    }
    std::vector<std::string> folders;
    for (const std::string& file : observation::CompanyFilesHere(context.services)) {
        folders.push_back(BackupFolderOf(context, file));
    }
    if (folders.empty()) {
        throw Failure("no company file lies in the Companies location: name one, or a folder with --folder");
    }
    return folders;
}

void AddBackups(const services::AgentServices& services, const std::string& folder,
                std::vector<ListedBackup>& backups) {
    for (const std::string& path : services.pathTools.FindFiles(folder, "*.zip", true)) {
        if (path.empty()) {
            continue;
        }
        const auto name = ParseBackupName(services.fileTools.GetFileBaseName(path));
        if (!name) {
            continue;
        }
        try {
            backups.push_back({*name, path, services.fileTools.GetFileSize(path)});
        } catch (const Failure&) {
            // It aged out while the folder was walked.
        }
    }
}

void List(const ControlContext& context, const ListArguments& arguments) {
    std::vector<ListedBackup> backups;
    for (const std::string& folder : FoldersToList(context, arguments)) {
        AddBackups(context.services, folder, backups);
    }
    std::sort(backups.begin(), backups.end(), [](const ListedBackup& left, const ListedBackup& right) {
        return std::tie(right.name.savedOn, left.path) < std::tie(left.name.savedOn, right.path);
    });
    Listing listing({{"Order", "order"}, {"Saved (UTC)", "savedOn"}, {"Bytes", "size"}, {"Archive", "archive"}});
    for (const ListedBackup& backup : backups) {
        listing.Add({backup.name.order.empty() ? Json() : Json(backup.name.order),
                     text::UtcMoment{FormatGeneralDate(backup.name.savedOn)}, backup.size, backup.path});
    }
    if (arguments.json) {
        context.out << listing.ToJson().ToText() << '\n';
    } else {
        listing.PrintTable(context.out, "There are no order backups.");
    }
}

/// The identities of other rows say nothing to a person and are wide: in the table of items only machines see
/// them.
bool IsForPeople(const suite::Column& column) {
    return column.type != suite::ColumnType::Reference;
}

/// A column for each that any of the items holds, in the table's order.
Listing ListItems(const std::vector<suite::Row>& items) {
    std::vector<const suite::Column*> held;
    std::vector<ListColumn> columns{{"", "UniqueID"}};
    for (const suite::Column& column : suite::FindAuditedTable("OrderItems")->columns) {
        const bool isHeld = std::any_of(items.begin(), items.end(), [&](const suite::Row& item) {
            return std::any_of(item.values.begin(), item.values.end(),
                               [&](const auto& value) { return value.column == &column; });
        });
        if (isHeld) {
            held.push_back(&column);
            columns.push_back({IsForPeople(column) ? std::string(column.name) : "", ""});
            columns.push_back({"", std::string(column.name)});
        }
    }
    Listing listing(columns);
    for (const suite::Row& item : items) {
        std::vector<Json> cells{item.uniqueID};
        for (const suite::Column* column : held) {
            const auto value = std::find_if(item.values.begin(), item.values.end(),
                                            [&](const auto& each) { return each.column == column; });
            const bool isThere = value != item.values.end();
            cells.push_back(isThere ? CellForPeople(*value) : Json());
            cells.push_back(isThere ? CellForMachines(*value) : Json());
        }
        listing.Add(std::move(cells));
    }
    return listing;
}

void Show(const ControlContext& context, const ShowArguments& arguments) {
    const OrderBackup backup = ReadOrderBackup(context, arguments.archive);
    Facts order;
    order.Add("UniqueID", "UniqueID", backup.order.uniqueID);
    for (const suite::ColumnValue& value : backup.order.values) {
        order.Add(std::string(value.column->name), "", CellForPeople(value));
        order.Add("", std::string(value.column->name), CellForMachines(value));
    }
    const Listing items = ListItems(backup.items);
    if (arguments.json) {
        Json result = Json::Object();
        result.Set("order", order.ToJson()).Set("items", items.ToJson());
        context.out << result.ToText() << '\n';
        return;
    }
    order.Print(context.out);
    context.out << '\n';
    items.PrintTable(context.out, "The order has no items.");
}

std::string OrderNumberOf(const suite::Row& order) {
    for (const suite::ColumnValue& value : order.values) {
        if (value.column->name == "OrderNumber" && !std::holds_alternative<Null>(value.value)) {
            return CellForPeople(value).ToPlainText();
        }
    }
    return order.uniqueID;
}

void Restore(const ControlContext& context, const RestoreArguments& arguments) {
    const OrderBackup backup = ReadOrderBackup(context, arguments.archive);
    const OpenedCompany company(context, arguments.company);
    const RestoreResult result = RestoreOrder(company, backup);
    const std::string order = "order " + OrderNumberOf(backup.order);
    if (result.ChangedNothing()) {
        context.out << "The " << order << " is what the backup holds already; nothing was changed.\n";
        return;
    }
    const char* what = result.order == RestoreResult::Order::MadeAnew  ? "made anew"
                       : result.order == RestoreResult::Order::Changed ? "changed"
                                                                       : "unchanged";
    context.out << "Restored the " << order << ": the order itself " << what << "; items changed "
                << result.itemsChanged << ", made anew " << result.itemsMadeAnew << ", removed "
                << result.itemsRemoved << ". It travels like any other change.\n";
}

} // namespace

void AddOrderCommands(const CommandLine& program, const ControlContext& context) {
    const CommandLine group = program.AddGroup("order", "The backups of orders that this computer sent");

    const auto list = AddCommand<ListArguments>(group, context, "list", "The backups, newest first", List);
    const Option file = list.app.Add("FILE", list.arguments.company,
                                     "A company's .psd file; all of the Companies location when neither it "
                                     "nor --folder is given");
    list.app.Add("--folder", list.arguments.folder, "A folder with backups, such as a copy").Excludes(file);
    list.app.AddJsonFlag(list.arguments.json);

    const auto show =
        AddCommand<ShowArguments>(group, context, "show", "The order in a backup and its items", Show);
    show.app.Add("ARCHIVE", show.arguments.archive, "An order backup").Required();
    show.app.AddJsonFlag(show.arguments.json);

    const auto restore = AddCommand<RestoreArguments>(
        group, context, "restore",
        "Make an order what the backup holds. All of it or nothing is written, as new changes of this company "
        "that "
        "travel to the others; items of the order that the backup does not hold are deleted",
        Restore);
    restore.app.Add("ARCHIVE", restore.arguments.archive, "An order backup").Required();
    restore.app.Add("FILE", restore.arguments.company, "The .psd file of the company to write to").Required();
}

} // namespace qndr::control
