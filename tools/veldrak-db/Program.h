#pragma once

#include <QStringList>

/// Runs the command that the words (without the program's name) call for. Returns the exit code.
int runProgram(const QStringList &words);
