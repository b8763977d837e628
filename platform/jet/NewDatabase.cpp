// A database from nothing: header, map of free pages, system tables and the objects that every database has.
#include "platform/jet/NewDatabase.h"

#include <bit>

#include "platform/jet/CatalogWriter.h"
#include "platform/jet/DataPage.h"
#include "platform/jet/SystemTables.h"
#include "platform/jet/TableDefFile.h"
#include "platform/jet/TableStorage.h"
#include "platform/jet/UsageMap.h"
#include "platform/storage/NewFile.h"

using namespace Qt::StringLiterals;

namespace jet {

namespace {

/// The accounts that own and may use things. Jet 4 masks them in a way that goes with the creation date, so this date
/// and these accounts, seen together in a file, belong together.
struct Accounts {
    QByteArray engine;
    QByteArray admin;
    QByteArray users;
    QByteArray creator;
};
constexpr std::uint64_t jet4Created = 0x40E29FF17D1F72BC;

Accounts accountsOf(bool jet4)
{
    if (jet4) {
        return {QByteArray::fromHex("A731"), QByteArray::fromHex("A633"), QByteArray::fromHex("A733"),
                QByteArray::fromHex("A736")};
    }
    return {QByteArray::fromHex("0203"), QByteArray::fromHex("0301"), QByteArray::fromHex("0201"),
            QByteArray::fromHex("0204")};
}

FileHeader newHeader(const storage::OpenRequest &request, storage::FileVersion version)
{
    FileHeader header;
    header.jet4 = version == storage::FileVersion::Jet4;
    header.sortVersion = header.jet4 ? 0 : 1;
    header.password = request.password;
    if (header.jet4)
        header.created = std::bit_cast<double>(jet4Created);
    return header;
}

void makeMapPage(PageFile &file)
{
    DataPageWriter maps = DataPageWriter::init(file, file.append(), globalMapPage);
    maps.append(UsageMap::freeRow(file, globalMapPage + 1));
    maps.append(UsageMap::emptyRow(file));
}

void makeSystemTables(PageFile &file, const TextCodec &codec)
{
    std::vector<TableDef> tables = systemTables(file.header());
    for (const TableDef &table : tables) {
        const PageNo page = file.allocate();
        Q_ASSERT(page == table.page);
        Q_UNUSED(page)
    }
    MapRows maps(file);
    for (TableDef &table : tables) {
        layOut(file, maps, table);
        writeTableDef(file, codec, table);
    }
}

void addObjects(CatalogWriter &catalog, const Accounts &accounts)
{
    const auto add
        = [&](std::uint32_t id, std::uint32_t parent, const QString &name, ObjectType type, const QByteArray &owner) {
              catalog.addObject({id, parent, name, type, systemObjectFlag, owner, {}});
          };
    add(tablesContainer, rootContainer, u"Tables"_s, ContainerObject, accounts.engine);
    add(databasesContainer, rootContainer, u"Databases"_s, ContainerObject, accounts.engine);
    add(relationshipsContainer, rootContainer, u"Relationships"_s, ContainerObject, accounts.engine);
    add(databaseObject, databasesContainer, u"MSysDb"_s, DatabaseObject, accounts.admin);
    add(objectsPage, tablesContainer, u"MSysObjects"_s, TableObject, accounts.engine);
    add(permissionsPage, tablesContainer, u"MSysACEs"_s, TableObject, accounts.engine);
    add(queriesPage, tablesContainer, u"MSysQueries"_s, TableObject, accounts.engine);
    add(relationshipsPage, tablesContainer, u"MSysRelationships"_s, TableObject, accounts.engine);
}

void addPermissions(CatalogWriter &catalog, const Accounts &accounts)
{
    const CatalogWriter::Permission permissions[] = {
        {objectsPage, 0x60000, false, accounts.admin},
        {permissionsPage, 0x60000, false, accounts.admin},
        {queriesPage, 0x60000, false, accounts.admin},
        {relationshipsPage, 0xE0000, false, accounts.admin},
        {tablesContainer, 0xF00FE, true, accounts.creator},
        {tablesContainer, 0x60001, false, accounts.admin},
        {tablesContainer, 0xFFEFF, true, accounts.users},
        {relationshipsContainer, 0xF00FE, true, accounts.creator},
        {relationshipsContainer, 0x60001, false, accounts.admin},
        {relationshipsContainer, 0xFFFFF, true, accounts.users},
        {databasesContainer, 0x60000, false, accounts.admin},
        {databaseObject, 0x6000E, false, accounts.admin},
        {databaseObject, 0x0E, false, accounts.users},
        {queriesPage, 0x14, false, accounts.users},
        {relationshipsPage, 0x14, false, accounts.users},
        {objectsPage, 0x14, false, accounts.users},
    };
    for (const CatalogWriter::Permission &permission : permissions)
        catalog.addPermission(permission);
}

void fill(PageFile &file)
{
    const FileHeader &header = file.header();
    const TextCodec codec = header.jet4 ? TextCodec::jet4() : TextCodec::jet3(header.codePage);
    PageScope scope(file);
    makeMapPage(file);
    makeSystemTables(file, codec);
    CatalogWriter catalog(file, codec);
    const Accounts accounts = accountsOf(header.jet4);
    addObjects(catalog, accounts);
    addPermissions(catalog, accounts);
    scope.commit();
}

} // namespace

std::unique_ptr<PageFile> createDatabase(storage::FileSystem &files, const storage::OpenRequest &request,
                                         storage::FileVersion version)
{
    storage::NewFile made(files, request.path, PageFile::besides());
    fill(*PageFile::create(made.files(), made.path(), newHeader(request, version)));
    made.finish();
    auto file = std::make_unique<PageFile>(files, request);
    made.keep();
    return file;
}

} // namespace jet
