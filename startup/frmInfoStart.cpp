// The information window: who made the program, its version, and what there is to say at the moment.
#include "startup/frmInfoStart.h"

#include <QIcon>
#include <QStringList>

#include "startup/Bilder.h"
#include "startup/Hersteller.h"
#include "ui_frmInfoStart.h"
#include "util/Zeichenketten.h"

using namespace Qt::StringLiterals;

frmInfoStart::frmInfoStart(const QString &programmordner)
    : m_ui(std::make_unique<Ui::frmInfoStart>())
{
    m_ui->setupUi(this);
    m_ui->lbVersion->setText(Trim(QStringLiteral(VELDRAK_VERSION)));
    const QStringList hersteller = Hersteller::zeilen();
    m_ui->Text1->setPlainText(hersteller.join(u"\r\n"_s));
    m_ui->Text1->setFixedHeight(m_ui->Text1->fontMetrics().lineSpacing() * static_cast<int>(hersteller.size() + 2));
    m_ui->Image1->setPixmap(QIcon(bilddatei(programmordner, u"bilder/icons/veldrak.ico"_s)).pixmap(48, 48));
    connect(m_ui->Command1, &QPushButton::clicked, this, [this] { hide(); });
}

frmInfoStart::~frmInfoStart() = default;

QString frmInfoStart::txbInfo() const
{
    return m_ui->txbInfo->toPlainText();
}

void frmInfoStart::setze_txbInfo(const QString &text)
{
    m_ui->txbInfo->setPlainText(text);
}
