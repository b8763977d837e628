// The good databases that inputs damage.
#include "fuzz/JetBase.h"

#include "fuzz/Patches.h"
#include "platform/jet/Verifier.h"

using namespace Qt::StringLiterals;
using storage::Assignment;
using storage::FileVersion;
using storage::Type;

namespace fuzz {

namespace {

const QString fileName = u"base.mdb"_s;

const Folder &folder()
{
    static const Folder folder;
    return folder;
}

storage::Index index(const QString &name, std::vector<storage::IndexColumn> columns, bool unique = false)
{
    return {.name = name, .columns = std::move(columns), .unique = unique};
}

storage::TableSchema customers()
{
    storage::TableSchema schema{u"Kunden"_s, {}};
    schema.columns = {
        {.name = u"Nr"_s, .type = Type::Long, .autonumber = true},
        {.name = u"Name"_s, .type = Type::Text, .size = 40, .required = true, .defaultValue = u"\"neu\""_s},
        {.name = u"Ort"_s, .type = Type::Text, .size = 20},
        {.name = u"Saldo"_s, .type = Type::Currency, .validationRule = u">=-1000"_s, .validationText = u"Zu wenig"_s},
        {.name = u"Seit"_s, .type = Type::DateTime},
        {.name = u"Aktiv"_s, .type = Type::Boolean},
        {.name = u"Notiz"_s, .type = Type::Memo},
        {.name = u"Bild"_s, .type = Type::LongBinary},
    };
    storage::Index key = index(u"PrimaryKey"_s, {{0, false}}, true);
    key.primary = true;
    schema.indexes = {key, index(u"iName"_s, {{1, false}, {2, true}}), index(u"iSeit"_s, {{4, true}})};
    schema.indexes.back().ignoreNulls = true;
    return schema;
}

storage::TableSchema values(bool jet4)
{
    storage::TableSchema schema{u"Werte"_s, {}};
    schema.columns = {
        {.name = u"Kunde"_s, .type = Type::Long}, {.name = u"B"_s, .type = Type::Byte},
        {.name = u"I"_s, .type = Type::Integer},  {.name = u"S"_s, .type = Type::Single},
        {.name = u"D"_s, .type = Type::Double},   {.name = u"Bin"_s, .type = Type::Binary, .size = 30},
        {.name = u"G"_s, .type = Type::Guid},     {.name = u"T"_s, .type = Type::Text, .size = 255},
        {.name = u"M"_s, .type = Type::Memo},
    };
    if (jet4)
        schema.columns.push_back({.name = u"N"_s, .type = Type::Numeric, .size = 18, .scale = 4});
    schema.indexes = {index(u"iB"_s, {{1, false}, {2, false}}), index(u"iS"_s, {{3, false}, {4, true}}),
                      index(u"iBin"_s, {{5, false}}), index(u"iG"_s, {{6, false}}), index(u"iT"_s, {{7, false}})};
    if (jet4)
        schema.indexes.push_back(index(u"iN"_s, {{9, false}}));
    return schema;
}

void fill(storage::Database &database, bool jet4)
{
    const auto scope = database.beginWrite();
    storage::Table &customers = *database.table(u"Kunden"_s);
    for (int i = 0; i < 12; ++i) {
        customers.insert(std::vector<Assignment>{{1, u"Müller-Größe %1"_s.arg(i % 7)},
                                                 {2, QString(i, u'o')},
                                                 {3, storage::Currency{i * 12345}},
                                                 {4, storage::DateTime{36000.5 + i}},
                                                 {5, i % 2 == 1},
                                                 {6,
                                                  QString(i == 3       ? 9000
                                                              : i == 4 ? 900
                                                                       : i,
                                                          u'n')},
                                                 {7, QByteArray(i == 5 ? 2500 : 2 * i, 'b')}});
    }
    storage::Table &values = *database.table(u"Werte"_s);
    for (std::int64_t i = 0; i < 25; ++i) { // enough for an index of two levels, whose keys are long
        std::vector<Assignment> row{{0, i % 12 + 1},
                                    {1, i % 5},
                                    {2, i - 20},
                                    {3, static_cast<double>(i) / 4},
                                    {4, -static_cast<double>(i)},
                                    {5, QByteArray(static_cast<int>(i % 30), 'x')},
                                    {6, u"{%1-0000-4000-8000-00000000ABCD}"_s.arg(i, 8, 16, QChar(u'0'))},
                                    {7, QString(static_cast<int>(180 + i), QChar(u'a' + static_cast<int>(i % 26)))},
                                    {8, i % 3 == 0 ? storage::Value() : QString(static_cast<int>(i * 3), u'm')}};
        if (jet4)
            row.push_back({9, storage::Decimal{u"-%1.25"_s.arg(i)}});
        values.insert(row);
    }
    scope->commit();
}

JetBase make(FileVersion version, const QString &password)
{
    const bool jet4 = version == FileVersion::Jet4;
    folder().clear();
    {
        const auto database = jet::JetDriver().create({folder().path(fileName), password}, version);
        database->createTable(customers());
        database->createTable(values(jet4));
        database->createRelationship({.name = u"KundenWerte"_s,
                                      .table = u"Kunden"_s,
                                      .columns = {u"Nr"_s},
                                      .foreignTable = u"Werte"_s,
                                      .foreignColumns = {u"Kunde"_s},
                                      .cascadeUpdates = true,
                                      .cascadeDeletes = true});
        fill(*database, jet4);
    }
    return {folder().get(fileName), password, jet4 ? 4096 : 2048};
}

} // namespace

const std::vector<JetBase> &jetBases()
{
    static const std::vector<JetBase> bases
        = {make(FileVersion::Jet3, {}), make(FileVersion::Jet4, {}), make(FileVersion::Jet4, u"Kenn 1"_s)};
    return bases;
}

const JetBase &drawBase(Input &input)
{
    return jetBases().at(input.below(jetBases().size()));
}

JetFile::JetFile(const JetBase &base, const QByteArray &content, const QByteArray &journal)
    : m_password(base.password)
{
    folder().clear();
    folder().put(fileName, content);
    if (!journal.isEmpty())
        folder().put(fileName + u".vjn"_s, journal);
}

JetFile::JetFile(Input &input)
    : JetFile(input, drawBase(input))
{ }

JetFile::JetFile(Input &input, const JetBase &base)
    : JetFile(base, patched(base.content, input, base.pageSize))
{ }

std::unique_ptr<jet::JetDatabase> JetFile::open(bool readOnly) const
{
    auto opened = jet::JetDriver().open({folder().path(fileName), m_password, readOnly});
    auto *database = dynamic_cast<jet::JetDatabase *>(opened.get());
    require(database != nullptr, u"the driver opens another kind of database"_s);
    static_cast<void>(opened.release());
    return std::unique_ptr<jet::JetDatabase>(database);
}

QByteArray JetFile::content() const
{
    return folder().get(fileName);
}

QString JetFile::fault() const
{
    try {
        const auto faults = jet::verify(open(true)->file()).faults;
        return faults.empty() ? QString() : faults.front();
    } catch (const storage::StorageError &error) {
        return error.text();
    }
}

} // namespace fuzz
