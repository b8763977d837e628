// Answers every question about which ACT! field goes to which PC-Kaufmann column, one small query each.
#include "mapping/clSyncFelder.h"

#include "util/Zahlen.h"
#include "util/Zeichenketten.h"

using namespace Qt::StringLiterals;

namespace {

const QString nichtGefunden = u"ERROR"_s;

bool istName(const QVariant &schluessel)
{
    return schluessel.typeId() == QMetaType::QString;
}

// The three spellings of a field are columns; a name is looked for in the two that the caller did not ask for.
QString nachName(const QString &auswahl, const QString &bedingung1, const QString &bedingung2,
                 const QVariant &schluessel)
{
    const QString name = schluessel.toString();
    return auswahl + bedingung1 + name + u"'"_s + bedingung2 + name + u"'"_s;
}

} // namespace

clSyncFelder::clSyncFelder(dao::DBEngine &engine)
    : m_engine(engine)
{ }

void clSyncFelder::init(const QString &Pfad, const QString &Passwort)
{
    m_MappingPfad = Pfad;
    m_db = m_engine.OpenDatabase(m_MappingPfad, 0, true, u";DATABASE="_s + m_MappingPfad + u";PWD="_s + Passwort);
    const auto felder = m_db->OpenRecordset(u"Felder"_s);
    felder->MoveLast();
    m_FelderAnzahl = CInt(felder->RecordCount());
    felder->MoveFirst();
    felder->Close();
}

void clSyncFelder::Kill()
{
    db().Close();
    m_db.reset();
}

QString clSyncFelder::ActFeldname(const QVariant &schluessel) const
{
    return text(istName(schluessel) ? nachName(u"SELECT Act_FeldName FROM Felder "_s, u" WHERE PCK_Feldname = '"_s,
                                               u" OR Sync_Feldname = '"_s, schluessel)
                                    : u"SELECT ACT_FeldName FROM Felder WHERE ID = "_s + schluessel.toString());
}

QString clSyncFelder::OLFeldname(const QVariant &schluessel) const
{
    return text(istName(schluessel) ? nachName(u"SELECT PCK_FeldName FROM Felder "_s, u" WHERE Act_Feldname = '"_s,
                                               u" OR Sync_Feldname = '"_s, schluessel)
                                    : u"SELECT PCK_FeldName FROM Felder WHERE ID = "_s + schluessel.toString());
}

QString clSyncFelder::SyncFeldname(const QVariant &schluessel) const
{
    return text(istName(schluessel) ? nachName(u"SELECT Sync_FeldName FROM Felder "_s, u" WHERE Act_Feldname = '"_s,
                                               u" OR PCK_FeldName = '"_s, schluessel)
                                    : u"SELECT Sync_FeldName FROM Felder WHERE ID = "_s + schluessel.toString());
}

QString clSyncFelder::OLTabelle(qint16 ID) const
{
    return text(u"SELECT PCK_Tabelle FROM Felder WHERE ID = "_s + QString::number(ID));
}

bool clSyncFelder::IsSyncH(qint16 ID) const
{
    return wahr(u"SELECT Sync_H FROM Felder WHERE ID = "_s + QString::number(ID));
}

bool clSyncFelder::IsSyncN(qint16 ID) const
{
    return wahr(u"SELECT Sync_N FROM Felder WHERE ID = "_s + QString::number(ID));
}

qint16 clSyncFelder::Typ(qint16 ID) const
{
    // Looked up, so that a damaged mapping shows; but every field is text, "String" or not, whatever stands there.
    text(u"SELECT Datentyp FROM Felder WHERE ID = "_s + QString::number(ID));
    return dao::dbText;
}

qint16 clSyncFelder::ActFeldID(const QVariant &schluessel) const
{
    return zahl(istName(schluessel) ? nachName(u"SELECT Act_FeldID FROM Felder "_s, u" WHERE PCK_Feldname = '"_s,
                                               u" OR Sync_Feldname = '"_s, schluessel)
                                    : u"SELECT Act_FeldID FROM Felder WHERE ID = "_s + schluessel.toString());
}

