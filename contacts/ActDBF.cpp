// The direct search: one query on the dBASE tables of the database that is open in ACT!.
#include "contacts/ActDBF.h"

#include <algorithm>

#include <QStringList>

#include "util/modClipBoard.h"
#include "util/modKurznameVon.h"

using namespace Qt::StringLiterals;

ActDBF::ActDBF(Programmlauf &programm, const Konfiguration &konfiguration, const clSyncFelder &SyncFelder,
               dao::DBEngine &engine, const desktop::Files &dateien, desktop::Clipboard &zwischenablage)
    : m_programm(programm)
    , m_konfiguration(konfiguration)
    , m_SyncFelder(SyncFelder)
    , m_engine(engine)
    , m_dateien(dateien)
    , m_zwischenablage(zwischenablage)
{ }

QString ActDBF::GrossKleinMuster(const QString &text)
{
    const auto zwischen = [](char16_t c, int von, int bis) { return c >= von && c <= bis; };
    QString muster;
    for (const QChar zeichen : text) {
        const char16_t c = zeichen.unicode();
        if (zwischen(c, 97, 122) || zwischen(c, 224, 253))
            muster += u'[' + zeichen + QChar(c - 32) + u']';
        else if (zwischen(c, 65, 90) || zwischen(c, 192, 221))
            muster += u'[' + zeichen + QChar(c + 32) + u']';
        else
            muster += zeichen;
    }
    return muster;
}

std::shared_ptr<dao::Recordset> ActDBF::SucheInActDB(AutomationObject &ActApp, QString &suchtext,
                                                     const QString &mandant, const QString &nummer)
{
    suchtext = GrossKleinMuster(suchtext);
    const QString name = KurznameVon(m_dateien, ActApp.call(u"getopendbname"_s).toString());
    const qsizetype trenner = std::max(name.lastIndexOf(u'\\'), name.lastIndexOf(u'/'));
    const QString ordner = name.left(trenner);
    QString tabelle = name.mid(trenner + 1);
    tabelle.chop(4); // the extension; the contact table is called like the database's main file

    try {
        m_ActDB = m_engine.OpenDatabase(ordner, 0, false, u"FoxPro 2.6;"_s);
    } catch (const dao::DaoError &) { // the box is all that is said about it
        m_programm.MsgBox({u"Konnte Ihre ACT!-Datenbank nicht öffnen !"_s});
        m_programm.ProgrammEnde();
    }

    const QString sql = abfrage(tabelle, suchtext, mandant, nummer);
    try {
        return m_ActDB->OpenRecordset(sql);
    } catch (const dao::DaoError &fehler) {
        meldeFehler(name, sql, fehler);
    }
}

QString ActDBF::abfrage(const QString &tabelle, const QString &suchmuster, const QString &mandant,
                        const QString &nummer) const
{
    const QString t = u"["_s + tabelle + u"]."_s;
    QString sql = u"SELECT ["_s + tabelle + u"].UNIQUE_ID,"_s;
    sql += t + m_konfiguration.IdMandantName + u","_s + t + m_konfiguration.IdNummerName + u","_s + t
        + m_konfiguration.IdTypName;
    for (qint16 i = 1; i <= m_SyncFelder.FelderAnzahl(); ++i)
        sql += u","_s + t + m_SyncFelder.ActFeldname(i);
    sql += u" FROM ["_s + tabelle + u"] "_s + u" WHERE ("_s;
    sql += t + m_konfiguration.IdSuchFeld1Name + u" Like '*"_s + suchmuster + u"*' Or "_s;
    sql += t + m_konfiguration.IdSuchFeld2Name + u" Like '*"_s + suchmuster + u"*' Or ("_s;
    sql += t + m_konfiguration.IdMandantName + u" = '"_s + mandant + u"'  AND "_s;
    sql += t + m_konfiguration.IdNummerName + u" = '"_s + nummer + u"' ))"_s;
    return sql;
}

void ActDBF::meldeFehler(const QString &name, const QString &sql, const dao::DaoError &fehler)
{
    const QStringList zeilen = {
        u"Es ist ein Fehler beim Zugriff auf die ACT!-Datenbank aufgetreten."_s,
        u"Mögliche Ursachen für den Fehler:"_s,
        u"- Der Name Ihrer ACT!-Datenbank ("_s + name + u") ist nicht alphanummerisch."_s,
        u"  Bitte nennen Sie Ihre ACT!-Datenbank um."_s,
        u"- Die Felder IDs in der VELDRAK.ini sind falsch."_s,
        u"- Die PCK-Benutzerfelder sind nicht vom Typ Zeichenkette (String)"_s,
        u"Fehlercode: "_s + QString::number(fehler.Number()) + u": "_s + fehler.Description(),
    };
    m_programm.MsgBox({zeilen.join(u"\r\n"_s), desktop::Icon::Exclamation});
    ClipBoardSetzen(m_zwischenablage, sql);
    m_programm.ProgrammEnde();
}

void ActDBF::schliessen()
{
    if (m_ActDB)
        m_ActDB->Close();
    m_ActDB.reset();
}
