// One contact's values, brought into the form that PC-Kaufmann takes, from automation or from the contact table.
#include "contacts/clKontakt.h"

#include <algorithm>
#include <array>
#include <map>
#include <vector>

#include "util/Zahlen.h"
#include "util/Zeichenketten.h"

using namespace Qt::StringLiterals;

namespace {

const QString keinSchluesselwort = u"LEER"_s; // a field name that passes its value unfiltered
const QString vorwahlDeutschland = u"+49 "_s;
constexpr qsizetype laengsteNummer = 20;

const std::array<QString, 8> telefonWorte
    = {u"telefon"_s, u"Telefon"_s, u"Fax"_s, u"fax"_s, u"Mobil"_s, u"mobil"_s, u"Handy"_s, u"handy"_s};

bool istTelefonFeld(const QString &feldname)
{
    return std::any_of(telefonWorte.begin(), telefonWorte.end(),
                       [&feldname](const QString &wort) { return feldname.contains(wort); });
}

QString nurZiffern(const QString &text)
{
    QString ziffern = text;
    return ziffern.removeIf([](QChar zeichen) { return zeichen < u'0' || zeichen > u'9'; });
}

// Which places of the local number are separators: six bits a character, the last character holds places 1 to 6.
std::vector<int> trennstellen(const QString &maske)
{
    constexpr std::size_t hoechstens = 21;
    std::vector<int> stellen;
    int zaehler = 0;
    for (qsizetype i = maske.size(); i-- > 0;) {
        int code = maske[i].unicode();
        for (int bit = 0; bit < 6; ++bit, code /= 2) {
            ++zaehler;
            if (code % 2 == 1 && stellen.size() < hoechstens)
                stellen.push_back(zaehler);
        }
    }
    return stellen;
}

QString mitTrennstellen(const QString &zeichen, const std::vector<int> &stellen)
{
    QString ergebnis;
    int stelle = 0;
    for (qsizetype i = 0; i < zeichen.size();) {
        ++stelle;
        const bool trennt = std::find(stellen.begin(), stellen.end(), stelle) != stellen.end();
        ergebnis += trennt ? QChar(u' ') : zeichen[i++];
    }
    return ergebnis.split(u' ', Qt::SkipEmptyParts).join(u' '); // no leading, doubled or trailing blanks
}

// The number of a value's type as office programs count them.
int typnummer(const QVariant &wert)
{
    static const std::map<int, int> nummern = {
        {QMetaType::Nullptr, 0}, // Empty
        {QMetaType::UnknownType, 1}, // Null
        {QMetaType::Short, 2},
        {QMetaType::Int, 3},
        {QMetaType::Float, 4},
        {QMetaType::Double, 5},
        {qMetaTypeId<storage::Currency>(), 6},
        {QMetaType::QDate, 7},
        {QMetaType::QTime, 7},
        {QMetaType::QDateTime, 7},
        {QMetaType::QString, 8},
        {qMetaTypeId<AutomationObjectPtr>(), 9},
        {QMetaType::Bool, 11},
        {qMetaTypeId<storage::Decimal>(), 14},
        {QMetaType::UChar, 17},
        {QMetaType::UShort, 18},
        {QMetaType::UInt, 19},
        {QMetaType::LongLong, 20},
        {QMetaType::ULongLong, 21},
        {QMetaType::QStringList, 8192 + 8},
        {QMetaType::QVariantList, 8192 + 12},
        {QMetaType::QByteArray, 8192 + 17},
    };
    const auto gefunden = nummern.find(wert.typeId());
    return gefunden == nummern.end() ? 0 : gefunden->second;
}

} // namespace

clKontakt::clKontakt(Konfiguration &konfiguration, Programmlauf &programm)
    : m_konfiguration(konfiguration)
    , m_programm(programm)
{ }

void clKontakt::init(const clSyncFelder &SyncFelder)
{
    m_SyncFelder = &SyncFelder;
    m_Werte = QStringList(SyncFelder.FelderAnzahl(), QString());
}

qint16 clKontakt::IconNr() const
{
    if (Typ == u"N"_s)
        return 2;
    return Typ == u"H"_s ? 3 : 1;
}

qint16 clKontakt::feldnummer(const QVariant &schluessel) const
{
    if (schluessel.typeId() == QMetaType::QString)
        return m_SyncFelder->SyncID(schluessel.toString());
    return CInt(schluessel.toDouble());
}

qsizetype clKontakt::stelle(qint16 nummer) const
{
    if (nummer > m_Werte.size())
        throw RunTimeError(RunTimeError::SubscriptOutOfRange);
    return nummer - 1;
}

void clKontakt::Setze_Daten(const QVariant &schluessel, const QString &wert)
{
    const qint16 nummer = feldnummer(schluessel);
    if (nummer >= 1)
        m_Werte[stelle(nummer)] = wert;
}

QString clKontakt::Daten(const QVariant &schluessel) const
{
    const qint16 nummer = feldnummer(schluessel);
    return nummer >= 1 ? m_Werte[stelle(nummer)] : QString();
}

