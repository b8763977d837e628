// The stage of the transfer dialog. Mapping and client are made once and copied: they cost more than a test.
#include "tests/transfer/TransferTest.h"

#include <QApplication>
#include <QFile>

#include "platform/dao/embedded/EmbeddedEngine.h"
#include "util/coding.h"

using namespace Qt::StringLiterals;

namespace {

const QString &vorlagen()
{
    static const QTemporaryDir ordner;
    static const QString pfad = [] {
        const auto engine = dao::makeEmbeddedEngine();
        beispiel::erzeugeMapping(*engine, ordner.path());
        beispiel::erzeugeMandant(*engine, ordner.filePath(u"Muster.PCK"_s));
        return ordner.path();
    }();
    return pfad;
}

bool istFrageAnMapping(const QString &sql)
{
    return sql.contains(u" FROM Felder"_s) || sql.contains(u" FROM VELDRAK"_s) || sql == u"VELDRAK" || sql == u"Felder"
        || sql == u"SELECT * from sPersKto";
}

} // namespace

TransferTest::TransferTest()
    : m_engine(dao::makeEmbeddedEngine())
{
    legeMandantAn(u"Muster.PCK"_s);
    m_act.failure = [this](const QString &aufruf) { return notiere(u"ACT "_s + aufruf); };
    QObject::connect(&m_kennwortTimer, &QTimer::timeout, &m_kennwortTimer, [this] { beantworteKennwort(); });
    m_kennwortTimer.start(0);
}

TransferTest::~TransferTest()
{
    m_haupt.reset(); // uses the engine to the last
}

void TransferTest::richteMaschineEin()
{
    m_haupt.reset();
    m_programmEngine = std::make_unique<MitschreibendeEngine>(dao::makeEmbeddedEngine());
    m_programmEngine->vorher = [this](const QString &sql) {
        const int fehler = istFrageAnMapping(sql) ? 0 : notiere(u"SQL "_s + sql);
        if (fehler != 0)
            throw dao::DaoError(fehler, u"gestört"_s);
    };
    m_programmEngine->vorOeffnen = [this](const QString &datei) {
        const int fehler = m_stoerung ? m_stoerung(u"OPEN "_s + datei) : 0;
        if (fehler != 0)
            throw dao::DaoError(fehler, u"gestört"_s);
    };
}

int TransferTest::notiere(const QString &zeile)
{
    m_ablauf += zeile;
    return m_stoerung ? m_stoerung(zeile) : 0;
}

void TransferTest::legeMandantAn(const QString &datei, const QString &kennwort)
{
    if (kennwort.isEmpty()) {
        ASSERT_TRUE(QFile::copy(vorlagen() + u"/Muster.PCK"_s, mandant(datei)));
    } else {
        beispiel::erzeugeMandant(*m_engine, mandant(datei), kennwort);
    }
}

void TransferTest::merke(const QString &name, const QString &wert)
{
    m_tisch.save(u"VELDRAK"_s, u"Setting"_s, name, wert);
}

QString TransferTest::gemerkt(const QString &name) const
{
    return m_tisch.get(u"VELDRAK"_s, u"Setting"_s, name, u"-"_s);
}

void TransferTest::zeige(const std::vector<beispiel::Person> &personen)
{
    m_dialog = nullptr;
    m_act.contacts.clear();
    richteMaschineEin();
    m_haupt = std::make_unique<Haupt>(Umgebung{m_act, *m_programmEngine, m_tisch, m_tisch, m_tisch, m_tisch, m_tisch,
                                               m_tisch, m_tisch, m_tisch, vorlagen()});
    m_haupt->SyncFelder.init(vorlagen() + u"/veldrak.piz"_s, coding::mappingZugriff());
    m_haupt->konfiguration = beispiel::konfiguration(m_ordner.path() + u'/');
    m_haupt->ActApp = m_act.CreateObject({});
    m_haupt->ActKontaktfenster = m_act.contactWindow();
    m_haupt->ActFensterBreite = 800;
    m_haupt->ActFensterHoehe = 600;
    bildeGruppe(personen);
    m_act.calls.clear();
    m_ablauf.clear();
    m_haupt->ausgefuehrt([this] {
        m_dialog = &m_haupt->lade(std::make_unique<frmÜbertragung>(*m_haupt));
        m_dialog->show();
        m_dialog->activateWindow();
    });
    if (m_dialog != nullptr && m_dialog->isVisible()) {
        ASSERT_TRUE(QTest::qWaitForWindowActive(m_dialog));
    }
}

void TransferTest::zeigeMitMandant(const std::vector<beispiel::Person> &personen)
{
    merke(u"Mandant"_s, u"1"_s);
    zeige(personen);
}

void TransferTest::bildeGruppe(const std::vector<beispiel::Person> &personen)
{
    for (const beispiel::Person &person : personen) {
        m_act.current = m_act.contacts.size();
        m_act.contacts.push_back(beispiel::alsAct(person));
        auto kontakt = std::make_shared<clKontakt>(m_haupt->konfiguration, *m_haupt);
        kontakt->init(m_haupt->SyncFelder);
        kontakt->lese_OLE_Werte(*m_haupt->ActKontaktfenster);
        kontakt->Typ = m_haupt->Mitglieder.empty() ? u"H"_s : u"N"_s;
        m_haupt->Mitglieder.push_back(kontakt);
    }
    m_haupt->HauptIndex = 1;
}

QStringList TransferTest::zeilenVon(const QComboBox &liste)
{
    QStringList zeilen;
    for (int i = 0; i < liste.count(); ++i)
        zeilen += liste.itemText(i);
    return zeilen;
}

void TransferTest::beantworteKennwort()
{
    auto *frage = dynamic_cast<frmMandantenpasswort *>(QApplication::activeModalWidget());
    if (frage == nullptr)
        return;
    m_gefragt += frage->findChild<QLineEdit *>(u"txbMandant"_s)->text();
    const QString kennwort = m_kennwoerter.empty() ? QString() : m_kennwoerter.front();
    if (!m_kennwoerter.empty())
        m_kennwoerter.pop_front();
    auto &eingabe = *frage->findChild<QLineEdit *>(u"txbPassword"_s);
    EXPECT_TRUE(eingabe.text().isEmpty()) << "each showing begins anew";
    QTest::keyClicks(&eingabe, kennwort);
    QTest::keyClick(&eingabe, kennwort.isEmpty() ? Qt::Key_Escape : Qt::Key_Return);
}
