#pragma once

#include <optional>

#include <QStringList>

/// Answers the command line, for which there need be no display. The exit code if the program is done with that.
std::optional<int> beantworteBefehlszeile(const QStringList &woerter);
