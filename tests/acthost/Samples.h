#pragma once

#include <QString>

/// Makes a contact table KONTAKTE.DBF with its list of fields in a new folder. Three contacts: "id-1" is a person with
/// a stored phone number, "kurz" one with a plain number and without a company, "id-3" a third.
/// Returns the table's path.
QString makeContacts(const QString &folder);
