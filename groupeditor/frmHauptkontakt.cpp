// The main window: how it is loaded, and how its buttons and warnings follow the group.
#include "groupeditor/frmHauptkontakt.h"

#include <algorithm>

#include <QKeyEvent>
#include <QScopeGuard>
#include <QScopedValueRollback>

#include "groupeditor/frmFehlerHptkt.h"
#include "startup/Bilder.h"
#include "ui_frmHauptkontakt.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// A role must be told apart in a selected row, too: left alone, the style would tint its icon there.
QIcon lade(const QString &datei)
{
    const QIcon geladen(datei);
    QIcon icon;
    for (const QSize &groesse : geladen.availableSizes()) {
        for (const QIcon::Mode zustand : {QIcon::Normal, QIcon::Selected})
            icon.addPixmap(geladen.pixmap(groesse), zustand);
    }
    return icon;
}

// What blinks, and the button before it, keep their place when they are hidden: nothing may jump.
void behaltePlatz(QWidget *widget)
{
    QSizePolicy regel = widget->sizePolicy();
    regel.setRetainSizeWhenHidden(true);
    widget->setSizePolicy(regel);
}

// White on dark red is readable on light and dark desktops alike; the filled box shows without the colour, too.
void gestalteAlsWarnung(QLabel *label)
{
    QPalette farben = label->palette();
    farben.setColor(QPalette::Window, QColor(0xb0, 0x00, 0x20));
    farben.setColor(QPalette::WindowText, Qt::white);
    label->setPalette(farben);
    label->setAutoFillBackground(true);
    label->setMargin(4);
    label->hide();
}

} // namespace

frmHauptkontakt::frmHauptkontakt(Haupt &haupt)
    : m_haupt(haupt)
    , m_ui(std::make_unique<Ui::frmHauptkontakt>())
{
    setWindowFlags(Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowMinMaxButtonsHint
                   | Qt::WindowCloseButtonHint);
    m_ui->setupUi(this);
    for (QWidget *widget : std::initializer_list<QWidget *>{m_ui->cmdHauptkontakt, m_ui->lbHaupt, m_ui->lbFirma})
        behaltePlatz(widget);
    for (QLabel *warnung : {m_ui->lbHaupt, m_ui->lbFirma})
        gestalteAlsWarnung(warnung);
    setzeKnoepfe(0); // where a flag number leaves the buttons as they are, a main contact can be chosen
    verbinde();
    Form_Load();
}

frmHauptkontakt::~frmHauptkontakt() = default;

KontaktListe &frmHauptkontakt::lvSuche() const
{
    return *m_ui->lvSuchergebnis;
}

KontaktListe &frmHauptkontakt::lvMitglieder() const
{
    return *m_ui->lvMitglieder;
}

void frmHauptkontakt::verbinde()
{
    const auto befehl
        = [this](void (frmHauptkontakt::*code)()) { return guarded(m_haupt, [this, code] { einzeln(code); }); };
    const auto klick = [this, befehl](QPushButton *knopf, void (frmHauptkontakt::*code)()) {
        connect(knopf, &QPushButton::clicked, this, befehl(code));
    };
    klick(m_ui->cmdSuchen, &frmHauptkontakt::cmdSuchen_Click);
    klick(m_ui->cmdÜbernehmen, &frmHauptkontakt::cmdÜbernehmen_Click);
    klick(m_ui->cmdEntfernen, &frmHauptkontakt::cmdEntfernen_Click);
    klick(m_ui->cmdHauptkontakt, &frmHauptkontakt::cmdHauptkontakt_Click);
    klick(m_ui->cmdFirmaAngleichen, &frmHauptkontakt::cmdFirmaAngleichen_Click);
    klick(m_ui->cmdTransfer, &frmHauptkontakt::cmdTransfer_Click);
    klick(m_ui->cmdFertig, &frmHauptkontakt::cmdFertig_Click);
    klick(m_ui->cmdInfo, &frmHauptkontakt::cmdInfo_Click);
    connect(m_ui->cmdAbbruch, &QPushButton::clicked, this, [this] { reject(); });
    connect(m_ui->tbSuche, &QLineEdit::returnPressed, this, befehl(&frmHauptkontakt::cmdSuchen_Click));
    connect(m_ui->lvSuchergebnis, &QTreeWidget::itemDoubleClicked, this, befehl(&frmHauptkontakt::cmdÜbernehmen_Click));
    connect(&m_Timer1, &QTimer::timeout, this, guarded(m_haupt, [this] { Timer1_Timer(); }));
}

// Commands handle events while they run: another one must not meet half-changed lists.
void frmHauptkontakt::einzeln(void (frmHauptkontakt::*befehl)())
{
    if (m_befehlLaeuft)
        return;
    const QScopedValueRollback laeuft(m_befehlLaeuft, true);
    setCursor(Qt::BusyCursor); // some commands go on until the user changes something
    lvSuche().halteAuswahl(true);
    lvMitglieder().halteAuswahl(true);
    const auto danach = qScopeGuard([this] {
        unsetCursor();
        sperre(false);
        lvSuche().halteAuswahl(false);
        lvMitglieder().halteAuswahl(false);
    });
    (this->*befehl)();
}

// The command goes on when the user has changed something, or looks at the same again: until then its kind is off.
void frmHauptkontakt::warteAufBenutzer()
{
    sperre(true);
    m_haupt.DoEventsUndWarten();
}

