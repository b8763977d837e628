// Hand-made tables and readable results for the tests of the dBASE driver.
#include "RawTable.h"

#include <QFile>
#include <QtEndian>

using namespace Qt::StringLiterals;

QByteArray littleEndian(quint32 number, int size)
{
    const quint32 bytes = qToLittleEndian(number);
    return {reinterpret_cast<const char *>(&bytes), size};
}

QByteArray rawTable(const std::vector<RawField> &fields, const std::vector<QByteArrayList> &records, int version,
                    int codepage)
{
    QByteArray list;
    int length = 1;
    for (const RawField &field : fields) {
        list += QByteArray(field.name).leftJustified(11, '\0') + field.type + QByteArray(4, '\0');
        list += static_cast<char>(field.width);
        list += static_cast<char>(field.decimals) + QByteArray(14, '\0');
        length += field.width;
    }
    QByteArray file(1, static_cast<char>(version));
    file += "\x63\x0C\x1F" + littleEndian(quint32(records.size()), 4);
    file += littleEndian(quint32(32 + list.size() + 1), 2) + littleEndian(quint32(length), 2) + QByteArray(17, '\0');
    file += static_cast<char>(codepage);
    file += QByteArray(2, '\0') + list + '\x0D';
    for (const QByteArrayList &record : records) {
        file += record.front();
        for (std::size_t i = 0; i < fields.size(); ++i)
            file += record.value(qsizetype(i) + 1).leftJustified(fields[i].width, ' ');
    }
    return file + '\x1A';
}

QByteArray rawMemos(const QByteArrayList &memos)
{
    const auto bigEndian = [](qsizetype number) { return littleEndian(qbswap(quint32(number)), 4); };
    QByteArray file = (bigEndian(8 + memos.size()) + QByteArray("\0\0\0\x40", 4)).leftJustified(512, '\0');
    for (const QByteArray &memo : memos)
        file += (bigEndian(1) + bigEndian(memo.size()) + memo).leftJustified(64, '\0');
    return file;
}

void Folder::put(const QString &name, const QByteArray &content) const
{
    QFile file(path(name));
    // Not emptied first: some file systems then wait for the disk.
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.write(content) == content.size() && file.resize(content.size()));
}

QByteArray Folder::get(const QString &name) const
{
    QFile file(path(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

std::unique_ptr<storage::Database> Folder::open(bool readOnly) const
{
    return dbf::DbfDriver().open({.path = path(), .readOnly = readOnly});
}

void putCustomers(const Folder &folder)
{
    folder.put(u"KUNDEN.DBF"_s,
               rawTable({{"NAME", 'C', 10}, {"ZAHL", 'N', 6, 2}, {"TAG", 'D', 8}, {"JA", 'L', 1}, {"NOTIZ", 'M', 10}},
                        {{" ", "M\xFCller", " 12.50", "20020301", "T", "         8"},
                         {"*", "Weg"},
                         {" ", "Gr\xFC\xDF\x65", " -1.00", {}, "F"}},
                        0xF5));
    folder.put(u"KUNDEN.FPT"_s, rawMemos({"sch\xF6n"}));
}

namespace {

QString textOf(const storage::Value &value)
{
    if (const bool *truth = std::get_if<bool>(&value))
        return *truth ? u"ja"_s : u"nein"_s;
    if (const auto *number = std::get_if<double>(&value))
        return QString::number(*number, 'g', 15);
    if (const auto *moment = std::get_if<storage::DateTime>(&value))
        return QString::number(moment->days);
    return storage::isNull(value) ? u"-"_s : std::get<QString>(value);
}

} // namespace

QStringList rowsOf(storage::Table &table)
{
    QStringList rows;
    for (auto cursor = table.scan(); cursor->next();) {
        QStringList values;
        for (int i = 0; i < int(table.schema().columns.size()); ++i)
            values += textOf(cursor->value(i));
        rows += values.join(u'|');
    }
    return rows;
}

std::optional<storage::StorageError::Kind> kindOf(const std::function<void()> &action, const QString &mention)
{
    try {
        action();
    } catch (const storage::StorageError &error) {
        EXPECT_TRUE(error.text().contains(mention)) << error.what();
        return error.kind();
    }
    return std::nullopt;
}
