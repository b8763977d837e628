// The reader of VELDRAK.ini.
#include "util/iniDatei.h"

#include <algorithm>

#include <QStringConverter>
#include <QStringList>

#include "platform/errors/RunTimeError.h"
#include "platform/storage/Codepage.h"
#include "platform/storage/FileSystem.h"
#include "platform/storage/LocalPath.h"
#include "platform/storage/StorageError.h"
#include "util/Zeichenketten.h"

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

RunTimeError fehlerIn(const QString &pfad, qsizetype zeile, int nummer, const QString &text)
{
    return {nummer, u"%1, Zeile %2: %3"_s.arg(pfad, QString::number(zeile), text)};
}

QByteArray inhaltVon(const QString &pfad)
{
    try {
        return storage::readWholeFile(storage::existingPath(storage::localPath(pfad)));
    } catch (const storage::StorageError &fehler) {
        const bool verboten = fehler.kind() == storage::StorageError::NoPermission;
        throw RunTimeError(verboten ? RunTimeError::PathAccess : RunTimeError::DeviceFailed, fehler.text());
    }
}

/// In the encoding that a byte order mark names, else in Windows-1252.
QString dekodiert(const QByteArray &bytes)
{
    const auto kodierung = QStringConverter::encodingForData(bytes);
    if (!kodierung)
        return storage::windows1252.decode(storage::bytesOf(bytes));
    return QStringDecoder(*kodierung, QStringConverter::Flag::Stateless)(bytes);
}

QStringList zeilenVon(const QString &pfad)
{
    QStringList zeilen = dekodiert(inhaltVon(pfad)).replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n').split(u'\n');
    for (qsizetype i = 0; i < zeilen.size(); ++i) {
        // What the decoder leaves of bytes that mean nothing, and what UTF-16 without its mark is full of.
        if (zeilen[i].contains(QChar::ReplacementCharacter) || zeilen[i].contains(QChar::Null)) {
            throw fehlerIn(pfad, i + 1, RunTimeError::InvalidFileFormat,
                           u"Der Text ist nicht lesbar. Die Datei muß als Windows-1252 oder mit "
                           "Byte-Reihenfolge-Marke (BOM) als UTF-8 oder UTF-16 gespeichert sein."_s);
        }
        zeilen[i] = iniDatei::KommentarEntfernen(zeilen[i]);
    }
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
    for (qsizetype i = 0; i < zeilen.size(); ++i) {
        const QString &zeile = zeilen[i];
        if (istSektion(zeile)) {
            m_sektionen.push_back({zeile.mid(1, zeile.size() - 2), {}});
        } else if (istSchluesselzeile(zeile)) {
            const qsizetype gleich = zeile.indexOf(u'=');
            const Eintrag eintrag{Trim(zeile.left(gleich)), Trim(zeile.mid(gleich + 1))};
            if (m_sektionen.empty()) {
                throw fehlerIn(pfad, i + 1, RunTimeError::SubscriptOutOfRange,
                               u"Der Schlüssel „%1“ steht vor dem ersten Abschnitt."_s.arg(eintrag.schluessel));
            }
            m_sektionen.back().eintraege.push_back(eintrag);
        }
    }
    return true;
}

QString iniDatei::IniLesen(QString &sektion, QString &schluessel) const
{
    sektion = Trim(sektion);
    schluessel = Trim(schluessel);
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
    return Trim(kommentar < 0 ? zeile : zeile.left(kommentar));
}
