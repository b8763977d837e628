// A memory database written to a file after each change and read again when another has changed it.
#include "platform/interim/InterimFileDriver.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QDateTime>
#include <QFileInfo>
#include <QSaveFile>
#include <QUuid>

#include "platform/interim/MemoryDatabase.h"

using namespace Qt::StringLiterals;

namespace storage {

namespace {

constexpr quint32 magic = 0x1D5B0A7E;

template <typename T> QDataStream &operator<<(QDataStream &out, const std::vector<T> &list);
template <typename T> QDataStream &operator>>(QDataStream &in, std::vector<T> &list);

QDataStream &operator<<(QDataStream &out, const Value &value)
{
    out << static_cast<quint8>(value.index());
    switch (value.index()) {
    case 1:
        return out << std::get<bool>(value);
    case 2:
        return out << qint64{std::get<std::int64_t>(value)};
    case 3:
        return out << std::get<double>(value);
    case 4:
        return out << qint64{std::get<Currency>(value).tenThousandths};
    case 5:
        return out << std::get<DateTime>(value).days;
    case 6:
        return out << std::get<Decimal>(value).text;
    case 7:
        return out << std::get<QString>(value);
    case 8:
        return out << std::get<QByteArray>(value);
    default:
        return out;
    }
}

template <typename T> T taken(QDataStream &in)
{
    T value{};
    in >> value;
    return value;
}

QDataStream &operator>>(QDataStream &in, Value &value)
{
    switch (taken<quint8>(in)) {
    case 1:
        value = taken<bool>(in);
        return in;
    case 2:
        value = std::int64_t{taken<qint64>(in)};
        return in;
    case 3:
        value = taken<double>(in);
        return in;
    case 4:
        value = Currency{taken<qint64>(in)};
        return in;
    case 5:
        value = DateTime{taken<double>(in)};
        return in;
    case 6:
        value = Decimal{taken<QString>(in)};
        return in;
    case 7:
        value = taken<QString>(in);
        return in;
    case 8:
        value = taken<QByteArray>(in);
        return in;
    default:
        value = {};
        return in;
    }
}

QDataStream &operator<<(QDataStream &out, const Column &c)
{
    return out << c.name << static_cast<int>(c.type) << c.size << c.scale << c.required << c.zeroLengthAllowed
               << c.autonumber << c.defaultValue << c.validationRule << c.validationText;
}

QDataStream &operator>>(QDataStream &in, Column &c)
{
    int type = 0;
    in >> c.name >> type >> c.size >> c.scale >> c.required >> c.zeroLengthAllowed >> c.autonumber >> c.defaultValue
        >> c.validationRule >> c.validationText;
    c.type = static_cast<Type>(type);
    return in;
}

QDataStream &operator<<(QDataStream &out, const IndexColumn &c)
{
    return out << c.column << c.descending;
}

QDataStream &operator>>(QDataStream &in, IndexColumn &c)
{
    return in >> c.column >> c.descending;
}

QDataStream &operator<<(QDataStream &out, const Index &i)
{
    return out << i.name << i.columns << i.unique << i.primary << i.required << i.ignoreNulls << i.usable;
}

QDataStream &operator>>(QDataStream &in, Index &i)
{
    return in >> i.name >> i.columns >> i.unique >> i.primary >> i.required >> i.ignoreNulls >> i.usable;
}

QDataStream &operator<<(QDataStream &out, const Relationship &r)
{
    return out << r.name << r.table << r.columns << r.foreignTable << r.foreignColumns << r.enforced << r.cascadeUpdates
               << r.cascadeDeletes;
}

QDataStream &operator>>(QDataStream &in, Relationship &r)
{
    return in >> r.name >> r.table >> r.columns >> r.foreignTable >> r.foreignColumns >> r.enforced >> r.cascadeUpdates
        >> r.cascadeDeletes;
}

template <typename T> QDataStream &operator<<(QDataStream &out, const std::vector<T> &list)
{
    out << static_cast<quint32>(list.size());
    for (const T &item : list)
        out << item;
    return out;
}

template <typename T> QDataStream &operator>>(QDataStream &in, std::vector<T> &list)
{
    list.clear();
    for (auto count = taken<quint32>(in); count > 0 && in.status() == QDataStream::Ok; --count) {
        T item{};
        in >> item;
        list.push_back(std::move(item));
    }
    return in;
}

QByteArray hashOf(const QByteArray &salt, const QString &password)
{
    return QCryptographicHash::hash(salt + password.toUtf8(), QCryptographicHash::Sha256);
}

class FileDatabase : public MemoryDatabase
{
public:
    FileDatabase(const OpenRequest &request, bool isNew)
        : MemoryDatabase(request.readOnly, false)
        , m_path(request.path)
        , m_salt(isNew ? QUuid::createUuid().toRfc4122() : QByteArray())
        , m_hash(hashOf(m_salt, request.password))
    {
        if (isNew)
            FileDatabase::save();
        else
            load(&request.password);
    }

