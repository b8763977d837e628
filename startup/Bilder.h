#pragma once

#include <QString>

/// The file of a picture such as "bilder/icons/haupt.ico": in the program folder or, for an installed program, in
/// share/veldrak beside its bin. Empty if it is in neither.
QString bilddatei(const QString &programmordner, const QString &name);
