#pragma once

#include <QString>

#include "platform/desktop/Desktop.h"

/// The 8.3 short form of a path, at most 254 characters of it; where the file system has no short names, the path.
QString KurznameVon(const desktop::Files &dateien, const QString &pfad);