bool clSyncFelder::NachActH(qint16 ID) const
{
    return wahr(u"SELECT Nach_Act_H FROM Felder WHERE ID = "_s + QString::number(ID));
}

bool clSyncFelder::NachActN(qint16 ID) const
{
    return wahr(u"SELECT Nach_Act_N FROM Felder WHERE ID = "_s + QString::number(ID));
}

qint16 clSyncFelder::SyncID(const QString &name) const
{
    return zahl(u"SELECT ID FROM Felder WHERE Sync_Feldname = '"_s + name + u"'"_s);
}

int clSyncFelder::VELDRAK_Anzahl() const
{
    const auto zeilen = db().OpenRecordset(u"VELDRAK"_s);
    if (zeilen->RecordCount() != 0)
        zeilen->MoveLast();
    const int anzahl = zeilen->RecordCount();
    zeilen->Close();
    return anzahl;
}

QString clSyncFelder::VELDRAK_ActString(AutomationObject &Kontakt, qint16 ID) const
{
    const auto vorlage = einzelwert(u"SELECT Act_Quellen FROM VELDRAK WHERE ID = "_s + QString::number(ID));
    if (!vorlage)
        return nichtGefunden;

    const auto feldwert
        = [&Kontakt](qint16 feld) { return dao::textOf(Kontakt.call(u"getfield"_s, {QVariant::fromValue(feld)})); };
    constexpr qint16 nachname = 25; // an empty last name is stood in for by the contact's full name
    constexpr qint16 vollerName = 26;

    QString ergebnis;
    const QString quellen = vorlage->toString();
    const int n = AnzahlTeile(quellen, u'|');
    for (int i = 1; i <= n; ++i) {
        const QString teil = Teil(quellen, u'|', i);
        if (!teil.startsWith(u'%')) {
            ergebnis += teil;
            continue;
        }
        const qint16 feld = CInt(Val(teil.mid(1)));
        QString wert = feldwert(feld);
        if (wert.isEmpty() && feld == nachname)
            wert = feldwert(vollerName);
        ergebnis += wert;
    }
    return ergebnis;
}

QString clSyncFelder::VELDRAK_OLTabelle(qint16 ID) const
{
    return text(u"SELECT PCK_Tabelle FROM VELDRAK WHERE ID = "_s + QString::number(ID));
}

QString clSyncFelder::VELDRAK_OLFeld(qint16 ID) const
{
    return text(u"SELECT PCK_Feld FROM VELDRAK WHERE ID = "_s + QString::number(ID));
}

bool clSyncFelder::IsKomH(qint16 ID) const
{
    return wahr(u"SELECT Kom_H FROM Felder WHERE ID = "_s + QString::number(ID));
}

bool clSyncFelder::IsKomN(qint16 ID) const
{
    return wahr(u"SELECT Kom_N FROM Felder WHERE ID = "_s + QString::number(ID));
}

std::shared_ptr<dao::Recordset> clSyncFelder::get_sPersKto() const
{
    return db().OpenRecordset(u"SELECT * from sPersKto"_s);
}

std::optional<QVariant> clSyncFelder::einzelwert(const QString &abfrage) const
{
    const auto zeilen = db().OpenRecordset(abfrage);
    std::optional<QVariant> wert;
    if (zeilen->RecordCount() != 0)
        wert = zeilen->Fields(0).Value();
    zeilen->Close();
    return wert;
}

QString clSyncFelder::text(const QString &abfrage) const
{
    const auto wert = einzelwert(abfrage);
    return wert ? dao::textOf(*wert) : nichtGefunden;
}

bool clSyncFelder::wahr(const QString &abfrage) const
{
    return einzelwert(abfrage).value_or(false).toBool();
}

qint16 clSyncFelder::zahl(const QString &abfrage) const
{
    const auto wert = einzelwert(abfrage);
    return wert ? CInt(wert->toDouble()) : qint16(-1);
}

dao::Database &clSyncFelder::db() const
{
    if (!m_db)
        throw RunTimeError(RunTimeError::ObjectNotSet);
    return *m_db;
}
