// One contact's values: what the filters make of them, and where they are kept.
#include <gmock/gmock.h>

#include <QDateTime>
#include <QLocale>

#include "tests/contacts/KontaktTest.h"
#include "tests/fakes/Fehlernummer.h"

using namespace Qt::StringLiterals;

class Kontakt : public KontaktTest
{
protected:
    clKontakt m_kontakt = neuerKontakt();
};

TEST_F(Kontakt, PhoneNumbersGetOneFormOfTwentyCharacters)
{
    const auto ole = &clKontakt::OLETelefonFilter, dbf = &clKontakt::DBF_Telefon_Filter, trim = &clKontakt::TelefonTrim;
    // In the table, the mask's last character holds places 1 to 6, bit by bit from the lowest: D is place 3, B place 2,
    // P place 5.
    // clang-format off
    struct Row { const char *name; decltype(ole) filter; QString telefon; const char *ergebnis; };
    const Row rows[] = {
        {"the blank behind the bracket is kept",   ole,  u"[49] 40 1234567"_s,             "+49  40 1234567"},
        {"without that blank",                     ole,  u"[49]40 1234567"_s,              "+49 40 1234567"},
        {"blanks within the brackets",             ole,  u"[ 41 ]44 5550011"_s,            "+41 44 5550011"},
        {"no country code",                        ole,  u"040 123456"_s,                  "+49 040 123456"},
        {"a plus of its own",                      ole,  u"+43 1 5330"_s,                  "+49 +43 1 5330"},
        {"closing bracket alone",                  ole,  u"49]40 12"_s,                    "+49 40 12"},
        {"opening bracket alone",                  ole,  u"[49 40 12"_s,                   "+49 [49 40 12"},
        {"brackets the wrong way round",           ole,  u"]49[40"_s,                      "+ 49[40"},
        {"empty brackets",                         ole,  u"[]40 12"_s,                     "+ 40 12"},
        {"twenty characters stay",                 ole,  u"[49]40 / 123-45-6789"_s,        "+49 40 / 123-45-6789"},
        {"one more loses its separators",          ole,  u"[49]40 / 123-45-67890"_s,       "+49 401234567890"},
        {"only a second pair does not count",      ole,  u"[49]40 [1] 2"_s,                "+49 40 [1] 2"},
        {"long number without country code",       ole,  u"0171 / 555 00 11 - 22 33"_s,    "+49 017155500112233"},
        {"too long even as digits",                ole,  u"[49]1234567890123456789"_s,     "1234567890123456789"},
        {"separators at places 3 and 7",           dbf,  u"49|40|@@@@AD5551234"_s,         "+49 40 555 1234"},
        {"no separators",                          dbf,  u"49|40|@@@@@@5551234"_s,         "+49 405551234"},
        {"area of four digits",                    dbf,  u"49|4101|@@@@@P55512"_s,         "+49 4101 55512"},
        {"area of one digit",                      dbf,  u"43|1|@@@@@B53300"_s,            "+43 1 53300"},
        {"no area",                                dbf,  u"49||@@@@@@110"_s,               "+49 110"},
        {"country code of three digits",           dbf,  u"352|26|@@@@@D12345"_s,          "+352 26 12345"},
        {"place 1 gives no leading blank",         dbf,  u"49|40|@@@@@A555"_s,             "+49 40555"},
        {"blanks only are dropped",                dbf,  u"49|40|@@@@@D5\t 5\u00A0"_s,      "+49 40 5\t 5\u00A0"},
        {"neighbouring places give one blank",     dbf,  u"49|40|@@@@@L555"_s,             "+49 40 555"},
        {"places beyond the number",               dbf,  u"49|40|O@@@@D555"_s,             "+49 40 555"},
        {"no digits",                              dbf,  u"49|40|@@@@@D"_s,                "+49 40"},
        {"mask too short",                         dbf,  u"49|40|@@@"_s,                   "+49 40"},
        {"nothing but the country",                dbf,  u"49||"_s,                        "+49"},
        {"the tenth place",                        dbf,  u"49|40|@@@@HD123456789"_s,       "+49 40 123456 789"},
        {"letters among the digits",               dbf,  u"49|40|@@@@AD555 App 7"_s,       "+49 40 555 App 7"},
        {"too long: separators go",                dbf,  u"49|4101|@@@DAP123456789012"_s,  "+49 4101123456789012"},
        {"the first 21 count, up to place 24",     dbf,  u"49|40|@Bk??~555"_s,             "+49 4 0 5 55"},
        {"no country code stays as it stands",     dbf,  u"|40|@@@@AD5551234"_s,           "|40|@@@@AD5551234"},
        {"plain text",                             dbf,  u"040 / 55512-34"_s,              "040 / 55512-34"},
        {"plain text, too long",                   dbf,  u"040 / 555 12 34 - 567 89"_s,    "040 555123456789"},
        {"one separator is not the form",          dbf,  u"49|40 123"_s,                   "49|40 123"},
        {"empty",                                  trim, u""_s,                            ""},
        {"blanks around",                          trim, u"  040 12 "_s,                   "040 12"},
        {"twenty with blanks around",              trim, u" 12345678901234567890 "_s,      "12345678901234567890"},
        {"first blank at place 3",                 trim, u"49 (0)40-123 45 67 89/10"_s,    "49 04012345678910"},
        {"first blank at place 5",                 trim, u"0049 (40) 123-45-67-8"_s,       "0049 4012345678"},
        {"first blank at place 6: no country",     trim, u"(040) 123 45 67 / 890"_s,       "+49 0401234567890"},
        {"a known country counts as digits",       trim, u"+4940 1234567 / 890123"_s,      "49401234567890123"},
        {"no blank: digits only",                  trim, u"040/123-456-789-0123-4"_s,      "04012345678901234"},
        {"no blank, too long for ever",            trim, u"0401234567890123456789"_s,      "0401234567890123456789"},
        {"still too long: the country goes",       trim, u"+49 123456789012345678"_s,      "123456789012345678"},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        const QString ergebnis = (m_kontakt.*row.filter)(row.telefon);
        EXPECT_EQ(ergebnis.toStdString(), row.ergebnis);
        EXPECT_LE(ergebnis.size(), row.filter == trim ? 22 : 20);
    }
}

