#pragma once

#include <QString>

/// The database credentials. They are stored as scrambled constants only and put together when asked for.
namespace coding {

/// Undoes the shifting of a scrambled text.
QString entschluesselt(const QString &text);

QString workgroupDatei(); ///< name of the workgroup information file, 12 characters
QString benutzer(); ///< the engine's and the client workspace's account, 11 characters
QString kennwort(); ///< that account's password, 7 characters
QString mappingZugriff(); ///< access value of the mapping database, 12 characters

} // namespace coding
