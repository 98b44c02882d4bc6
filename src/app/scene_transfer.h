#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>

/// Moves the whole scene store between machines as one archive. Both run a command line through the shell and
/// block until it has ended, whatever its status. The paths in it are not quoted on purpose: a Documents
/// folder or a file name with a blank or a shell character breaks the command, and that is known and wanted.

/// Asks where to, and packs the store there as a zip archive with ".prs" behind the chosen name. Returns at
/// once; the rest happens when the user has answered the panel. Nothing is shown on success or failure.
void exportPresets();

/// Asks which ".prs" file, and unpacks it beneath the store's folder. An exported archive holds the store
/// folder itself, so its scenes arrive one level deeper than they lay: that is wanted. The tree in memory is
/// not reloaded, and the user is told to restart, whatever the command did.
void importPresets();

/// Runs `arguments` through the shell (the first is the script); its exit status.
std::int32_t shell(std::initializer_list<std::string> arguments);