// All buttons but "Abbruch". What the flag number has switched off stays so.
void frmHauptkontakt::sperre(bool gesperrt)
{
    if (m_gesperrt == gesperrt)
        return;
    m_gesperrt = gesperrt;
    if (gesperrt)
        m_fokusVorher = focusWidget();
    for (QPushButton *knopf : findChildren<QPushButton *>())
        knopf->setEnabled(knopf == m_ui->cmdAbbruch || (!gesperrt && !knopf->isHidden()));
    if (gesperrt && m_fokusVorher && !m_fokusVorher->isEnabled())
        lvSuche().setFocus(); // where the item can be deselected
    else if (!gesperrt && m_fokusVorher && m_fokusVorher->isEnabled())
        m_fokusVorher->setFocus();
}

void frmHauptkontakt::Form_Load()
{
    m_Timer1.start(400ms);
    const QString suchfeld = m_haupt.SyncFelder.SyncFeldname(m_haupt.konfiguration.IdSuchFeld1Name);
    m_ui->tbSuche->setText(m_haupt.Kontakt->Daten(suchfeld).left(4));
    zeigeFirma(m_haupt.Kontakt->Daten(u"Firma"_s));
    richteListenEin();
    lvMitglieder().clear();
    lvMitglieder().haengeAn(*m_haupt.Kontakt);
    checkFlags();
    if (m_haupt.konfiguration.AutoSuche)
        sucheKontakte(m_ui->tbSuche->text(), m_haupt.Kontakt->Mandant, m_haupt.Kontakt->Nummer);
    checkFlags();
    if (m_bilderFehlen)
        m_haupt.MsgBox({u"Die Symbole der Kontakte fehlen (bilder/icons). Ihre Rolle steht im Hinweistext."_s});
}

void frmHauptkontakt::richteListenEin()
{
    QStringList felder;
    for (qint16 i = 1; i <= m_haupt.SyncFelder.FelderAnzahl(); ++i)
        felder += m_haupt.SyncFelder.SyncFeldname(i);
    const std::array<QString, 3> namen
        = {u"bilder/icons/unbek.ico"_s, u"bilder/icons/neben.ico"_s, u"bilder/icons/haupt.ico"_s};
    KontaktListe::Icons icons;
    for (std::size_t i = 0; i < namen.size(); ++i)
        icons[i] = lade(bilddatei(m_haupt.umgebung().programmordner, namen[i]));
    lvSuche().richteEin(felder, icons);
    lvMitglieder().richteEin(felder, icons);
    m_bilderFehlen = std::any_of(icons.begin(), icons.end(), [](const QIcon &icon) { return icon.isNull(); });
}

void frmHauptkontakt::checkFlags()
{
    m_hatHaupt = false;
    m_hatNeben = false;
    bool schonInPck = false;
    for (int i = 1; i <= lvMitglieder().Anzahl(); ++i) {
        const QTreeWidgetItem &item = lvMitglieder().Item(i);
        m_hatHaupt = m_hatHaupt || KontaktListe::icon(item) == KontaktListe::Haupt;
        m_hatNeben = m_hatNeben || KontaktListe::icon(item) == KontaktListe::Neben;
        schonInPck = schonInPck || !(lvMitglieder().nummer(item).isEmpty() || lvMitglieder().mandant(item).isEmpty());
    }
    setzeKnoepfe(8 * m_hatHaupt + 4 * m_hatNeben + 1 * schonInPck);
    pruefeFirmennamen();
}

void frmHauptkontakt::setzeKnoepfe(int flagzahl)
{
    const auto setze = [this](QPushButton *knopf, bool verfuegbar) {
        knopf->setEnabled(verfuegbar && !m_gesperrt);
        knopf->setVisible(verfuegbar);
    };
    const auto verfuegbar = [this, setze](bool hauptkontakt, bool transfer, bool fertig) {
        setze(m_ui->cmdHauptkontakt, hauptkontakt);
        setze(m_ui->cmdTransfer, transfer);
        setze(m_ui->cmdFertig, fertig);
    };
    switch (flagzahl) {
    case 0:
    case 4:
    case 5:
    case 6:
    case 7:
        return verfuegbar(true, false, false);
    case 8:
    case 12:
        return verfuegbar(false, true, false);
    case 9:
        return verfuegbar(false, false, false);
    case 10:
    case 14:
    case 15:
        return verfuegbar(false, true, true);
    case 11:
    case 13:
        return verfuegbar(false, false, true);
    default:
        m_haupt.MsgBox({u"Flagzahl = "_s + QString::number(flagzahl)});
    }
}

void frmHauptkontakt::pruefeFirmennamen()
{
    for (int i = 1; i <= lvMitglieder().Anzahl(); ++i) {
        m_firmaGleich = lvMitglieder().firma(lvMitglieder().Item(i)) == lvMitglieder().firma(lvMitglieder().Item(1));
        if (!m_firmaGleich)
            return;
    }
}

void frmHauptkontakt::zeigeFirma(const QString &firma)
{
    m_ui->tbFirma->setText(firma);
    m_ui->tbFirma->setCursorPosition(0); // of a long name the beginning shows
}

void frmHauptkontakt::Timer1_Timer()
{
    m_ui->lbHaupt->setVisible(!m_ui->cmdHauptkontakt->isHidden() && m_ui->lbHaupt->isHidden());
    m_ui->lbFirma->setVisible(!m_firmaGleich && m_ui->lbFirma->isHidden());
}

void frmHauptkontakt::reject()
{
    m_haupt.ausgefuehrt([this] { cmdAbbruch_Click(); });
}

void frmHauptkontakt::keyPressEvent(QKeyEvent *ereignis)
{
    if (!ereignis->matches(QKeySequence::Cancel))
        QDialog::keyPressEvent(ereignis);
}
