#pragma once

#include <memory>
#include <optional>
#include <vector>

#include <QString>
#include <QVariant>

#include "acthost/FieldList.h"
#include "platform/storage/Storage.h"

namespace acthost {

/// What the contact list shows of a contact.
struct Contact {
    storage::RowId row = 0;
    QString uniqueId;
    QString company;
    QString name;
};

/// The contact table, by field numbers.
///
/// Errors     every member that touches the table throws RunTimeError; its text names the field or the table.
/// Owns       the open database.
class ContactBook
{
public:
    /// `path` names the table's file. Throws when it cannot be opened or lacks a column of the list.
    ContactBook(storage::Driver &driver, const QString &path, FieldList fields);

    const FieldList &fields() const { return m_fields; }
    QString path() const { return m_path; } ///< absolute

    /// Reads the contacts anew, in the order of company and name.
    void reload();
    const std::vector<Contact> &contacts() const { return m_contacts; }
    /// The contact with this identifier; trailing blanks do not count.
    std::optional<storage::RowId> find(const QString &uniqueId) const;
    /// Position in contacts(); nothing for a row that is not among them.
    std::optional<std::size_t> positionOf(storage::RowId row) const;

    /// A field as automation gets it: text (dates as YYYY-MM-DD, yes/no in German) or a double.
    QVariant value(storage::RowId row, int number) const;
    /// A field as people read it.
    QString text(storage::RowId row, int number) const;
    /// Writes a field at once. A value that does not fit the column is refused, and nothing is changed.
    void write(storage::RowId row, int number, const QString &value);

private:
    struct Target {
        const Field *field;
        int column;
    };

    Target target(int number) const;
    storage::Value read(storage::RowId row, int column) const;
    QString textOrNothing(const storage::Cursor &cursor, int number) const;
    Contact contactAt(const storage::Cursor &cursor) const;

    FieldList m_fields;
    QString m_path;
    std::unique_ptr<storage::Database> m_database;
    storage::Table *m_table = nullptr; // owned by m_database
    std::vector<Contact> m_contacts;
};

} // namespace acthost
