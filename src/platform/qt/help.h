#pragma once

#include <QCoreApplication>
#include <QString>

/// Help beside the program, as the package installs it. `programs` is the folder of this program, from which
/// the rest is found. What is missing ends in an alert that says so.
namespace platform {

/// Asks for the manual in the user's browser.
void openManual(const QString &programs = QCoreApplication::applicationDirPath());

/// Starts the self-check as a program of its own, which stays when this one ends: the one in `programs`, else
/// the first in PATH.
void startSelfCheck(const QString &programs = QCoreApplication::applicationDirPath());

}  // namespace platform