TEST_F(Kontakt, FieldNamesDecideAboutTheFilter)
{
    const QString url(60, u'u');
    // clang-format off
    struct Row { const char *name; QVariant wert; QString feldname; QString ergebnis; };
    const Row rows[] = {
        {"phone",                     u"[49]40 1"_s,       u"Telefon"_s,         u"+49 40 1"_s},
        {"within a name",             u"[49]40 1"_s,       u"Zweittelefonnr"_s,  u"+49 40 1"_s},
        {"fax",                       u"[49]40 1"_s,       u"Telefax"_s,         u"+49 40 1"_s},
        {"Fax",                       u"[49]40 1"_s,       u"FaxPrivat"_s,       u"+49 40 1"_s},
        {"mobile",                    u"[49]40 1"_s,       u"Mobil"_s,           u"+49 40 1"_s},
        {"automobile",                u"[49]40 1"_s,       u"Automobilclub"_s,   u"+49 40 1"_s},
        {"handy",                     u"[49]40 1"_s,       u"handy2"_s,          u"+49 40 1"_s},
        {"capitals match no keyword", u"[49]40 1"_s,       u"TELEFON"_s,         u"[49]40 1"_s},
        {"an empty phone stays",      u"  "_s,             u"Telefon"_s,         u""_s},
        {"a phone that is a number",  4711,                u"Telefon"_s,         u"+49 4711"_s},
        {"unique id is filled up",    u"AB12"_s,           u"UNIQUE_ID"_s,       u"AB12        "_s},
        {"unique id is not cut",      u"1234567890123"_s,  u"UNIQUE_ID"_s,       u"1234567890123"_s},
        {"empty unique id",           QVariant(),          u"UNIQUE_ID"_s,       u"            "_s},
        {"web address is cut",        url,                 u"URL"_s,             url.left(50)},
        {"empty web address",         u""_s,               u"URL"_s,             u""_s},
        {"exact names only",          url,                 u"Url"_s,             url},
        {"anything else is trimmed",  u"  Äpfel "_s,       u"LEER"_s,            u"Äpfel"_s},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        QVariant wert = row.wert;
        EXPECT_EQ(m_kontakt.OLE_Lese_Filter(wert, row.feldname), row.ergebnis);
        EXPECT_EQ(wert.typeId(), QMetaType::QString) << "the variable becomes the text";
        if (!row.ergebnis.startsWith(u'+')) {
            wert = row.wert;
            EXPECT_EQ(m_kontakt.DBF_Lese_Filter(wert, row.feldname), row.ergebnis);
        }
    }
    QVariant gespeichert = u"49|40|@@@@AD5551234"_s;
    EXPECT_EQ(m_kontakt.DBF_Lese_Filter(gespeichert, u"Telefax"_s), u"+49 40 555 1234"_s);
    EXPECT_TRUE(m_tisch.boxes.empty());
}

