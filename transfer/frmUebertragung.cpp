// The transfer dialog: how it is loaded, and how its lists follow the client and the account type.
#include "transfer/frmUebertragung.h"

#include <algorithm>
#include <cmath>

#include <QScopedValueRollback>

#include "startup/ListenZeile.h"
#include "transfer/frmMandantenpasswort.h"
#include "ui_frmUebertragung.h"
#include "util/Zahlen.h"

using namespace Qt::StringLiterals;

namespace {

const QString mandantenauswahl = u"Mandantenauswahl"_s;

} // namespace

frmÜbertragung::frmÜbertragung(Haupt &haupt)
    : m_haupt(haupt)
    , m_ui(std::make_unique<Ui::frmÜbertragung>())
    , m_frmMandantenpasswort(std::make_unique<frmMandantenpasswort>(haupt, this))
{
    setWindowFlags(Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint
                   | Qt::WindowCloseButtonHint);
    m_ui->setupUi(this);
    m_ui->txbNummer->hide();
    m_ui->txbNummer->installEventFilter(this);
    richteMausradEin();
    richteAus();
    verbindeBefehle();
    Form_Load();
    verbindeAuswahl(); // until here selections are made by the program, which runs their handlers itself
}

frmÜbertragung::~frmÜbertragung() = default;

// The three frames share one column of labels.
void frmÜbertragung::richteAus()
{
    const std::initializer_list<QLabel *> beschriftungen
        = {m_ui->lbMandant,  m_ui->lbTyp,    m_ui->lbLfZahlenkreis, m_ui->lbPreisliste,
           m_ui->lbWaehrung, m_ui->lbRabatt, m_ui->lbLaendercode};
    int breite = 0;
    for (const QLabel *beschriftung : beschriftungen)
        breite = std::max(breite, beschriftung->sizeHint().width());
    for (QLabel *beschriftung : beschriftungen)
        beschriftung->setMinimumWidth(breite);
}

void frmÜbertragung::verbindeBefehle()
{
    const auto klick = [this](QPushButton *knopf, Behandlung befehl) {
        connect(knopf, &QPushButton::clicked, this, guarded(m_haupt, [this, befehl] { behandle(befehl, false); }));
    };
    klick(m_ui->cmdNummer, &frmÜbertragung::cmdNummer_Click);
    klick(m_ui->cmdEintragen, &frmÜbertragung::cmdEintragen_Click);
    connect(m_ui->cmdAbbruch, &QPushButton::clicked, this, [this] { reject(); });
    connect(m_ui->txbRabatt, &QLineEdit::textChanged, this, guarded(m_haupt, [this] { txbRabatt_Change(); }));
    connect(m_ui->txbLaendercode, &QLineEdit::textChanged, this, guarded(m_haupt, [this] { txbLaendercode_Change(); }));
}

void frmÜbertragung::verbindeAuswahl()
{
    const auto auswahl = [this](QComboBox *liste, Behandlung behandlung) {
        connect(liste, &QComboBox::currentIndexChanged, this,
                guarded(m_haupt, [this, behandlung] { behandle(behandlung, true); }));
    };
    auswahl(m_ui->cbxMandant, &frmÜbertragung::cbxMandant_Click);
    auswahl(m_ui->cbxTyp, &frmÜbertragung::cbxTyp_Click);
}

// Handlers let events through while they run. A command that comes meanwhile is dropped; a selection, which the lists
// have to follow, is handled when they are done.
void frmÜbertragung::behandle(Behandlung behandlung, bool aufschiebbar)
{
    if (!m_beschaeftigt || aufschiebbar)
        m_ausstehend.push_back(behandlung);
    if (m_beschaeftigt)
        return;
    const QScopedValueRollback beschaeftigt(m_beschaeftigt, true);
    while (!m_ausstehend.empty()) {
        const Behandlung naechste = m_ausstehend.front();
        m_ausstehend.pop_front();
        m_aufgegeben = false;
        (this->*naechste)();
    }
}

