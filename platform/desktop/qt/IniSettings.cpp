// The user's remembered choices in an ini file.
#include "platform/desktop/qt/IniSettings.h"

#include <QSettings>
#include <QStandardPaths>

#include "platform/errors/RunTimeError.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kPathOrFileAccess = 75;

QString fileOf(const QString &application)
{
    return u"%1/%2/Einstellungen.ini"_s.arg(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation),
                                            application);
}

void requireHealthy(const QSettings &settings, const QString &what)
{
    if (settings.status() != QSettings::NoError)
        throw RunTimeError(kPathOrFileAccess, u"%1: %2"_s.arg(what, settings.fileName()));
}

} // namespace

namespace desktop {

QString IniSettings::get(const QString &application, const QString &section, const QString &key,
                         const QString &otherwise) const
{
    const QSettings settings(fileOf(application), QSettings::IniFormat);
    requireHealthy(settings, u"Die Einstellungen können nicht gelesen werden"_s);
    return settings.value(u"%1/%2"_s.arg(section, key), otherwise).toString();
}

void IniSettings::save(const QString &application, const QString &section, const QString &key, const QString &value)
{
    QSettings settings(fileOf(application), QSettings::IniFormat);
    settings.setValue(u"%1/%2"_s.arg(section, key), value);
    settings.sync();
    requireHealthy(settings, u"Die Einstellungen können nicht gespeichert werden"_s);
}

} // namespace desktop
