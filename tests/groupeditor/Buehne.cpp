// The stage: everything that the window needs, made new for each test but for the mapping.
#include "tests/groupeditor/Buehne.h"

#include <stdexcept>

#include <QLineEdit>

#include "platform/dao/embedded/EmbeddedEngine.h"

using namespace Qt::StringLiterals;

Buehne::Buehne(QStringView personen)
    : m_engine(dao::makeEmbeddedEngine())
{
    const std::vector<beispiel::Person> alle = beispiel::leute(personen.toString() + u"; Z - - Zeta Handel"_s);
    for (const beispiel::Person &eine : alle)
        act.contacts.push_back(beispiel::alsAct(eine));
    act.databasePath = beispiel::erzeugeKontakttabelle(engine(), m_folder.path(), alle);
}

Buehne::~Buehne() = default;

void Buehne::zeige(std::size_t aktueller, bool autoSuche, const QString &suchFeld1)
{
    m_haupt = gestarteterHaupt(act, m_engine, tisch, m_folder.path() + u'/');
    m_haupt->konfiguration.AutoSuche = autoSuche;
    m_haupt->konfiguration.IdSuchFeld1Name = suchFeld1;
    act.current = aktueller;
    m_haupt->Kontakt = gelesenerKontakt(*m_haupt);
    act.calls.clear();
    m_haupt->ausgefuehrt([this] {
        m_fenster = &m_haupt->lade(std::make_unique<frmHauptkontakt>(*m_haupt));
        m_fenster->show();
    });
}

void Buehne::suche(QStringView begriff)
{
    finde<QLineEdit>(u"tbSuche").setText(begriff.toString());
    klicke(u"cmdSuchen");
}

void Buehne::klicke(QStringView knopf)
{
    auto &button = finde<QPushButton>(knopf);
    if (!button.isEnabled() || button.isHidden())
        throw std::logic_error(qPrintable(knopf.toString() + u" is off"_s));
    button.click();
}

void Buehne::waehle(KontaktListe &liste, QStringView ids)
{
    const QList<QStringView> gewaehlte = ids.split(u' ');
    for (int i = 1; i <= liste.Anzahl(); ++i)
        liste.Item(i).setSelected(gewaehlte.contains(liste.uniqueID(liste.Item(i))));
}

void Buehne::uebernimm(QStringView ids)
{
    waehle(treffer(), ids);
    klicke(u"cmdÜbernehmen");
}

void Buehne::entferne(QStringView ids)
{
    waehle(mitglieder(), ids);
    klicke(u"cmdEntfernen");
}

void Buehne::macheHauptkontakt(QStringView ids)
{
    waehle(mitglieder(), ids);
    klicke(u"cmdHauptkontakt");
}

QString Buehne::inhalt(const KontaktListe &liste)
{
    QStringList zeilen;
    for (int i = 1; i <= liste.Anzahl(); ++i) {
        const QTreeWidgetItem &item = liste.Item(i);
        const QString konto = liste.nummer(item) + u'/' + liste.mandant(item);
        zeilen += u"%1 %2"_s.arg(liste.uniqueID(item)).arg(KontaktListe::icon(item));
        zeilen.last() += konto == u'/' ? QString() : u' ' + konto;
    }
    return zeilen.join(u", "_s);
}

QString Buehne::ids(const KontaktListe &liste)
{
    QStringList ids;
    for (int i = 1; i <= liste.Anzahl(); ++i)
        ids += liste.uniqueID(liste.Item(i));
    return ids.join(u' ');
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
