// What a client offers to choose from. The price lists leave their errors to the caller, the currencies show them.
#include "pck/clPCK.h"

#include <optional>

#include "util/Zeichenketten.h"

using namespace Qt::StringLiterals;

namespace {

const QString keineWaehrung = u"0 - Fehler!"_s;
const QString inWaehrung = u"Fehler in Klasse clPCK, Modul Waehrung"_s;

int zeilenzahl(dao::Recordset &zeilen)
{
    if (zeilen.RecordCount() != 0)
        zeilen.MoveLast();
    return zeilen.RecordCount();
}

// The entry of row `index`, counted from 0; nothing if the rows end before it.
std::optional<QString> waehrungAn(dao::Recordset &waehrungen, int index)
{
    waehrungen.MoveFirst();
    for (int nr = 0; !waehrungen.Eof(); waehrungen.MoveNext(), ++nr) {
        if (nr == index) {
            return dao::textOf(waehrungen.Fields(u"WhrgNr"_s).Value()) + u" - "_s
                + dao::textOf(waehrungen.Fields(u"WhrgName"_s).Value());
        }
    }
    return std::nullopt;
}

QString fehlerzeilen(const QString &wo, const RunTimeError &fehler)
{
    return wo + u"\r\n"_s + u"Fehlernummer:"_s + QString::number(fehler.Number()) + u"\r\n"_s + u"Fehlerbeschreibung:"_s
        + fehler.Description();
}

} // namespace

QVariant clPCK::Anzahl_Preislisten()
{
    if (!offenOderGemeldet())
        return {};
    const auto listen = db().OpenRecordset(u"Select SchlbezTyp FROM sSchlbez WHERE SchlbezTyp = 20"_s);
    const int anzahl = zeilenzahl(*listen);
    listen->Close();
    return anzahl;
}

QString clPCK::Preisliste(qint16 Index)
{
    if (!offenOderGemeldet())
        return {};
    const auto listen = db().OpenRecordset(u"Select SchlbezNr,SchlbezBez FROM sSchlbez WHERE SchlbezTyp = 20"_s);
    QString liste;
    if (Index < zeilenzahl(*listen)) {
        listen->MoveFirst();
        for (int i = 0; i < Index; ++i)
            listen->MoveNext();
        liste = Trim(dao::textOf(listen->Fields(u"SchlbezNR"_s).Value())) + u" - "_s
            + dao::textOf(listen->Fields(u"SchlbezBez"_s).Value());
    }
    listen->Close();
    return liste;
}

QString clPCK::Preisgruppe(qint16 Nummer)
{
    if (!offenOderGemeldet())
        return {};
    const auto gruppen = db().OpenRecordset(u"Select FKAbfPreisGrp"_s + QString::number(Nummer) + u" FROM SABFKons"_s);
    const QString gruppe = gruppen->RecordCount() != 0 ? dao::textOf(gruppen->Fields(0).Value()) : u"Keine"_s;
    gruppen->Close();
    return gruppe;
}

QVariant clPCK::Anzahl_Waehrungen()
{
    if (!offenOderGemeldet())
        return {};
    try {
        const auto waehrungen = db().OpenRecordset(u"Select * FROM Waehrung"_s);
        const int anzahl = zeilenzahl(*waehrungen);
        waehrungen->Close();
        return anzahl;
    } catch (const dao::DaoError &fehler) {
        m_dienste.programm.MsgBox(
            {fehlerzeilen(u"Fehler in Klasse clPCK, Modul Anzahl_Waehrungen"_s, fehler), desktop::Icon::Exclamation});
        return {};
    }
}

QString clPCK::Waehrung(qint16 Index)
{
    if (!offenOderGemeldet())
        return {};
    std::shared_ptr<dao::Recordset> waehrungen;
    try {
        waehrungen = db().OpenRecordset(u"Select WhrgNr,WhrgName FROM Waehrung ORDER BY WhrgNr"_s);
    } catch (const dao::DaoError &fehler) {
        m_dienste.programm.MsgBox({fehlerzeilen(inWaehrung, fehler), desktop::Icon::Exclamation});
        return keineWaehrung;
    }
    const int anzahl = zeilenzahl(*waehrungen);
    QString waehrung = keineWaehrung;
    QString beanstandung;
    if (anzahl == 0) {
        // nothing to choose from is no fault
    } else if (Index > anzahl - 1) {
        beanstandung = u"Fehlerbeschreibung: Index ist zu groß"_s;
    } else if (const auto gefunden = waehrungAn(*waehrungen, Index)) {
        waehrung = *gefunden;
    } else {
        beanstandung = u"Fehlerbeschreibung: Index ist falsch"_s;
    }
    waehrungen->Close();
    if (!beanstandung.isEmpty()) {
        m_dienste.programm.MsgBox({inWaehrung + u"\r\n"_s + beanstandung, desktop::Icon::Exclamation});
    }
    return waehrung;
}