void clKontakt::lese_OLE_Werte(AutomationObject &fenster)
{
    const auto feld = [&fenster](qint16 &id) { return fenster.call(u"getfield"_s, {Argument::byReference(id)}); };

    qint16 eindeutig = 1;
    UniqueID = dao::textOf(feld(eindeutig));
    Mandant = dao::textOf(feld(m_konfiguration.IdMandant));
    Nummer = dao::textOf(feld(m_konfiguration.IdNummer));
    Typ = dao::textOf(feld(m_konfiguration.IdTyp));
    for (qint16 i = 1; i <= m_Werte.size(); ++i) {
        qint16 id = m_SyncFelder->ActFeldID(i);
        QVariant wert = feld(id);
        m_Werte[i - 1] = OLE_Lese_Filter(wert, m_SyncFelder->ActFeldname(i));
    }
}

QString clKontakt::gefiltert(QVariant &wert, const QString &feldname, TelefonFilter telefonFilter)
{
    const QString text = XString(wert);
    wert = text;
    if (istTelefonFeld(feldname) && !text.isEmpty())
        return (this->*telefonFilter)(text);
    if (feldname == u"UNIQUE_ID"_s)
        return text.leftJustified(12);
    if (feldname == u"URL"_s)
        return text.left(50);
    return text;
}

QString clKontakt::OLE_Lese_Filter(QVariant &wert, const QString &feldname)
{
    return gefiltert(wert, feldname, &clKontakt::OLETelefonFilter);
}

QString clKontakt::OLETelefonFilter(const QString &telefon) const
{
    const qsizetype zu = telefon.indexOf(u']');
    if (zu < 0)
        return TelefonTrim(vorwahlDeutschland + telefon);
    const qsizetype auf = telefon.indexOf(u'[');
    const QString vorwahl = Trim(telefon.mid(auf + 1, std::max<qsizetype>(0, zu - auf - 1)));
    return TelefonTrim(u'+' + vorwahl + u' ' + telefon.mid(zu + 1));
}

void clKontakt::setzeDatenVonDBF(dao::Recordset &zeile)
{
    const auto spalte = [this, &zeile](const QString &name, const QString &feldname) {
        QVariant wert = zeile.Fields(name).Value();
        return DBF_Lese_Filter(wert, feldname);
    };

    UniqueID = spalte(u"UNIQUE_ID"_s, keinSchluesselwort);
    Mandant = spalte(m_konfiguration.IdMandantName, keinSchluesselwort);
    Nummer = spalte(m_konfiguration.IdNummerName, keinSchluesselwort);
    Typ = spalte(m_konfiguration.IdTypName, keinSchluesselwort);
    for (qint16 i = 1; i <= m_Werte.size(); ++i) {
        const QString name = m_SyncFelder->ActFeldname(i); // in ACT! and in its table the field is called the same
        m_Werte[i - 1] = spalte(name, name);
    }
}

QString clKontakt::DBF_Lese_Filter(QVariant &wert, const QString &feldname)
{
    return gefiltert(wert, feldname, &clKontakt::DBF_Telefon_Filter);
}

QString clKontakt::DBF_Telefon_Filter(const QString &telefon) const
{
    const qsizetype p1 = telefon.indexOf(u'|');
    const qsizetype p2 = telefon.indexOf(u'|', p1 + 1);
    if (p1 < 1 || p2 <= p1) // no country code, or not the stored form at all
        return TelefonTrim(telefon);

    const QString aufgefuellt = telefon + QString(21, u' ');
    const QString vorwahl = aufgefuellt.left(p1);
    const QString ortsnetz = aufgefuellt.mid(p1 + 1, p2 - p1 - 1);
    const QString maske = aufgefuellt.mid(p2 + 1, 6);
    const QString ziffern = aufgefuellt.mid(p2 + 7);
    return TelefonTrim(u'+' + vorwahl + u' ' + mitTrennstellen(ortsnetz + ziffern, trennstellen(maske)));
}

QString clKontakt::TelefonTrim(const QString &telefon) const
{
    const QString nummer = Trim(telefon);
    if (nummer.size() <= laengsteNummer)
        return nummer;

    const qsizetype s = nummer.indexOf(u' ') + 1; // characters up to and with the first blank; 0 if there is none
    QString gekuerzt = s > 5 ? vorwahlDeutschland + nurZiffern(nummer) : nummer.left(s) + nurZiffern(nummer.mid(s));
    if (gekuerzt.size() > laengsteNummer)
        gekuerzt.remove(0, gekuerzt.indexOf(u' ') + 1);
    return gekuerzt;
}

QString clKontakt::XString(const QVariant &wert)
{
    const int typ = typnummer(wert);
    if ((typ >= 1 && typ <= 5) || typ == 8)
        return Trim(dao::textOf(wert));
    m_programm.MsgBox({QString::number(typ) + u" Typ bei XString nicht vorgesehen."_s});
    return u"Falscher Wert !"_s;
}
