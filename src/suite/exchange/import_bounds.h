#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>

namespace qndr::suite {

/// How much of a file is looked at before it must show that it is one: files come out of a folder into which
/// anybody may write, and a hundred kilobytes of an archive unpack to a hundred megabytes. With these an import
/// stays within 64 MiB, whatever comes. docs/formats.md tells them to whoever writes files.
namespace bounds {
/// The text of a record: 18 MiB of bytes in base64. Both the text and the row that it becomes are in memory at
/// once.
inline constexpr std::size_t LargestRecord = 24U * 1024 * 1024;
/// From here on a record is alone in memory, and its room is given back behind it.
inline constexpr std::size_t LargeRecord = 1024 * 1024;
/// Elements of a record, those that are passed over included. No table has a tenth of it.
inline constexpr std::size_t MostElements = 1024;
/// Names that are not known here. The parser keeps each of them until the end of the file.
inline constexpr std::size_t MostStrangeNames = 4096;
inline constexpr std::size_t LongestName = 256;
/// Of a tag, with its attributes, or of a comment: the parser keeps it whole, and looks at it from its beginning
/// whenever more of it has come. The outermost tag holds lists of companies.
inline constexpr std::size_t LongestTag = 256 * 1024;
inline constexpr std::size_t LongestOutermostTag = 1024 * 1024;
/// What one file may leave behind in ImportProblems. It lies in the Deleted folder for three days besides.
inline constexpr std::int64_t MostProblems = 5'000;
inline constexpr std::size_t MostProblemBytes = 64U * 1024 * 1024;
/// The same for ImportConflicts, where each row that somebody overwrites again and again is kept as often.
inline constexpr std::int64_t MostConflicts = 100'000;
inline constexpr std::size_t MostConflictBytes = 256U * 1024 * 1024;
} // namespace bounds

/// Counts the names of elements and attributes that no table and no format knows.
class StrangeNames {
  public:
    /// False when there are too many of them by now, or when this one is too long.
    bool Admit(std::string_view name);
    /// The same for an element's attributes, which are pairs of a name and a value behind each other, as far as
    /// they are strange.
    bool AdmitAttributes(const char** attributes);

  private:
    std::set<std::string, std::less<>> names_;
};

} // namespace qndr::suite
