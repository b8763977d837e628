// Opens the file that the user named.
#include "tools/veldrak-db/Source.h"

#include <cstdio>

#include <QFile>
#include <QFileInfo>

#include "platform/dbf/DbfDriver.h"
#include "platform/jet/JetDatabase.h"
#include "platform/storage/StorageError.h"
#include "tools/veldrak-db/Terminal.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

Source::Source(const QString &path, bool fromInput)
    : m_path(path)
    , m_isDbf(path.endsWith(u".dbf"_s, Qt::CaseInsensitive))
{
    if (!QFileInfo::exists(path))
        throw StorageError(StorageError::Missing, u"Die Datei %1 gibt es nicht."_s.arg(path));
    if (fromInput)
        m_password = passwordFromInput();
    else if (!m_isDbf && !readHeader(path).password.isEmpty() && terminal::hasInput())
        m_password = terminal::askPassword(u"Kennwort für %1: "_s.arg(path));
}

QString Source::tableName() const
{
    return QFileInfo(m_path).completeBaseName();
}

QString Source::folder() const
{
    return QFileInfo(m_path).absolutePath();
}

std::unique_ptr<storage::Database> Source::open() const
{
    if (m_isDbf)
        return dbf::DbfDriver().open({folder(), {}, true});
    return jet::JetDriver().open({m_path, m_password, true});
}

storage::Table &Source::table(storage::Database &database, const QString &name) const
{
    if (name.isEmpty() && !m_isDbf)
        throw StorageError(StorageError::NoSuchTable, u"Es fehlt der Name der Tabelle."_s);
    const QString &wanted = name.isEmpty() ? tableName() : name;
    storage::Table *table = database.table(wanted);
    if (table == nullptr)
        throw StorageError(StorageError::NoSuchTable, u"Die Tabelle %1 gibt es nicht."_s.arg(wanted), wanted);
    return *table;
}

jet::FileHeader readHeader(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw StorageError(StorageError::InputOutput, u"%1: %2"_s.arg(path, file.errorString()));
    const QByteArray start = file.read(static_cast<qint64>(jet::FileHeader::bytesNeeded));
    return jet::FileHeader::parse(std::as_bytes(std::span(start)));
}

QString passwordFromInput()
{
    QByteArray line;
    for (int character = std::getchar(); character != EOF && character != '\n'; character = std::getchar())
        line += static_cast<char>(character);
    if (line.endsWith('\r'))
        line.chop(1);
    return QString::fromUtf8(line);
}
