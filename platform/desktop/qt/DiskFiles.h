#pragma once

#include "platform/desktop/Desktop.h"

namespace desktop {

/// Files on disk. Paths may be written with backslashes; the last part of a path may differ in case.
class DiskFiles : public Files
{
public:
    bool exists(const QString &path) const override;
    QStringList list(const QString &pattern) const override;
    QString shortPath(const QString &path) const override;
};

} // namespace desktop
