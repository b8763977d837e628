#pragma once

#include <QString>

/// The file of a picture: in bilder/icons of the program folder or, for an installed program, of share/veldrak beside
/// its bin. Empty if it is in neither.
QString bilddatei(const QString &programmordner, const QString &name);
