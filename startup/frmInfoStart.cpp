// The information window: who made the program, its version, and what there is to say at the moment.
#include "startup/frmInfoStart.h"

#include <QIcon>
#include <QStringList>

#include "ui_frmInfoStart.h"

using namespace Qt::StringLiterals;

frmInfoStart::frmInfoStart(const QString &programmordner)
    : m_ui(std::make_unique<Ui::frmInfoStart>())
{
    m_ui->setupUi(this);
    m_ui->lbVersion->setText(QStringLiteral(VELDRAK_VERSION).trimmed());
    const QStringList hersteller = {
        u"VELDRAK-Projekt"_s,
        u"ein freies Projekt für Büros mit ACT! und PC-Kaufmann"_s,
        u"E-Mail: nur über die Projektseite"_s,
        u"Internet: die Projektseite, von der Sie das Programm haben"_s,
    };
    m_ui->Text1->setPlainText(hersteller.join(u"\r\n"_s));
    m_ui->Text1->setFixedHeight(m_ui->Text1->fontMetrics().lineSpacing() * static_cast<int>(hersteller.size() + 2));
    m_ui->Image1->setPixmap(QIcon(programmordner + u"/bilder/icons/veldrak.ico"_s).pixmap(48, 48));
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
