// The question for a client's password.
#include "transfer/frmMandantenpasswort.h"

#include "ui_frmMandantenpasswort.h"

using namespace Qt::StringLiterals;

frmMandantenpasswort::frmMandantenpasswort(Haupt &haupt, QWidget *parent)
    : QDialog(parent)
    , m_haupt(haupt)
    , m_ui(std::make_unique<Ui::frmMandantenpasswort>())
{
    m_ui->setupUi(this);
    connect(m_ui->cmdOK, &QPushButton::clicked, this, guarded(haupt, [this] { cmdOK_Click(); }));
    connect(m_ui->cmdAbbruch, &QPushButton::clicked, this, [this] { reject(); });
}

frmMandantenpasswort::~frmMandantenpasswort() = default;

void frmMandantenpasswort::zeige(const QString &Mandant)
{
    m_ui->txbMandant->setText(Mandant);
    m_ui->txbPassword->clear();
    exec();
    if (parentWidget() && parentWidget()->isVisible())
        parentWidget()->activateWindow(); // without it, some desktops leave the keyboard nowhere
    if (m_haupt.beendet())
        throw ProgrammBeendet(); // while the question was open
}

// Shown again right after it was hidden, it would not get the keyboard everywhere.
void frmMandantenpasswort::showEvent(QShowEvent *ereignis)
{
    QDialog::showEvent(ereignis);
    m_ui->txbPassword->setFocus(Qt::TabFocusReason); // with its frame
    activateWindow();
}

QString frmMandantenpasswort::Kennwort() const
{
    return m_ui->txbPassword->text();
}

void frmMandantenpasswort::cmdOK_Click()
{
    if (!m_ui->txbPassword->text().isEmpty()) {
        flagKennwortAbbruch = false;
        hide();
        return;
    }
    m_haupt.MsgBox({u"Ungültiges Kennwort. Bitte versuchen Sie es noch einmal!"_s, desktop::Icon::None,
                    desktop::Buttons::Ok, u"Anmeldung"_s});
    m_ui->txbPassword->setFocus();
    m_ui->txbPassword->selectAll();
}

void frmMandantenpasswort::cmdAbbruch_Click()
{
    flagKennwortAbbruch = true;
    hide();
}

void frmMandantenpasswort::reject()
{
    cmdAbbruch_Click();
}
