// The stage: everything that the window needs, made new for each test but for the mapping, which is only read.
#include "tests/groupeditor/Buehne.h"

#include <stdexcept>

#include <QApplication>
#include <QLineEdit>
#include <QTest>

#include "groupeditor/frmFehlerHptkt.h"
#include "platform/dao/embedded/EmbeddedEngine.h"
#include "util/coding.h"

using namespace Qt::StringLiterals;

namespace {

QString programmordner()
{
    static const QTemporaryDir folder;
    static const bool ready = [] {
        const auto engine = dao::makeEmbeddedEngine();
        beispiel::erzeugeMapping(*engine, folder.path());
        return QFile::link(QStringLiteral(VELDRAK_BILDER), folder.filePath(u"bilder"_s));
    }();
    return ready ? folder.path() : QString();
}

} // namespace

beispiel::Person person(const QString &id, const QString &typ, const QString &konto, const QString &firma)
{
    beispiel::Person person{id, firma};
    person.nachname = u"Name "_s + id;
    person.typ = typ;
    person.nummer = konto.section(u'/', 0, 0);
    person.mandant = konto.section(u'/', 1);
    return person;
}

Buehne::Buehne(const std::vector<beispiel::Person> &personen)
    : m_engine(dao::makeEmbeddedEngine())
{
    for (const beispiel::Person &eine : personen)
        act.contacts.push_back(beispiel::alsAct(eine));
    act.databasePath = beispiel::erzeugeKontakttabelle(*m_engine, m_folder.path(), personen);
}

Buehne::~Buehne() = default;

void Buehne::zeige(Wunsch wunsch)
{
    m_haupt = std::make_unique<Haupt>(
        Umgebung{act, *m_engine, tisch, tisch, tisch, tisch, tisch, tisch, tisch, tisch, programmordner()});
    m_haupt->ActApp = act.CreateObject({});
    m_haupt->ActKontaktfenster = act.contactWindow();
    m_haupt->ActFensterBreite = 800;
    m_haupt->ActFensterHoehe = 600;
    m_haupt->konfiguration = beispiel::konfiguration(m_folder.path() + u'/');
    m_haupt->konfiguration.AutoSuche = wunsch.autoSuche;
    m_haupt->SyncFelder.init(programmordner() + u"/veldrak.piz"_s, coding::mappingZugriff());
    act.current = wunsch.aktueller;
    m_haupt->Kontakt = std::make_shared<clKontakt>(m_haupt->konfiguration, *m_haupt);
    m_haupt->Kontakt->init(m_haupt->SyncFelder);
    m_haupt->Kontakt->lese_OLE_Werte(*m_haupt->ActKontaktfenster);
    act.calls.clear();
    m_haupt->ausgefuehrt([this] {
        m_fenster = &m_haupt->lade(std::make_unique<frmHauptkontakt>(*m_haupt));
        m_fenster->show();
    });
}

void Buehne::suche(const QString &begriff)
{
    finde<QLineEdit>(u"tbSuche"_s).setText(begriff);
    klicke(u"cmdSuchen"_s);
}

void Buehne::klicke(const QString &knopf)
{
    auto &button = finde<QPushButton>(knopf);
    if (!button.isEnabled() || button.isHidden())
        throw std::logic_error(qPrintable(knopf + u" is off"_s));
    button.click();
}

void Buehne::waehle(KontaktListe &liste, const QStringList &ids)
{
    for (int i = 1; i <= liste.Anzahl(); ++i)
        liste.Item(i).setSelected(ids.contains(liste.uniqueID(liste.Item(i))));
}

void Buehne::uebernimm(const QStringList &ids)
{
    waehle(treffer(), ids);
    klicke(u"cmdÜbernehmen"_s);
}

void Buehne::entferne(const QStringList &ids)
{
    waehle(mitglieder(), ids);
    klicke(u"cmdEntfernen"_s);
}

QStringList Buehne::inhalt(const KontaktListe &liste)
{
    QStringList zeilen;
    for (int i = 1; i <= liste.Anzahl(); ++i) {
        const QTreeWidgetItem &item = liste.Item(i);
        QString zeile = liste.uniqueID(item) + u", "_s + QString::number(KontaktListe::icon(item));
        if (!(liste.nummer(item) + liste.mandant(item)).isEmpty())
            zeile += u", "_s + liste.nummer(item) + u'/' + liste.mandant(item);
        zeilen += zeile;
    }
    return zeilen;
}

QStringList Buehne::ids(const KontaktListe &liste)
{
    QStringList ids;
    for (int i = 1; i <= liste.Anzahl(); ++i)
        ids += liste.uniqueID(liste.Item(i));
    return ids;
}

QString Buehne::knoepfe()
{
    QString zeichen;
    for (const auto &[name, an] :
         {std::pair(u"cmdHauptkontakt"_s, u'H'), {u"cmdTransfer"_s, u'T'}, {u"cmdFertig"_s, u'F'}}) {
        const auto &knopf = finde<QPushButton>(name);
        if (knopf.isEnabled() != knopf.isHidden())
            zeichen += knopf.isEnabled() ? an : u'-';
        else
            zeichen += u'?';
    }
    return zeichen;
}

QDialog *Buehne::mehrdeutig() const
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *dialog = dynamic_cast<frmFehlerHptkt *>(widget))
            return dialog;
    }
    return nullptr;
}
