// The dialog about several main contacts in one group.
#include "groupeditor/frmFehlerHptkt.h"

#include <utility>

#include <QApplication>
#include <QHideEvent>
#include <QWindow>

#include "startup/ListenZeile.h"
#include "ui_frmFehlerHptkt.h"

using namespace std::chrono_literals;

frmFehlerHptkt::frmFehlerHptkt(KontaktListe &lvMitglieder, QWidget &hauptfenster, std::function<void()> beiOK)
    : m_hauptfenster(hauptfenster)
    , m_ui(std::make_unique<Ui::frmFehlerHptkt>())
    , m_beiOK(std::move(beiOK))
{
    m_ui->setupUi(this);
    connect(m_ui->cmdOK, &QPushButton::clicked, this, [this] { cmdOK_Click(); });
    connect(&m_Timer1, &QTimer::timeout, this, [this] { Timer1_Timer(); });
    m_Timer1.setInterval(300ms);
    bleibeVor(hauptfenster);
    Form_Load(lvMitglieder);
}

frmFehlerHptkt::~frmFehlerHptkt() = default;

// A window of its own, since both are unloaded by themselves, but never behind the main window.
void frmFehlerHptkt::bleibeVor(QWidget &hauptfenster)
{
    winId(); // makes the windows, as does the next
    hauptfenster.winId();
    windowHandle()->setTransientParent(hauptfenster.windowHandle());
}

void frmFehlerHptkt::Form_Load(KontaktListe &lvMitglieder)
{
    for (int i = 1; i <= lvMitglieder.Anzahl(); ++i) {
        QTreeWidgetItem &item = lvMitglieder.Item(i);
        if (KontaktListe::icon(item) != KontaktListe::Haupt)
            continue;
        lvMitglieder.setzeIcon(item, KontaktListe::Neben);
        m_ui->lbFirma->setText(lvMitglieder.firma(item));
        fuegeZeileAn(*m_ui->lstKontakte, lvMitglieder.feld(item, 1));
    }
}

void frmFehlerHptkt::showEvent(QShowEvent *ereignis)
{
    QDialog::showEvent(ereignis);
    m_ui->cmdOK->setFocus();
    if (ereignis->spontaneous())
        return;
    m_Timer1.start(); // at a later showing, too: in front while it is open
    m_neuGezeigt = true;
}

// Some window managers do not activate it by themselves, and a main window that is only now being shown would take the
// keyboard back. It waits for boxes, and for a main window that was put away.
void frmFehlerHptkt::Timer1_Timer()
{
    if (QApplication::activeModalWidget() || m_hauptfenster.isMinimized())
        return;
    if (isMinimized())
        showNormal();
    show();
    raise();
    if (std::exchange(m_neuGezeigt, false))
        activateWindow();
}

// Hidden by its button, or with all forms at the program's end: then it must not come back by itself.
void frmFehlerHptkt::hideEvent(QHideEvent *ereignis)
{
    if (!ereignis->spontaneous())
        m_Timer1.stop();
    QDialog::hideEvent(ereignis);
}

void frmFehlerHptkt::cmdOK_Click()
{
    hide();
    m_beiOK();
}
