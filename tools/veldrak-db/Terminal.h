#pragma once

#include <QString>

/// What only a terminal can do.
namespace terminal {

/// Whether somebody reads the error output.
bool showsMessages();

/// Whether somebody types the input.
bool hasInput();

/// Asks on the terminal and reads a line that does not show. Throws StorageError::InputOutput without a terminal.
QString askPassword(const QString &question);

} // namespace terminal
