#pragma once

#include <QStringList>

/// Who made the program, as far as that can be said: there is no company and no postal address behind it.
namespace Hersteller {

/// The web page that this build is published on, as the build was told (VELDRAK_PROJEKTSEITE); otherwise where to look.
QString internet();

/// Name, address, e-mail and web lines.
QStringList zeilen();

} // namespace Hersteller
