#pragma once

#include <QStringList>

/// Who made the program, as far as that can be said: there is no company and no postal address behind it.
namespace Hersteller {

/// The web line for a page; without one it says where to look.
QString webzeile(const QString &seite);

/// The web line of this build, which was told what page it is published on (VELDRAK_PROJEKTSEITE), or not.
QString internet();

/// Name, address, e-mail and web lines.
QStringList zeilen();

} // namespace Hersteller
