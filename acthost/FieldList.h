#pragma once

#include <vector>

#include <QByteArray>
#include <QString>

namespace acthost {

/// Numbers of the fields that have a place of their own on the contact card.
namespace field {
constexpr int UniqueId = 1;
constexpr int Company = 2;
constexpr int FirstName = 3;
constexpr int LastName = 25;
constexpr int FullName = 26;
constexpr int Notes = 21;
constexpr int AccountNumber = 60;
constexpr int Client = 61;
constexpr int Role = 62;
} // namespace field

struct Field {
    int number = 0; ///< the identifier by which automation names the field
    QString column; ///< in the contact table
    QString label; ///< German, for people

    /// Whether the field holds phone numbers: told by its label or column.
    bool isPhone() const;
};

/// The field identifiers of a contact database, in the order of the list.
///
/// Format     UTF-8 text, one field a line: `number|COLUMN|Bezeichnung`; lines that are empty or begin with '#' do not
///            count.
class FieldList
{
public:
    /// Throws RunTimeError (5), naming the line, for a line that is none, a number or column named twice, or a list
    /// without the field of the unique identifier.
    static FieldList parse(const QByteArray &text);
    /// Throws RunTimeError (53) as well, for a file that cannot be read.
    static FieldList read(const QString &path);

    const std::vector<Field> &fields() const { return m_fields; }
    /// nullptr if no field has this number.
    const Field *find(int number) const;

private:
    void add(const QString &line);

    std::vector<Field> m_fields;
};

} // namespace acthost
