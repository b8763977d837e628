// The reader of VELDRAK.ini.
#include "util/iniDatei.h"

#include <algorithm>
#include <span>

#include <QFile>
#include <QStringList>

#include "platform/errors/RunTimeError.h"
#include "platform/storage/Codepage.h"
#include "platform/storage/LocalPath.h"

using namespace Qt::StringLiterals;

namespace {

bool istSektion(const QString &zeile)
{
    return zeile.startsWith(u'[') && zeile.endsWith(u']');
}

bool istSchluesselzeile(const QString &zeile)
{
    return !istSektion(zeile) && zeile.indexOf(u'=') >= 1;
}

QStringList zeilenVon(const QString &pfad)
{
    QFile datei(storage::existingPath(storage::localPath(pfad)));
    if (!datei.open(QIODevice::ReadOnly))
        throw RunTimeError(RunTimeError::DeviceFailed, u"%1: %2"_s.arg(pfad, datei.errorString()));
    const QByteArray bytes = datei.readAll();
    QString text = storage::windows1252.decode(std::as_bytes(std::span(bytes.constData(), std::size_t(bytes.size()))));
    QStringList zeilen = text.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n').split(u'\n');
    for (QString &zeile : zeilen)
        zeile = iniDatei::KommentarEntfernen(zeile);
    return zeilen;
}

} // namespace

iniDatei::iniDatei(const desktop::Files &dateien)
    : m_dateien(dateien)
{ }

bool iniDatei::IniLaden(const QString &pfad)
{
    if (!m_dateien.exists(pfad))
        return false;
    const QStringList zeilen = zeilenVon(pfad);
    if (std::none_of(zeilen.begin(), zeilen.end(), istSchluesselzeile))
        return false;

    m_sektionen.clear();
    for (const QString &zeile : zeilen) {
        if (istSektion(zeile)) {
            m_sektionen.push_back({zeile.mid(1, zeile.size() - 2), {}});
        } else if (istSchluesselzeile(zeile)) {
            if (m_sektionen.empty())
                throw RunTimeError(RunTimeError::SubscriptOutOfRange);
            const qsizetype gleich = zeile.indexOf(u'=');
            m_sektionen.back().eintraege.push_back({zeile.left(gleich).trimmed(), zeile.mid(gleich + 1).trimmed()});
        }
    }
    return true;
}

QString iniDatei::IniLesen(QString &sektion, QString &schluessel) const
{
    sektion = sektion.trimmed();
    schluessel = schluessel.trimmed();
    for (const Sektion &eine : m_sektionen) {
        if (eine.name != sektion)
            continue;
        for (const Eintrag &eintrag : eine.eintraege) {
            if (eintrag.schluessel == schluessel)
                return eintrag.wert;
        }
    }
    return {};
}

QString iniDatei::KommentarEntfernen(const QString &zeile)
{
    const qsizetype kommentar = zeile.indexOf(u'\'');
    return (kommentar < 0 ? zeile : zeile.left(kommentar)).trimmed();
}
