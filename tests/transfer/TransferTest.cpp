// The stage of the transfer dialog.
#include "tests/transfer/TransferTest.h"

#include <QApplication>

#include "platform/dao/embedded/EmbeddedEngine.h"

using namespace Qt::StringLiterals;

namespace {

bool istFrageAnMapping(const QString &sql)
{
    return sql.contains(u" FROM Felder"_s) || sql.contains(u" FROM VELDRAK"_s) || sql == u"VELDRAK" || sql == u"Felder"
        || sql == u"SELECT * from sPersKto";
}

void wirf(int fehler)
{
    if (fehler != 0)
        throw dao::DaoError(fehler, u"gestört"_s);
}

} // namespace

TransferTest::TransferTest()
    : m_engine(dao::makeEmbeddedEngine())
{
    legeMandantAn(u"Muster.PCK"_s);
    m_act.failure = [this](const QString &aufruf) { return stoerung(m_ablauf.emplaceBack(u"ACT "_s + aufruf)); };
    QObject::connect(&m_kennwortTimer, &QTimer::timeout, &m_kennwortTimer, [this] { beantworteKennwort(); });
    m_kennwortTimer.start(0);
}

TransferTest::~TransferTest()
{
    m_haupt.reset(); // uses the engine to the last
}

void TransferTest::bereiteEngine()
{
    m_haupt.reset();
    m_programmEngine = std::make_unique<MitschreibendeEngine>(dao::makeEmbeddedEngine());
    m_programmEngine->vorher = [this](const QString &sql) {
        if (!istFrageAnMapping(sql))
            wirf(stoerung(m_ablauf.emplaceBack(u"SQL "_s + sql)));
    };
    m_programmEngine->vorOeffnen = [this](const QString &datei) { wirf(stoerung(u"OPEN "_s + datei)); };
}

void TransferTest::legeMandantAn(const QString &datei)
{
    static const QTemporaryDir ordner; // making a client costs more than a test
    const QString vorlage = ordner.filePath(u"Muster.PCK"_s);
    if (!QFile::exists(vorlage))
        beispiel::erzeugeMandant(*m_engine, vorlage);
    ASSERT_TRUE(QFile::copy(vorlage, mandant(datei)));
}

void TransferTest::zeige(const std::vector<beispiel::Person> &personen, int hauptIndex)
{
    bereiteEngine();
    m_haupt = gestarteterHaupt(m_act, *m_programmEngine, m_tisch, m_ordner.path() + u'/');
    m_act.contacts.clear();
    for (const beispiel::Person &person : personen) {
        m_act.current = m_act.contacts.size();
        m_act.contacts.push_back(beispiel::alsAct(person));
        m_haupt->Mitglieder.push_back(gelesenerKontakt(*m_haupt));
        m_haupt->Mitglieder.back()->Typ = m_haupt->AnzahlMitglieder() == hauptIndex ? u"H"_s : u"N"_s;
    }
    m_haupt->HauptIndex = hauptIndex;
    m_act.calls.clear();
    m_ablauf.clear();
    m_dialog = nullptr;
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
    gemerkt(u"Mandant"_s) = u"1"_s;
    zeige(personen);
}

QString TransferTest::zeilenVon(const QComboBox &liste)
{
    QStringList zeilen;
    for (int i = 0; i < liste.count(); ++i)
        zeilen += liste.itemText(i);
    return zeilen.join(u'|');
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
