#pragma once

#include <filesystem>
#include <string_view>
#include <system_error>

/// Files that are replaced as a whole, and folders whose changes outlast a power cut. While a file is
/// written, a temporary file lies beside it, under a name that no room's file can have. It has one from the
/// start, since a file without a name (O_TMPFILE) cannot take the place of another.
namespace scenes {

/// Writes `text` to a temporary file that then takes the place of `path`: until then the old file stays
/// whole, and it does so on failure. The new file has the old one's access mode; an old file that this user
/// may not write is not replaced. A link at `path` is replaced, not followed. Blocks until the text is on
/// disk.
[[nodiscard]] std::error_code replaceFile(const std::filesystem::path &path, std::string_view text);

/// Blocks until what was made, renamed or removed in `folder` is so on disk. A folder that cannot be told to
/// write keeps the old or the new names when the power fails.
void flushFolder(const std::filesystem::path &folder);

/// Removes the temporary files that killed programs have left in `folder` and in the folders below it.
/// Follows no link below `folder` and removes no other file. One that a running program has locked stays; one
/// that it has just made, or locks out of our sight, may go, and replaceFile() writes that one again. Where
/// a disk has no locks, one that is a day old goes.
void removeAbandonedFiles(const std::filesystem::path &folder);

}  // namespace scenes
