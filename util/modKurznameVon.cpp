// The database driver for dBASE files takes only folders with short names.
#include "util/modKurznameVon.h"

namespace {

constexpr qsizetype laengsterKurzname = 254; // a buffer of 255 characters, the last of which ends the text

} // namespace

QString KurznameVon(const desktop::Files &dateien, const QString &pfad)
{
    return dateien.shortPath(pfad).left(laengsterKurzname);
}
