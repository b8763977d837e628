// The status window: one line of text and a bar that moves while the program waits.
#include "startup/frmStatus.h"

#include <QCloseEvent>
#include <QScreen>

#include "ui_frmStatus.h"

frmStatus::frmStatus()
    : m_ui(std::make_unique<Ui::frmStatus>())
{
    setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    setAttribute(Qt::WA_ShowWithoutActivating); // the keyboard stays with the window that has work to do
    m_ui->setupUi(this);
    m_ui->ProgressBar1->setValue(0);
    adjustSize(); // in the middle of the screen, where the boxes that it carries belong
    move(screen()->availableGeometry().center() - rect().center());
    connect(&m_Timer1, &QTimer::timeout, this, [this] { Timer1_Timer(); });
}

frmStatus::~frmStatus() = default;

QString frmStatus::lbStatus() const
{
    return m_ui->lbStatus->text();
}

void frmStatus::setze_lbStatus(const QString &text)
{
    m_ui->lbStatus->setText(text);
}

int frmStatus::ProgressBar1() const
{
    return m_ui->ProgressBar1->value();
}

void frmStatus::setze_ProgressBar1(int wert)
{
    m_ui->ProgressBar1->setValue(wert);
}

void frmStatus::Timer1_Interval(int millisekunden)
{
    if (millisekunden > 0)
        m_Timer1.start(millisekunden);
    else
        m_Timer1.stop();
}

void frmStatus::Timer1_Timer()
{
    m_ui->ProgressBar1->setValue((m_ui->ProgressBar1->value() + 1) % 99);
}

void frmStatus::closeEvent(QCloseEvent *ereignis)
{
    ereignis->ignore();
}
