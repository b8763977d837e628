#pragma once

#include "platform/desktop/Desktop.h"

namespace desktop {

/// Choices in <configuration folder of the user>/<application>/Einstellungen.ini, one ini section per section.
/// Throws RunTimeError when that file cannot be read or written; a file that does not exist is merely empty.
class IniSettings : public SettingsStore
{
public:
    QString get(const QString &application, const QString &section, const QString &key,
                const QString &otherwise) const override;
    void save(const QString &application, const QString &section, const QString &key, const QString &value) override;
};

} // namespace desktop
