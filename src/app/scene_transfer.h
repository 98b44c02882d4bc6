#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace app {

/// Runs one command line through the system's shell, blocks until it has ended, and returns its exit status.
using CommandRunner = std::function<std::int32_t(const std::string &commandLine)>;

/// Moves the whole scene store between machines as one archive. Both run a command line through the shell and
/// block until it has ended, whatever its status. The paths in it are not quoted on purpose: a Documents
/// folder or a file name with a blank or a shell character breaks the command, and that is known and wanted.

/// Asks where to, and packs the store there as a zip archive with ".prs" behind the chosen name. Returns at
/// once and keeps `run`; the rest happens when the user has answered the panel. Nothing is shown on success
/// or failure.
void exportPresets(CommandRunner run);

/// Asks which ".prs" file, and unpacks it beneath the store's folder. An exported archive holds the store
/// folder itself, so its scenes arrive one level deeper than they lay: that is wanted. The tree in memory is
/// not reloaded, and the user is told to restart, whatever the command did.
void importPresets(const CommandRunner &run);

}  // namespace app
