// Account numbers, and new accounts made from the template row.
#include "pck/clPCK.h"
#include "util/Zahlen.h"
#include "util/modClipBoard.h"

using namespace Qt::StringLiterals;

namespace {

/// Whether the template's value must not be taken: an empty one for the number and the type, which the new row already
/// has, or for a counter, which counts by itself.
bool bleibt(const dao::Field &feld, const QVariant &vorlage)
{
    const auto heisst = [&feld](const QString &name) { return feld.Name().compare(name, Qt::CaseInsensitive) == 0; };
    const bool vergeben
        = heisst(u"PersKtoNummer"_s) || heisst(u"PersKtoArt"_s) || (feld.Attributes() & dao::dbAutoIncrField) != 0;
    return vergeben && dao::textOf(vorlage).isEmpty();
}

} // namespace

QString clPCK::NeueNummer(qint16 Mandant, const QString &Typ, qint32 Start)
{
    const QString kandidat = Typ + QString::number(Start).rightJustified(6, u'0');
    const int art = Typnummer(Typ);
    QVariant mandant = Mandant;
    if (!open_Mandant(mandant))
        return keinZugriff.toString();

    const auto nummern = db().OpenRecordset(u"SELECT PersKtoNummer "_s + u" FROM sPersKto "_s + u" WHERE PersKtoArt="_s
                                            + QString::number(art) + u" "_s + u" AND PersKtoNummer >= '"_s + kandidat
                                            + u"' "_s + u" ORDER BY PersKtoNummer DESC"_s);
    QString nummer = kandidat;
    if (nummern->RecordCount() != 0) {
        nummern->MoveLast();
        if (dao::textOf(nummern->Fields(0).Value()) == kandidat) {
            nummern->MoveFirst();
            const double hoechste = Val(dao::textOf(nummern->Fields(0).Value()).mid(1));
            nummer = Typ + u"%1"_s.arg(CLng(hoechste + 1), 6, 10, QChar(u'0'));
        }
    }
    nummern->Close();
    return nummer;
}

bool clPCK::neueAdresse(const QString &Nummer, dao::Recordset &Vorlage)
{
    const auto vorhanden
        = db().OpenRecordset(u"Select PersKtoNummer FROM sPersKto WHERE PersKtoNummer = '"_s + Nummer + u"'"_s);
    const bool vergeben = vorhanden->RecordCount() != 0;
    vorhanden->Close();
    if (vergeben) {
        m_dienste.programm.MsgBox({u"Die Nummer "_s + Nummer + u" wurde schon vergeben."_s + u"\r\n"_s
                                   + u"Es muß eine neue Nummer bestimmt werden."_s});
        return false;
    }

    const QString sql = u"INSERT INTO sPersKto (PersKtoNummer,PersKtoArt) "_s + u"VALUES ("_s + u"'"_s + Nummer
        + u"',"_s + QString::number(Typnummer(Nummer.left(1))) + u");"_s;
    ClipBoardSetzen(m_dienste.zwischenablage, sql);
    db().Execute(sql);

    const auto konto = db().OpenRecordset(u"Select * from sPersKto where PersKtoNummer='"_s + Nummer + u"'"_s);
    if (konto->RecordCount() == 0) {
        m_dienste.programm.MsgBox(
            {u"Es konnte keine neue Adresse in sPersKto angelegt werden."_s + u"\r\n"_s + u"Nummer:"_s + Nummer,
             desktop::Icon::Critical});
        return false;
    }
    konto->Edit();
    uebernimmVorlage(*konto, Vorlage);
    konto->Fields(u"PersKtoAenderDatum"_s).setValue(m_dienste.uhr.Date().startOfDay());
    konto->Update();
    konto->Close();
    return true;
}

void clPCK::uebernimmVorlage(dao::Recordset &konto, dao::Recordset &Vorlage)
{
    QStringList bekannt;
    for (int i = 0; i < Vorlage.FieldCount(); ++i)
        bekannt += Vorlage.Fields(i).Name();

    for (int i = 0; i < konto.FieldCount(); ++i) {
        dao::Field &feld = konto.Fields(i);
        if (bekannt.contains(feld.Name())) {
            uebernimmFeld(i, feld, Vorlage);
            continue;
        }
        const QStringList hinweis = {
            u"Hinweis in der Klasse clPCK Methode neueAdresse"_s,
            u"Das Feld mit dem Namen '"_s + feld.Name() + u"' aus der Tabelle 'sPersKto' "_s,
            u"in der Mandantendatenbank '"_s + db().Name() + u"' wurde nicht in der MORVANE.PIZ-Datei gefunden."_s,
            u"Bitte wenden Sie sich an das VELDRAK-Projekt, damit die Datei angepaßt wird."_s,
            u""_s,
            u"Der aktuelle Vorgang wird weitergeführt."_s,
        };
        m_dienste.programm.MsgBox({hinweis.join(u"\r\n"_s), desktop::Icon::Information});
    }
}

void clPCK::uebernimmFeld(int i, dao::Field &feld, dao::Recordset &Vorlage)
{
    try {
        const QVariant wert = Vorlage.Fields(feld.Name()).Value();
        if (!bleibt(feld, wert))
            feld.setValue(wert);
    } catch (const dao::DaoError &fehler) {
        const QStringList meldung = {
            u"Fehler in Klasse clPCK Methode neueAdresse"_s,
            u"Fehlernummer: "_s + QString::number(fehler.Number()),
            u"Fehlerbeschreibung: "_s + fehler.Description(),
            u""_s,
            u"Feldindex : "_s + QString::number(i),
            u"Feldname rsX(PCK): "_s + feld.Name(),
            u"Feldtyp  rsX(PCK): "_s + QString::number(feld.Type()),
        };
        m_dienste.programm.MsgBox({meldung.join(u"\r\n"_s), desktop::Icon::Exclamation});
    }
}

int clPCK::Typnummer(const QString &Typ)
{
    if (Typ == u"D"_s)
        return 68;
    if (Typ == u"K"_s)
        return 75;
    if (Typ == u"M"_s)
        return 77;
    if (Typ == u"A"_s)
        return 82; // not its letter's code: that is what the clients hold for it
    return 0;
}