void frmÜbertragung::Form_Load()
{
    m_haupt.Status().show();
    m_haupt.zeigeStatus(u"Vorbereitung für den Transfer..."_s);
    objHauptkontakt = m_haupt.Mitglied(m_haupt.HauptIndex);

    m_haupt.zeigeStatus(u"Listen initialisieren..."_s);
    m_ui->cbxTyp->addItems({u"D-Debitor"_s, u"K-Kreditor"_s, u"M-Mitarbeiter"_s, u"A-Adresse"_s});
    waehle(*m_ui->cbxTyp, 1, &frmÜbertragung::cbxTyp_Click);
    m_ui->lbFirma->setText(objHauptkontakt->Daten(u"Firma"_s));

    fuelleMandanten();
    fuelleNamen();
    waehleZuletztVerwendete();
    lese_Preisliste();
    lese_Waehrungsliste();
    m_haupt.Status().hide();
}

void frmÜbertragung::fuelleMandanten()
{
    m_haupt.zeigeStatus(u"Liste für Mandanten füllen..."_s);
    const Umgebung &umgebung = m_haupt.umgebung();
    objPCK = std::make_shared<clPCK>(clPCK::Dienste{m_haupt, umgebung.dbEngine, umgebung.dateien,
                                                    umgebung.zwischenablage, umgebung.uhr, *m_frmMandantenpasswort});
    m_haupt.schliesseMandant = [pck = std::weak_ptr(objPCK)] {
        if (const auto offen = pck.lock())
            offen->close_Mandant();
    };
    objPCK->init(m_haupt.konfiguration.PckPfad);
    if (objPCK->PckAnzahl() == 0) {
        m_haupt.MsgBox({u"In dem Ordner "_s + m_haupt.konfiguration.PckPfad + u"\r\n"_s
                            + u"konnten keine Mandanten gefunden werden."_s + u"\r\n"_s
                            + u"Bitte korrigieren Sie den Pfad in der Konfiguration von VELDRAK."_s,
                        desktop::Icon::Exclamation});
        m_haupt.ProgrammEnde();
    }
    m_ui->cbxMandant->addItem(mandantenauswahl);
    for (qint16 i = 0; i < objPCK->PckAnzahl(); ++i)
        m_ui->cbxMandant->addItem(objPCK->Mandanten(i));
}

void frmÜbertragung::fuelleNamen()
{
    m_haupt.zeigeStatus(u"Liste für Kontakte füllen..."_s);
    fuegeZeileAn(*m_ui->lbxNamen, objHauptkontakt->Daten(u"Name"_s));
    for (int i = 1; i <= m_haupt.AnzahlMitglieder(); ++i) {
        if (i != m_haupt.HauptIndex)
            fuegeZeileAn(*m_ui->lbxNamen, m_haupt.Mitglied(i)->Daten(u"Name"_s));
    }
    m_ui->lbxNamen->setCurrentRow(0);
}

void frmÜbertragung::waehleZuletztVerwendete()
{
    m_haupt.zeigeStatus(u"Zuletzt verwendeten Mandanten auswählen..."_s);
    const double mandant = std::nearbyint(Zahlenwert(einstellung(u"Mandant"_s, u"0"_s)).value_or(0));
    const bool vorhanden = mandant >= 0 && mandant <= m_ui->cbxMandant->count() - 1;
    waehle(*m_ui->cbxMandant, vorhanden ? CInt(mandant) : 0, &frmÜbertragung::cbxMandant_Click);

    m_haupt.zeigeStatus(u"Zuletzt verwendeten Typ auswählen..."_s);
    waehle(*m_ui->cbxTyp, CInt(Val(einstellung(u"Typ"_s, u"0"_s))), &frmÜbertragung::cbxTyp_Click);

    m_haupt.zeigeStatus(u"Zuletzt verwendeten Ländercode auswählen..."_s);
    m_ui->txbLaendercode->setText(einstellung(u"Laendercode"_s, u"49"_s));
    m_ui->txbRabatt->setText(u"0,00"_s);
}

// A selection made by the program runs its handler, even if the row was selected before.
void frmÜbertragung::waehle(QComboBox &liste, int position, Behandlung behandlung)
{
    if (position < 0 || position >= liste.count())
        throw RunTimeError(RunTimeError::InvalidPropertyValue);
    liste.setCurrentIndex(position);
    (this->*behandlung)();
}

// Clients are thereby opened again and again, and currencies read twice: each list does it for itself.
void frmÜbertragung::cbxMandant_Click()
{
    if (!m_ui->cbxPreisliste->isHidden()) {
        lese_Preisliste();
        lese_Waehrungsliste();
    }
    if (!m_ui->cbxWaehrung->isHidden())
        lese_Waehrungsliste();
    if (istMandantGewaehlt())
        zeigeNeueNummer(0);
    else
        m_ui->lbNummer->setText(clPCK::keinZugriff.toString());
}

