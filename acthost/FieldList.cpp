// The list that gives the contact table's columns their numbers and their German names.
#include "acthost/FieldList.h"

#include <algorithm>
#include <limits>

#include <QStringDecoder>
#include <QStringList>

#include "platform/errors/RunTimeError.h"
#include "platform/storage/FileSystem.h"
#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;

namespace acthost {

namespace {

constexpr int kInvalidCall = 5;
constexpr int kFileNotFound = 53;

RunTimeError listError(const QString &text)
{
    return {kInvalidCall, u"Feldliste: "_s + text};
}

} // namespace

bool Field::isPhone() const
{
    for (const QString &word : {u"telefon"_s, u"fax"_s, u"handy"_s, u"mobil"_s}) {
        if (label.contains(word, Qt::CaseInsensitive) || column.contains(word, Qt::CaseInsensitive))
            return true;
    }
    return false;
}

FieldList FieldList::parse(const QByteArray &text)
{
    QStringDecoder decode(QStringDecoder::Utf8);
    const QString decoded = decode(text);
    if (decode.hasError())
        throw listError(u"Die Datei ist nicht in UTF-8 geschrieben."_s);

    FieldList list;
    int number = 0;
    for (const QString &line : decoded.split(u'\n')) {
        ++number;
        const QString content = line.trimmed();
        if (content.isEmpty() || content.startsWith(u'#'))
            continue;
        try {
            list.add(content);
        } catch (const RunTimeError &error) {
            throw listError(u"Zeile %1: %2"_s.arg(number).arg(error.Description()));
        }
    }
    if (!list.find(field::UniqueId))
        throw listError(u"Das Feld %1 (eindeutige Kennung) fehlt."_s.arg(field::UniqueId));
    return list;
}

FieldList FieldList::read(const QString &path)
{
    try {
        return parse(storage::readWholeFile(path));
    } catch (const storage::StorageError &error) {
        throw RunTimeError(kFileNotFound, u"Die Feldliste kann nicht gelesen werden: "_s + error.text());
    }
}

const Field *FieldList::find(int number) const
{
    const auto found = std::find_if(m_fields.begin(), m_fields.end(),
                                    [number](const Field &candidate) { return candidate.number == number; });
    return found == m_fields.end() ? nullptr : &*found;
}

void FieldList::add(const QString &line)
{
    const QStringList parts = line.split(u'|');
    bool isNumber = false;
    const int number = parts[0].trimmed().toInt(&isNumber);
    if (parts.size() != 3 || !isNumber || number < 1 || number > std::numeric_limits<short>::max())
        throw RunTimeError(kInvalidCall, u"Erwartet wird „Nummer|SPALTE|Bezeichnung“, nicht „%1“."_s.arg(line));

    const Field added{number, parts[1].trimmed(), parts[2].trimmed()};
    for (const Field &known : m_fields) {
        if (known.number == added.number || known.column.compare(added.column, Qt::CaseInsensitive) == 0)
            throw RunTimeError(kInvalidCall,
                               u"Die Nummer %1 oder die Spalte „%2“ kommt schon vor."_s.arg(
                                   QString::number(added.number), added.column));
    }
    m_fields.push_back(added);
}

} // namespace acthost
