#pragma once

#include <compare>
#include <string_view>

namespace qndr {

/// A call of the seam, as "Interface.Operation". Those of namespace calls are all there are; a text is none, so
/// that a name that is spelt otherwise does not compile.
class Call {
  public:
    explicit consteval Call(std::string_view name) : name_(name) {}

    constexpr std::string_view Name() const { return name_; }
    auto operator<=>(const Call&) const = default;

  private:
    std::string_view name_;
};

namespace calls {

namespace ArrayTools {
inline constexpr Call AddLong{"ArrayTools.AddLong"};
inline constexpr Call FindLong{"ArrayTools.FindLong"};
} // namespace ArrayTools

namespace Clock {
inline constexpr Call GetTimeZoneInformation{"Clock.GetTimeZoneInformation"};
inline constexpr Call Now{"Clock.Now"};
} // namespace Clock

namespace CommandLineTools {
inline constexpr Call GetSwitchValue{"CommandLineTools.GetSwitchValue"};
inline constexpr Call SetCommandLine{"CommandLineTools.SetCommandLine"};
inline constexpr Call SwitchExists{"CommandLineTools.SwitchExists"};
} // namespace CommandLineTools

namespace CompanyManager {
inline constexpr Call CanOpenCompany{"CompanyManager.CanOpenCompany"};
inline constexpr Call PreTerminate{"CompanyManager.PreTerminate"};
} // namespace CompanyManager

namespace Database {
inline constexpr Call ExecuteNonQuery{"Database.ExecuteNonQuery"};
inline constexpr Call ExecuteRead{"Database.ExecuteRead"};
inline constexpr Call ExecuteScaler{"Database.ExecuteScaler"};
inline constexpr Call LastSQLErrorDescription{"Database.LastSQLErrorDescription"};
} // namespace Database

namespace DirectoryCalls {
inline constexpr Call CompactPath{"DirectoryCalls.CompactPath"};
inline constexpr Call Find{"DirectoryCalls.Find"};
inline constexpr Call FindNetworkConnection{"DirectoryCalls.FindNetworkConnection"};
inline constexpr Call List{"DirectoryCalls.List"};
inline constexpr Call MakeDirectory{"DirectoryCalls.MakeDirectory"};
inline constexpr Call MatchesPattern{"DirectoryCalls.MatchesPattern"};
inline constexpr Call RemoveEmptyDirectory{"DirectoryCalls.RemoveEmptyDirectory"};
inline constexpr Call TemporaryPath{"DirectoryCalls.TemporaryPath"};
} // namespace DirectoryCalls

namespace DirectoryListing {
inline constexpr Call Next{"DirectoryListing.Next"};
} // namespace DirectoryListing

namespace Engine {
inline constexpr Call AddToExport{"Engine.AddToExport"};
inline constexpr Call ClearExports{"Engine.ClearExports"};
inline constexpr Call DoExport{"Engine.DoExport"};
inline constexpr Call ExportOrder{"Engine.ExportOrder"};
inline constexpr Call ImportFile{"Engine.ImportFile"};
inline constexpr Call Initialize{"Engine.Initialize"};
inline constexpr Call PreTerminate{"Engine.PreTerminate"};
inline constexpr Call SetIgnoreUnknownTables{"Engine.SetIgnoreUnknownTables"};
inline constexpr Call SetVerbose{"Engine.SetVerbose"};
} // namespace Engine

namespace FileManager {
inline constexpr Call GetRootFolderPath{"FileManager.GetRootFolderPath"};
inline constexpr Call Initialize{"FileManager.Initialize"};
inline constexpr Call PreTerminate{"FileManager.PreTerminate"};
} // namespace FileManager

namespace FileTools {
inline constexpr Call CopyFile{"FileTools.CopyFile"};
inline constexpr Call CreateTemporaryFile{"FileTools.CreateTemporaryFile"};
inline constexpr Call DeleteFile{"FileTools.DeleteFile"};
inline constexpr Call FileExists{"FileTools.FileExists"};
inline constexpr Call FileHasAttribute{"FileTools.FileHasAttribute"};
inline constexpr Call FileIsPresent{"FileTools.FileIsPresent"};
inline constexpr Call GetFileBaseName{"FileTools.GetFileBaseName"};
inline constexpr Call GetFileDate{"FileTools.GetFileDate"};
inline constexpr Call GetFileName{"FileTools.GetFileName"};
inline constexpr Call GetFileSize{"FileTools.GetFileSize"};
inline constexpr Call MoveFile{"FileTools.MoveFile"};
inline constexpr Call ToFileToken{"FileTools.ToFileToken"};
} // namespace FileTools

namespace FileVersions {
inline constexpr Call GetFileVersion{"FileVersions.GetFileVersion"};
} // namespace FileVersions

namespace IniTools {
inline constexpr Call GetValue{"IniTools.GetValue"};
inline constexpr Call SetValue{"IniTools.SetValue"};
} // namespace IniTools

namespace MessagePump {
inline constexpr Call ProcessMessages{"MessagePump.ProcessMessages"};
} // namespace MessagePump

namespace ObjectFactory {
inline constexpr Call CreateCompanyManager{"ObjectFactory.CreateCompanyManager"};
inline constexpr Call CreateEngine{"ObjectFactory.CreateEngine"};
inline constexpr Call CreateFileManager{"ObjectFactory.CreateFileManager"};
inline constexpr Call CreateSharedCodeLibrary{"ObjectFactory.CreateSharedCodeLibrary"};
inline constexpr Call CreateStanding{"ObjectFactory.CreateStanding"};
inline constexpr Call CreateUpgrader{"ObjectFactory.CreateUpgrader"};
inline constexpr Call CreateZipArchive{"ObjectFactory.CreateZipArchive"};
} // namespace ObjectFactory

namespace Options {
inline constexpr Call GetCompanyOption{"Options.GetCompanyOption"};
inline constexpr Call UserFileLocation{"Options.UserFileLocation"};
} // namespace Options

namespace PathTools {
inline constexpr Call CreateNestedFolder{"PathTools.CreateNestedFolder"};
inline constexpr Call CreateTemporaryFolder{"PathTools.CreateTemporaryFolder"};
inline constexpr Call DeleteFolder{"PathTools.DeleteFolder"};
inline constexpr Call FindFiles{"PathTools.FindFiles"};
inline constexpr Call FindFolders{"PathTools.FindFolders"};
inline constexpr Call FixPath{"PathTools.FixPath"};
inline constexpr Call FolderContainsFiles{"PathTools.FolderContainsFiles"};
inline constexpr Call FolderExists{"PathTools.FolderExists"};
inline constexpr Call GetTemporaryFolder{"PathTools.GetTemporaryFolder"};
inline constexpr Call SplitPath{"PathTools.SplitPath"};
inline constexpr Call SplitPath2{"PathTools.SplitPath2"};
} // namespace PathTools

namespace Processes {
inline constexpr Call Names{"Processes.Names"};
} // namespace Processes

namespace Profiles {
inline constexpr Call SetProfile{"Profiles.SetProfile"};
} // namespace Profiles

namespace ProgramFacts {
inline constexpr Call AnotherCopyIsRunning{"ProgramFacts.AnotherCopyIsRunning"};
inline constexpr Call ExecutableName{"ProgramFacts.ExecutableName"};
inline constexpr Call Folder{"ProgramFacts.Folder"};
inline constexpr Call Version{"ProgramFacts.Version"};
} // namespace ProgramFacts

namespace PsdFile {
inline constexpr Call ConnectionString{"PsdFile.ConnectionString"};
inline constexpr Call Load{"PsdFile.Load"};
} // namespace PsdFile

namespace RegistryTools {
inline constexpr Call GetLong{"RegistryTools.GetLong"};
inline constexpr Call GetString{"RegistryTools.GetString"};
inline constexpr Call SetLong{"RegistryTools.SetLong"};
inline constexpr Call SetString{"RegistryTools.SetString"};
} // namespace RegistryTools

namespace Security {
inline constexpr Call IsRoamingWorkstation{"Security.IsRoamingWorkstation"};
} // namespace Security

namespace SharedCodeLibrary {
inline constexpr Call OperatingMode{"SharedCodeLibrary.OperatingMode"};
inline constexpr Call PreTerminate{"SharedCodeLibrary.PreTerminate"};
inline constexpr Call QNDRSQL{"SharedCodeLibrary.QNDRSQL"};
inline constexpr Call RecordEvent{"SharedCodeLibrary.RecordEvent"};
inline constexpr Call SetConnectionString{"SharedCodeLibrary.SetConnectionString"};
inline constexpr Call SetOperatingMode{"SharedCodeLibrary.SetOperatingMode"};
inline constexpr Call SetPSDFile{"SharedCodeLibrary.SetPSDFile"};
} // namespace SharedCodeLibrary

namespace SpecialFolderTools {
inline constexpr Call GetFolderPath{"SpecialFolderTools.GetFolderPath"};
} // namespace SpecialFolderTools

namespace SqlConnection {
inline constexpr Call ExecuteNonQuery{"SqlConnection.ExecuteNonQuery"};
inline constexpr Call PreTerminate{"SqlConnection.PreTerminate"};
} // namespace SqlConnection

namespace Standing {
inline constexpr Call Exchange{"Standing.Exchange"};
inline constexpr Call Initialize{"Standing.Initialize"};
inline constexpr Call PreTerminate{"Standing.PreTerminate"};
} // namespace Standing

namespace StringArrayTools {
inline constexpr Call AddString{"StringArrayTools.AddString"};
inline constexpr Call FindString{"StringArrayTools.FindString"};
} // namespace StringArrayTools

namespace SystemTools {
inline constexpr Call GetComputerName{"SystemTools.GetComputerName"};
inline constexpr Call GetIdentifierText{"SystemTools.GetIdentifierText"};
} // namespace SystemTools

namespace TextAppender {
inline constexpr Call Append{"TextAppender.Append"};
} // namespace TextAppender

namespace TextFileTools {
inline constexpr Call WriteTextFile{"TextFileTools.WriteTextFile"};
} // namespace TextFileTools

namespace Upgrader {
inline constexpr Call LatestVersion{"Upgrader.LatestVersion"};
inline constexpr Call PreTerminate{"Upgrader.PreTerminate"};
} // namespace Upgrader

namespace WaitableTimers {
inline constexpr Call Create{"WaitableTimers.Create"};
} // namespace WaitableTimers

namespace ZipArchive {
inline constexpr Call AppendFiles{"ZipArchive.AppendFiles"};
inline constexpr Call CloseZip{"ZipArchive.CloseZip"};
inline constexpr Call GetEntryByName{"ZipArchive.GetEntryByName"};
inline constexpr Call LastErrorText{"ZipArchive.LastErrorText"};
inline constexpr Call NewZip{"ZipArchive.NewZip"};
inline constexpr Call OpenZip{"ZipArchive.OpenZip"};
inline constexpr Call WriteZipAndClose{"ZipArchive.WriteZipAndClose"};
} // namespace ZipArchive

namespace ZipEntry {
inline constexpr Call Extract{"ZipEntry.Extract"};
} // namespace ZipEntry

} // namespace calls
} // namespace qndr
