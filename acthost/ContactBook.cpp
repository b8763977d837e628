// The contact table behind the card and the automation interface.
#include "acthost/ContactBook.h"

#include <algorithm>

#include <QCollator>
#include <QFileInfo>

#include "acthost/FieldText.h"
#include "platform/errors/RunTimeError.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

namespace acthost {

namespace {

constexpr int kInvalidCall = 5;
constexpr int kDeviceFailure = 57;
constexpr int kDiskFull = 61;
constexpr int kPermissionDenied = 70;
constexpr int kFileAccess = 75;

int numberOf(StorageError::Kind kind)
{
    switch (kind) {
    case StorageError::Locked:
        return kPermissionDenied;
    case StorageError::ReadOnly:
        return kFileAccess;
    case StorageError::DiskFull:
        return kDiskFull;
    case StorageError::Damaged:
    case StorageError::InputOutput:
        return kDeviceFailure;
    default:
        return kInvalidCall;
    }
}

// The one border between the table's failures and those that automation and people get to see.
template <typename Action> auto translated(const Action &action)
{
    try {
        return action();
    } catch (const StorageError &error) {
        throw RunTimeError(numberOf(error.kind()), error.text());
    }
}

QString withoutTrailingBlanks(const QString &text)
{
    qsizetype size = text.size();
    while (size > 0 && text[size - 1] == u' ')
        --size;
    return text.left(size);
}

} // namespace

ContactBook::ContactBook(storage::Driver &driver, const QString &path, FieldList fields)
    : m_fields(std::move(fields))
    , m_path(QFileInfo(path).absoluteFilePath())
{
    const QFileInfo file(m_path);
    if (!file.isFile())
        throw RunTimeError(kFileAccess, u"Die Kontaktdatenbank „%1“ gibt es nicht."_s.arg(m_path));
    translated([&] {
        m_database = driver.open({.path = file.absolutePath()});
        m_table = m_database->table(file.completeBaseName());
    });
    if (!m_table)
        throw RunTimeError(kFileAccess, u"„%1“ ist keine Kontaktdatenbank."_s.arg(m_path));
    for (const Field &field : m_fields.fields()) {
        if (!m_table->schema().find(field.column))
            throw RunTimeError(kInvalidCall,
                               u"Die Kontaktdatenbank hat keine Spalte „%1“ (Feld %2, %3)."_s.arg(
                                   field.column, QString::number(field.number), field.label));
    }
    reload();
}

void ContactBook::reload()
{
    std::vector<Contact> contacts;
    translated([&] {
        for (const auto cursor = m_table->scan(); cursor->next();)
            contacts.push_back(contactAt(*cursor));
    });
    QCollator order{QLocale(QLocale::German)};
    order.setCaseSensitivity(Qt::CaseInsensitive);
    std::stable_sort(contacts.begin(), contacts.end(), [&order](const Contact &left, const Contact &right) {
        const int byCompany = order.compare(left.company, right.company);
        return byCompany != 0 ? byCompany < 0 : order.compare(left.name, right.name) < 0;
    });
    m_contacts = std::move(contacts);
}

std::optional<storage::RowId> ContactBook::find(const QString &uniqueId) const
{
    const QString wanted = withoutTrailingBlanks(uniqueId);
    const auto found = std::find_if(m_contacts.begin(), m_contacts.end(),
                                    [&wanted](const Contact &contact) { return contact.uniqueId == wanted; });
    return found == m_contacts.end() ? std::nullopt : std::optional(found->row);
}

std::optional<std::size_t> ContactBook::positionOf(storage::RowId row) const
{
    const auto found = std::find_if(m_contacts.begin(), m_contacts.end(),
                                    [row](const Contact &contact) { return contact.row == row; });
    if (found == m_contacts.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - m_contacts.begin());
}

QVariant ContactBook::value(storage::RowId row, int number) const
{
    const Target wanted = target(number);
    return automationValue(*wanted.field, read(row, wanted.column));
}

QString ContactBook::text(storage::RowId row, int number) const
{
    const Target wanted = target(number);
    return cardText(*wanted.field, read(row, wanted.column));
}

void ContactBook::write(storage::RowId row, int number, const QString &value)
{
    const Target wanted = target(number);
    if (number == field::UniqueId) {
        if (withoutTrailingBlanks(value) != this->value(row, number).toString())
            throw RunTimeError(kInvalidCall, u"Die eindeutige Kennung eines Kontakts ist nicht änderbar."_s);
        return;
    }
    const storage::Column &column = m_table->schema().columns[static_cast<std::size_t>(wanted.column)];
    const storage::Assignment assignment{wanted.column, storedValue(*wanted.field, column, value)};
    translated([&] { m_table->update(row, std::span(&assignment, 1)); });

    if (const std::optional<std::size_t> position = positionOf(row)) {
        translated([&] {
            if (const auto cursor = m_table->row(row))
                m_contacts[*position] = contactAt(*cursor);
        });
    }
}

ContactBook::Target ContactBook::target(int number) const
{
    const Field *field = m_fields.find(number);
    if (!field)
        throw RunTimeError(kInvalidCall, u"Ein Feld mit der Nummer %1 gibt es nicht."_s.arg(number));
    return {field, *m_table->schema().find(field->column)};
}

storage::Value ContactBook::read(storage::RowId row, int column) const
{
    return translated([&] {
        const auto cursor = m_table->row(row);
        if (!cursor)
            throw RunTimeError(kInvalidCall, u"Den Kontakt gibt es nicht mehr."_s);
        return cursor->value(column);
    });
}

QString ContactBook::textOrNothing(const storage::Cursor &cursor, int number) const
{
    if (!m_fields.find(number))
        return {};
    const Target wanted = target(number);
    return cardText(*wanted.field, cursor.value(wanted.column));
}

Contact ContactBook::contactAt(const storage::Cursor &cursor) const
{
    QString name = textOrNothing(cursor, field::FullName);
    if (name.isEmpty()) {
        name
            = u"%1 %2"_s.arg(textOrNothing(cursor, field::FirstName), textOrNothing(cursor, field::LastName)).trimmed();
    }
    return {cursor.rowId(), withoutTrailingBlanks(textOrNothing(cursor, field::UniqueId)),
            textOrNothing(cursor, field::Company), name};
}

} // namespace acthost