    Table *table(const QString &name) override
    {
        refresh();
        return MemoryDatabase::table(name);
    }

    std::unique_ptr<WriteScope> beginWrite() override
    {
        refresh();
        m_writing = true;
        return MemoryDatabase::beginWrite();
    }

protected:
    void save() override
    {
        m_writing = false;
        QSaveFile file(m_path);
        if (!file.open(QIODevice::WriteOnly))
            throw StorageError(StorageError::ReadOnly, file.errorString(), m_path);
        QDataStream out(&file);
        out << magic << m_salt << m_hash << content.relationships << static_cast<quint32>(content.tables.size());
        for (const auto &[key, t] : content.tables) {
            out << t.schema.name << t.schema.columns << t.schema.indexes << qint64{t.next} << qint64{t.autonumber}
                << static_cast<quint32>(t.rows.size());
            for (const auto &[id, row] : t.rows)
                out << qint64{id} << row;
        }
        if (!file.commit())
            throw StorageError(StorageError::InputOutput, file.errorString(), m_path);
        m_stamp = QFileInfo(m_path).lastModified();
    }

private:
    void refresh()
    {
        if (!m_writing && QFileInfo(m_path).lastModified() != m_stamp)
            load(nullptr);
    }

    void load(const QString *password)
    {
        QFile file(m_path);
        if (!file.exists())
            throw StorageError(StorageError::Missing, {}, m_path);
        if (!file.open(QIODevice::ReadOnly))
            throw StorageError(StorageError::InputOutput, file.errorString(), m_path);
        QDataStream in(&file);
        if (taken<quint32>(in) != magic)
            throw StorageError(StorageError::NotThisFormat, {}, m_path);
        in >> m_salt >> m_hash;
        if (password != nullptr && m_hash != hashOf(m_salt, *password))
            throw StorageError(StorageError::WrongPassword, {}, m_path);
        content = {};
        in >> content.relationships;
        for (auto tables = taken<quint32>(in); tables > 0; --tables) {
            MemoryContent::Rows t;
            in >> t.schema.name >> t.schema.columns >> t.schema.indexes;
            t.next = taken<qint64>(in);
            t.autonumber = taken<qint64>(in);
            for (auto rows = taken<quint32>(in); rows > 0; --rows) {
                const RowId id = taken<qint64>(in);
                in >> t.rows[id];
            }
            content.tables[t.schema.name.toCaseFolded()] = std::move(t);
        }
        m_stamp = QFileInfo(m_path).lastModified();
    }

    QString m_path;
    QByteArray m_salt;
    QByteArray m_hash;
    QDateTime m_stamp;
    bool m_writing = false;
};

} // namespace

std::unique_ptr<Database> InterimFileDriver::open(const OpenRequest &request)
{
    return std::make_unique<FileDatabase>(request, false);
}

std::unique_ptr<Database> InterimFileDriver::create(const OpenRequest &request, FileVersion)
{
    if (QFileInfo::exists(request.path))
        throw StorageError(StorageError::AlreadyExists, {}, request.path);
    return std::make_unique<FileDatabase>(request, true);
}

} // namespace storage