void frmÜbertragung::cbxTyp_Click()
{
    const QString typ = typBuchstabe();
    const auto setzeVerfuegbar = [](bool verfuegbar, QWidget *eingabe, QLabel *beschriftung) {
        eingabe->setEnabled(verfuegbar);
        beschriftung->setEnabled(verfuegbar);
    };
    setzeVerfuegbar(typ != u"A", m_ui->cbxWaehrung, m_ui->lbWaehrung);
    setzeVerfuegbar(typ == u"D", m_ui->cbxPreisliste, m_ui->lbPreisliste);
    setzeVerfuegbar(typ == u"D" || typ == u"K", m_ui->txbRabatt, m_ui->lbRabatt);
    if (objPCK && istMandantGewaehlt())
        zeigeNeueNummer(0);
}

void frmÜbertragung::lese_Preisliste()
{
    QComboBox &liste = *m_ui->cbxPreisliste;
    liste.clear();
    m_haupt.DoEvents();
    liste.addItem(u"Keine"_s);
    m_haupt.DoEvents();
    liste.setCurrentIndex(0);
    if (!istMandantGewaehlt())
        return;
    if (!oeffneMandant()) {
        liste.addItem(clPCK::keinZugriff.toString());
        return;
    }
    for (qint16 n = 1; n <= 3; ++n)
        liste.addItem(QString::number(n) + u" - "_s + objPCK->Preisgruppe(n));
    const int anzahl = objPCK->Anzahl_Preislisten().toInt();
    for (qint16 i = 0; i < anzahl; ++i)
        liste.addItem(objPCK->Preisliste(i));
    objPCK->close_Mandant();
}

void frmÜbertragung::lese_Waehrungsliste()
{
    QComboBox &liste = *m_ui->cbxWaehrung;
    liste.clear();
    m_haupt.DoEvents();
    if (!istMandantGewaehlt())
        return;
    if (!oeffneMandant()) {
        liste.addItem(clPCK::keinZugriff.toString());
        return;
    }
    int euro = -1;
    const int anzahl = objPCK->Anzahl_Waehrungen().toInt();
    for (qint16 i = 0; i < anzahl; ++i) {
        const QString waehrung = objPCK->Waehrung(i);
        liste.addItem(waehrung);
        if (waehrung.toLower().contains(u"euro"_s))
            euro = i;
    }
    objPCK->close_Mandant();
    liste.setCurrentIndex(euro);
}

bool frmÜbertragung::oeffneMandant()
{
    if (m_aufgegeben)
        return false;
    QVariant mandant = m_ui->cbxMandant->currentText();
    m_aufgegeben = !objPCK->open_Mandant(mandant);
    return !m_aufgegeben;
}

void frmÜbertragung::zeigeNeueNummer(qint32 ab)
{
    QString nummer = clPCK::keinZugriff.toString();
    if (!m_aufgegeben)
        nummer = objPCK->NeueNummer(CInt(m_ui->cbxMandant->currentIndex() - 1), typBuchstabe(), ab);
    m_aufgegeben = nummer == clPCK::keinZugriff;
    m_ui->lbNummer->setText(nummer);
}

bool frmÜbertragung::istMandantGewaehlt() const
{
    return m_ui->cbxMandant->currentText() != mandantenauswahl;
}

QString frmÜbertragung::typBuchstabe() const
{
    return m_ui->cbxTyp->currentText().left(1);
}

QString frmÜbertragung::einstellung(const QString &name, const QString &sonst) const
{
    return m_haupt.umgebung().einstellungen.get(u"VELDRAK"_s, u"Setting"_s, name, sonst);
}

// What cannot be remembered is told once and keeps nothing else from being done.
void frmÜbertragung::merke(const std::vector<std::pair<QString, QString>> &einstellungen)
{
    try {
        for (const auto &[name, wert] : einstellungen)
            m_haupt.umgebung().einstellungen.save(u"VELDRAK"_s, u"Setting"_s, name, wert);
    } catch (const RunTimeError &fehler) {
        if (std::exchange(m_speichernGemeldet, true))
            return;
        m_haupt.MsgBox({u"Ihre Auswahl konnte nicht gespeichert werden. Die Übertragung ist davon nicht betroffen."_s
                            + u"\r\n"_s + QString::number(fehler.Number()) + u":"_s + fehler.Description(),
                        desktop::Icon::Exclamation});
    }
}
