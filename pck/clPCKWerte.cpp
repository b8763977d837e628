// Values of accounts and their communication entries, one statement each.
#include "pck/clPCK.h"
#include "util/Zahlen.h"
#include "util/modClipBoard.h"

using namespace Qt::StringLiterals;

namespace {

/// Brings a kind of entry to the known one that it contains, the last in this order if there are several. Its type.
int normalisiert(QString &art)
{
    struct Bekannt {
        QStringView wort;
        QStringView art;
        int typ;
    };
    constexpr Bekannt alle[] = {
        {u"Telefon", u"Telefon", 0},
        {u"Handy", u"Mobil", 0},
        {u"Fax", u"Fax", 1},
        {u"Email", u"Email", 2},
    };
    const QString gegeben = art;
    int typ = 0;
    for (const Bekannt &eine : alle) {
        if (gegeben.contains(eine.wort)) {
            art = eine.art.toString();
            typ = eine.typ;
        }
    }
    return typ;
}

} // namespace

void clPCK::setzeWert(const QString &Tabelle, const QString &Feld, const QVariant &Wert, const QString &Bedingung)
{
    if (!offenOderGemeldet())
        return;
    QString wert = dao::textOf(Wert);
    if (Wert.typeId() == QMetaType::QString)
        wert = u"'"_s + wert.replace(u"'"_s, u"''"_s) + u"'"_s;
    const QString sql = u"UPDATE "_s + Tabelle + u" SET "_s + Feld + u"="_s + wert + u" WHERE "_s + Bedingung;
    ClipBoardSetzen(m_dienste.zwischenablage, sql);
    try {
        db().Execute(sql);
    } catch (const dao::DaoError &fehler) {
        ClipBoardSetzen(m_dienste.zwischenablage, sql);
        const QStringList meldung = {
            u"Fehler in Klasse "_s + u"clPCK"_s + u" Methode setzeWert"_s,
            u"Fehlernummer: "_s + QString::number(fehler.Number()),
            u"Fehlerbeschreibung:"_s + fehler.Description(),
            u"SQL-String:"_s + sql,
            u"Der SQL-String liegt jetzt in der Zwischenablage."_s,
        };
        m_dienste.programm.MsgBox({meldung.join(u"\r\n"_s), desktop::Icon::Exclamation});
    }
}

void clPCK::neuerAnsprechpartnerWert(const QString &Nummer, const QString &Ansprech, QString &Art, const QString &Wert)
{
    const int typ = normalisiert(Art);
    const auto vorhandene
        = db().OpenRecordset(u"SELECT PersKommLfdNr "_s + u"FROM sPersKom "_s + u"WHERE PersKommNummer='"_s + Nummer
                             + u"' "_s + u"ORDER BY PersKommLfdNr DESC"_s);
    const int lfdNr = vorhandene->RecordCount() != 0 ? vorhandene->Fields(0).Value().toInt() + 1 : 1;

    const QString sql = u"INSERT INTO sPersKom ("_s + u"PersKommNummer,"_s + u"PersKommLfdNr,"_s + u"PersKommName,"_s
        + u"PersKommNr,"_s + u"PersKommAnsprech,"_s + u"PersKommTyp) "_s + u"VALUES ("_s + u"'"_s + Nummer + u"',"_s
        + QString::number(lfdNr) + u","_s + u"'"_s + Art + u"',"_s + u"'"_s + Wert + u"',"_s + u"'"_s + Ansprech
        + u"',"_s + QString::number(typ) + u");"_s;
    ClipBoardSetzen(m_dienste.zwischenablage, sql);
    db().Execute(sql);
    vorhandene->Close();
}
