// The database driver for dBASE files takes only folders with short names.
#include "util/modKurznameVon.h"

QString KurznameVon(const desktop::Files &dateien, const QString &pfad)
{
    return dateien.shortPath(pfad);
}
