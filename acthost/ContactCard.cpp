// The contact card: company and person on top, the field groups below, PC-Kaufmann's among them in colour.
#include "acthost/ContactCard.h"

#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QStyle>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace acthost {

namespace {

// The accent and the grey of the captions read well on a light as on a dark desktop; the rest is the desktop's own.
QString cardStyle()
{
    return uR"(
QFrame#Card { background: palette(base); }
QLabel#Company { font-size: 17pt; font-weight: 600; }
QLabel#Name { font-size: 12pt; }
QGroupBox { font-weight: 600; border: 1px solid palette(midlight); border-radius: 6px; margin-top: 10px;
    padding: 10px 8px 6px 8px; }
QGroupBox::title { subcontrol-origin: margin; left: 10px; padding: 0 4px; }
QGroupBox#PckSection { border: 2px solid #1f6fb2; background: rgba(31, 111, 178, 28); }
QGroupBox#PckSection::title { color: #1f6fb2; }
QGroupBox QLabel { font-weight: normal; padding-top: 2px; }
QGroupBox#PckSection QLabel { font-weight: 600; }
QGroupBox QLabel#Caption { color: #737983; font-weight: normal; }
QLabel[fresh="true"] { background: #ffe08a; color: black; border-radius: 3px; }
)"_s;
}

QString roleInWords(const QString &letter)
{
    if (letter == "H"_L1)
        return u"Hauptkontakt (H)"_s;
    if (letter == "N"_L1)
        return u"Nebenkontakt (N)"_s;
    return letter.isEmpty() ? u"noch nicht zugeordnet"_s : u"unbekannt (%1)"_s.arg(letter);
}

} // namespace

ContactCard::ContactCard(const ContactBook &book, QWidget *parent)
    : QFrame(parent)
    , m_book(book)
{
    setObjectName(u"Card"_s);
    setStyleSheet(cardStyle());
    auto *layout = new QGridLayout(this);
    layout->setContentsMargins(20, 16, 20, 16);
    layout->setHorizontalSpacing(16);
    layout->setColumnStretch(0, 1);
    layout->setColumnStretch(1, 1);
    buildHead(layout);

    QWidget *pck = buildSection(u"PC-Kaufmann"_s, {field::AccountNumber, field::Client, field::Role});
    pck->setObjectName(u"PckSection"_s);
    layout->addWidget(buildSection(u"Person"_s, {4, field::FirstName, field::LastName, 5}), 1, 0);
    layout->addWidget(pck, 1, 1);
    layout->addWidget(buildSection(u"Anschrift"_s, {6, 7, 8, 9, 10}), 2, 0);
    layout->addWidget(buildSection(u"Telefon und Internet"_s, {11, 12, 13, 14, 15, 16, 17}), 2, 1);
    layout->addWidget(buildSection(u"Bank"_s, {18, 19, 20}), 3, 0);
    layout->addWidget(buildSection(u"Notizen"_s, {field::Notes}), 3, 1);
    layout->addWidget(buildRest(), 4, 0, 1, 2);
    layout->setRowStretch(5, 1);

    m_calm.setSingleShot(true);
    m_calm.setInterval(2500ms);
    connect(&m_calm, &QTimer::timeout, this, [this] { calm(); });
}

void ContactCard::display(std::optional<storage::RowId> row)
{
    const bool sameContact = row && row == m_row;
    m_row = row;
    if (!sameContact)
        calm();
    for (const auto &[number, label] : m_values) {
        QString text = row ? m_book.text(*row, number) : QString();
        if (row && number == field::Role)
            text = roleInWords(text);
        if (text == label->text())
            continue;
        label->setText(text);
        if (sameContact)
            emphasize(label);
    }
    if (const auto company = m_values.find(field::Company); company != m_values.end())
        company->second->setHidden(company->second->text().isEmpty()); // then the name stands on top
}

void ContactCard::buildHead(QGridLayout *layout)
{
    auto *head = new QVBoxLayout;
    for (const auto &[number, objectName] :
         {std::pair(field::Company, u"Company"_s), std::pair(field::FullName, u"Name"_s)}) {
        QLabel *label = valueLabel(number);
        label->setObjectName(objectName);
        head->addWidget(label);
    }
    layout->addLayout(head, 0, 0, 1, 2);
}

QWidget *ContactCard::buildSection(const QString &title, const std::vector<int> &numbers)
{
    auto *section = new QGroupBox(title, this);
    auto *form = new QFormLayout(section);
    form->setHorizontalSpacing(14);
    for (const int number : numbers) {
        const Field *field = m_book.fields().find(number);
        if (!field)
            continue;
        if (numbers.size() == 1) { // the title says it all
            form->addRow(valueLabel(number));
            continue;
        }
        auto *caption = new QLabel(field->label, section);
        caption->setObjectName(u"Caption"_s);
        caption->setMinimumWidth(90);
        form->addRow(caption, valueLabel(number));
    }
    section->setHidden(form->rowCount() == 0);
    return section;
}

QWidget *ContactCard::buildRest()
{
    std::vector<int> numbers;
    for (const Field &field : m_book.fields().fields()) {
        if (!m_values.contains(field.number))
            numbers.push_back(field.number);
    }
    return buildSection(u"Weitere Felder"_s, numbers);
}

QLabel *ContactCard::valueLabel(int number)
{
    auto *label = new QLabel(this);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setWordWrap(true);
    if (m_book.fields().find(number))
        m_values.emplace(number, label);
    return label;
}

void ContactCard::emphasize(QLabel *label)
{
    label->setProperty("fresh", true);
    label->style()->polish(label);
    m_calm.start();
}

void ContactCard::calm()
{
    for (const auto &[number, label] : m_values) {
        if (!label->property("fresh").toBool())
            continue;
        label->setProperty("fresh", false);
        label->style()->polish(label);
    }
}

} // namespace acthost
