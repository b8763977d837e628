#pragma once

#include <QStringList>

#include "demo/DemoFolder.h"
#include "platform/dao/Dao.h"

namespace demo {

/// What the files say about contacts: their fields, and for each account they belong to its row in sPersKto and its
/// entries in sPersKom. German text, one value a line ("PersKtoName = ..."), Null as "Null".
///
/// Opens everything read-only. Throws RunTimeError for an unknown contact, DaoError for files that cannot be read.
QString report(dao::DBEngine &engine, const DemoFolder &folder, const QStringList &contactIds);

} // namespace demo
