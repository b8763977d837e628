// Generated files to measure on.
#include "bench/Bestand.h"

#include <QDir>
#include <QFile>

#include "platform/dao/embedded/EmbeddedEngine.h"
#include "platform/dbf/DbfDriver.h"

using namespace Qt::StringLiterals;

namespace {

// One company in ten has three contacts; names repeat only through their numbers.
beispiel::Person person(int nr)
{
    static const QStringList firmen
        = {u"Bäckerei"_s, u"Maschinenbau"_s, u"Druckerei"_s, u"Spedition"_s, u"Gärtnerei"_s};
    const int firma = nr % 10 < 3 ? nr / 10 * 10 : nr;
    beispiel::Person eine{u"B%1"_s.arg(nr, 11, 10, QLatin1Char('0'))};
    eine.firma = u"%1 Nr. %2 GmbH & Co. KG"_s.arg(firmen[firma % firmen.size()]).arg(firma);
    eine.vorname = u"Vorname%1"_s.arg(nr % 97);
    eine.nachname = u"Nachname%1"_s.arg(nr % 1009);
    eine.strasse = u"Hauptstraße %1"_s.arg(nr % 200);
    eine.plz = QString::number(10000 + nr % 80000);
    eine.ort = u"Ort %1"_s.arg(nr % 500);
    eine.telefon = u"49|40|@@@@AD555%1"_s.arg(nr % 10000, 4, 10, QLatin1Char('0'));
    return eine;
}

void fuelleAuf(const QString &ordner, int ab, int bis)
{
    const auto datenbank = dbf::DbfDriver().open({ordner});
    storage::Table &tabelle = *datenbank->table(u"KONTAKTE"_s);
    const auto schreibend = datenbank->beginWrite();
    const auto spalte = [&tabelle](const QString &name) { return tabelle.schema().find(name).value(); };
    for (int nr = ab; nr < bis; ++nr) {
        const beispiel::Person eine = person(nr);
        const storage::Assignment werte[] = {
            {spalte(u"UNIQUE_ID"_s), eine.id},      {spalte(u"COMPANY"_s), eine.firma},
            {spalte(u"CONTACT"_s), eine.nachname},  {spalte(u"FIRSTNAME"_s), eine.vorname},
            {spalte(u"LASTNAME"_s), eine.nachname}, {spalte(u"STREET"_s), eine.strasse},
            {spalte(u"ZIP"_s), eine.plz},           {spalte(u"CITY"_s), eine.ort},
            {spalte(u"TELEFON"_s), eine.telefon},
        };
        tabelle.insert(werte);
    }
    schreibend->commit();
}

} // namespace

Bestand::Bestand(int kontakte)
    : engine(dao::makeEmbeddedEngine())
{
    beispiel::erzeugeMapping(*engine, ordner());
    QDir(ordner()).mkpath(u"PCK"_s);
    beispiel::erzeugeMandant(*engine, pfad(u"PCK/Muster.PCK"_s));
    beispiel::erzeugeIni(ordner(), pfad(u"PCK/"_s));
    konfiguration = beispiel::konfiguration(pfad(u"PCK/"_s));

    const beispiel::Person erste = person(0);
    m_tabelle = beispiel::erzeugeKontakttabelle(*engine, ordner(), {erste});
    fuelleAuf(ordner(), 1, kontakte);
    act.contacts = {beispiel::alsAct(erste)};
    act.databasePath = m_tabelle;

    QDir(ordner()).mkpath(u"bilder/icons"_s);
    for (const QString &icon : {u"unbek.ico"_s, u"neben.ico"_s, u"haupt.ico"_s})
        QFile::copy(QStringLiteral(VELDRAK_ICONS) + u'/' + icon, pfad(u"bilder/icons/"_s + icon));
}