TEST_F(Kontakt, ValuesBecomeText)
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    const QString falsch = u"Falscher Wert !"_s;
    // clang-format off
    struct Row { const char *name; QVariant wert; QString ergebnis; int gemeldet; };
    const Row rows[] = {
        {"Null",        QVariant(),                                     u""_s,      -1},
        {"16 bit",      QVariant::fromValue<short>(-7),                 u"-7"_s,    -1},
        {"32 bit",      123456,                                         u"123456"_s, -1},
        {"single",      QVariant::fromValue(0.5F),                      u"0,5"_s,   -1},
        {"double",      1234.25,                                        u"1234,25"_s, -1},
        {"text",        u"  Jörg  "_s,                                  u"Jörg"_s,  -1},
        {"memo",        u" \r\n\u00A0a\tb\r\n "_s,                      u"\r\n\u00A0a\tb\r\n"_s, -1},
        {"Empty",       QVariant::fromValue(nullptr),                   falsch,     0},
        {"amount",      QVariant::fromValue(storage::Currency{12500}),  falsch,     6},
        {"date",        QDateTime(QDate(2026, 11, 21), QTime(9, 0)),    falsch,     7},
        {"object",      QVariant::fromValue(AutomationObjectPtr()),     falsch,     9},
        {"yes/no",      true,                                           falsch,     11},
        {"decimal",     QVariant::fromValue(storage::Decimal{u"1.5"_s}), falsch,    14},
        {"byte",        QVariant::fromValue<uchar>(3),                  falsch,     17},
        {"64 bit",      QVariant::fromValue<qlonglong>(3),              falsch,     20},
        {"bytes",       QByteArray("ab"),                               falsch,     8209},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        m_tisch.boxes.clear();
        EXPECT_EQ(m_kontakt.XString(row.wert), row.ergebnis);
        const QStringList boxen = row.gemeldet < 0
            ? QStringList()
            : QStringList(u"%1 Typ bei XString nicht vorgesehen."_s.arg(row.gemeldet));
        EXPECT_EQ(m_tisch.boxTexts(), boxen);
    }
    QLocale::setDefault(QLocale::c());
}

TEST_F(Kontakt, FieldsGoByNumberOrNeutralName)
{
    m_kontakt.Setze_Daten(u"Firma"_s, u"Alpha"_s);
    m_kontakt.Setze_Daten(u"fax"_s, u"+49 40 1"_s);
    m_kontakt.Setze_Daten(12, u"www.alpha.example"_s);
    EXPECT_EQ(m_kontakt.Daten(1), u"Alpha"_s);
    EXPECT_EQ(m_kontakt.Daten(QVariant::fromValue<short>(9)), u"+49 40 1"_s);
    EXPECT_EQ(m_kontakt.Daten(u"URL"_s), u"www.alpha.example"_s);
    for (const QVariant &daneben : {QVariant(0), QVariant(-3), QVariant(u"COMPANY"_s), QVariant(u"gibt es nicht"_s)}) {
        m_kontakt.Setze_Daten(daneben, u"verloren"_s);
        EXPECT_EQ(m_kontakt.Daten(daneben), u""_s);
    }
    const auto zuWeit = testing::Throws<RunTimeError>(
        testing::Property(&RunTimeError::Number, int(RunTimeError::SubscriptOutOfRange)));
    EXPECT_THAT([this] { m_kontakt.Daten(13); }, zuWeit);
    EXPECT_THAT([this] { m_kontakt.Setze_Daten(13, u"x"_s); }, zuWeit);
    EXPECT_EQ(fehlernummer([this] { m_kontakt.Daten(32768); }), 6) << "a field's number has 16 bits";
    m_kontakt.init(m_SyncFelder);
    EXPECT_EQ(m_kontakt.Daten(1), u""_s);
}

TEST_F(Kontakt, ReadsTheContactOnActsScreen)
{
    beispiel::Person person = beispiel::firmengruppe().front();
    person.nummer = u" D010000 "_s; // key values are taken unfiltered
    person.typ = u"H"_s;
    m_act.contacts = {beispiel::alsAct(person)};
    m_act.contacts[0][17] = QDateTime(QDate(2026, 1, 2), QTime(0, 0));
    m_kontakt.lese_OLE_Werte(*m_act.contactWindow());
    EXPECT_EQ(m_kontakt.UniqueID + m_kontakt.Nummer + m_kontakt.Typ, u"ID0000000001 D010000 H"_s);
    EXPECT_EQ(m_kontakt.Mandant, u""_s);
    EXPECT_EQ(m_kontakt.Daten(u"Firma"_s), u"Hansen & Söhne GmbH"_s);
    EXPECT_EQ(m_kontakt.Daten(u"Telefon"_s), u"+49 40 123456"_s);
    EXPECT_EQ(m_kontakt.Daten(u"URL"_s), u"Falscher Wert !"_s);
    EXPECT_EQ(m_tisch.boxTexts(), QStringList(u"7 Typ bei XString nicht vorgesehen."_s));
    EXPECT_EQ(m_act.calls.join(u' '),
              u"getfield(1) getfield(61) getfield(60) getfield(62) getfield(2) getfield(26) getfield(3) getfield(25) "
              "getfield(6) getfield(7) getfield(8) getfield(11) getfield(13) getfield(14) getfield(15) getfield(17)"_s);

    m_act.handsBack = [](qint16 &id) { id = static_cast<qint16>(id + 100); };
    m_kontakt.lese_OLE_Werte(*m_act.contactWindow());
    EXPECT_THAT((std::array{m_konfiguration.IdMandant, m_konfiguration.IdNummer, m_konfiguration.IdTyp}),
                testing::ElementsAre(161, 160, 162))
        << "a variable is ACT!'s to change";
    m_act.handsBack = nullptr;

    m_konfiguration = beispiel::konfiguration(u"PCK/"_s);
    m_act.contacts[0][60] = QVariant::fromValue(m_act.contactWindow());
    EXPECT_THROW(m_kontakt.lese_OLE_Werte(*m_act.contactWindow()), RunTimeError) << "no object is an account number";
}
