#pragma once

#include <QString>

#include "demo/Clients.h"
#include "platform/dao/Dao.h"

/// The sample databases, made through the object model alone. Errors are DaoError.
namespace demo {

/// The mapping with its template row, protected by the program's own access value.
void createMapping(dao::DBEngine &engine, const QString &path);

void createClient(dao::DBEngine &engine, const Client &client, const QString &path);

/// The contact table in an existing folder, named KONTAKTE.
void createContactTable(dao::DBEngine &engine, const QString &folder);

} // namespace demo
