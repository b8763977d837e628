// Courses of statements, run once without any fault to know what is right.
#include "tests/faults/Course.h"

#include <algorithm>
#include <stdexcept>

#include <QFile>

#include "platform/dao/DaoError.h"
#include "platform/dao/embedded/EmbeddedEngine.h"
#include "platform/jet/JetDatabase.h"
#include "tests/fakes/Beispieldaten.h"
#include "tools/veldrak-db/Json.h"

using namespace Qt::StringLiterals;

namespace {

/// The statements of a transfer that write, with the query whose row is edited.
QStringList transferStatements()
{
    QFile record(QStringLiteral(VELDRAK_ERWARTET "/debitor_mit_datev.txt"));
    if (!record.open(QIODevice::ReadOnly))
        throw std::runtime_error("no record of a transfer");
    QStringList statements;
    for (const QString &line : QString::fromUtf8(record.readAll()).split(u'\n')) {
        const QString sql = line.mid(4);
        if (line.startsWith(u"SQL "_s) && !sql.startsWith(u"SELECT"_s) && !sql.startsWith(u"Select PersKtoNummer"_s))
            statements += sql;
    }
    return statements;
}

QStringList definitionStatements()
{
    const QString memo = QString(9000, u'x');
    return {u"CREATE TABLE Neu (A LONG CONSTRAINT PrimaryKey PRIMARY KEY, B TEXT(50), M MEMO)"_s,
            u"CREATE INDEX iB ON Neu (B)"_s,
            u"INSERT INTO Neu VALUES (1, 'eins', '%1')"_s.arg(memo),
            u"INSERT INTO Neu VALUES (2, 'zwei', '%1')"_s.arg(memo),
            u"UPDATE Neu SET M='kurz' WHERE A=1"_s,
            u"CREATE INDEX iOrt ON sPersKto (PersKtoOrt)"_s,
            u"UPDATE sPersKto SET PersKtoOrt='Hamburg-Finkenwerder', PersKtoBemerkung='Alle umgezogen.'"_s,
            u"DELETE FROM sPersKto WHERE PersKtoNummer > 'D010040'"_s,
            u"DROP TABLE Neu"_s,
            u"INSERT INTO sPersKom SELECT PersKtoNummer, 1, 'Fax', '', '', 1 FROM sPersKto"_s};
}

/// What all courses begin with: a client with 50 accounts.
const FolderContent &clientOf(Version version)
{
    static std::map<Version, FolderContent> clients;
    FolderContent &client = clients[version];
    if (client.empty()) {
        const ClientFolder folder;
        QStringList numbers;
        for (int i = 0; i < 50; ++i)
            numbers += u"D0100%1"_s.arg(i, 2, 10, QChar(u'0'));
        const auto engine = engineOver();
        beispiel::erzeugeMandant(*engine, folder.path(), {}, version);
        beispiel::fuegeKontenHinzu(*engine, folder.path(), numbers);
        client = folder.content();
    }
    return client;
}

} // namespace

std::unique_ptr<dao::DBEngine> engineOver(storage::FileSystem &files)
{
    return std::make_unique<dao::EmbeddedEngine>(std::make_unique<jet::JetDriver>(files), nullptr);
}

std::pair<int, QString> told(const std::function<void()> &action)
{
    try {
        action();
        return {};
    } catch (const dao::DaoError &error) {
        return {error.Number(), error.Description()};
    }
}

QStringList rowsOf(const QString &path)
{
    const auto database = jet::JetDriver().open({path, {}, true});
    QStringList rows;
    for (const QString &name : database->tableNames()) {
        storage::Table &table = *database->table(name);
        for (const auto cursor = table.scan(); cursor->next();) {
            rows += name;
            for (int i = 0; const storage::Column &column : table.schema().columns)
                rows.last() += u'|' + json::value(cursor->value(i++), column.type);
        }
    }
    rows.sort();
    return rows;
}

std::shared_ptr<dao::Database> ClientFolder::open(dao::DBEngine &engine) const
{
    return engine.OpenDatabase(path(), 0, false, {});
}

Course::Course(Version version, const QStringList &statements)
    : m_statements(statements)
{
    const ClientFolder folder;
    const auto engine = engineOver(m_files);
    folder.setContent(clientOf(version));
    const QString client = clientOf(version).begin()->first;
    m_recording = &m_files.record(folder.folder.path());
    const auto remember = [&] {
        m_contents.push_back({{client, folder.content().at(client)}});
        m_rows.push_back(rowsOf(folder.path()));
        m_returned.push_back(m_recording->size());
    };
    const auto database = folder.open(*engine);
    remember();
    for (std::size_t i = 0; i < size(); ++i) {
        run(*database, i);
        remember();
    }
    database->Close();
}

const Course &Course::transfer(Version version)
{
    static const Course jet3(dao::DBEngine::dbVersion30, transferStatements());
    static const Course jet4(dao::DBEngine::dbVersion40, transferStatements());
    return version == dao::DBEngine::dbVersion30 ? jet3 : jet4;
}

const Course &Course::definitions(Version version)
{
    static const Course jet3(dao::DBEngine::dbVersion30, definitionStatements());
    static const Course jet4(dao::DBEngine::dbVersion40, definitionStatements());
    return version == dao::DBEngine::dbVersion30 ? jet3 : jet4;
}

void Course::run(dao::Database &database, std::size_t number) const
{
    const QString sql = statement(number);
    if (!sql.startsWith(u"Select"_s)) {
        database.Execute(sql);
        return;
    }
    const auto row = database.OpenRecordset(sql);
    row->Edit();
    row->Fields(u"PersKtoGruppe"_s).setValue(u"ACT"_s);
    row->Fields(u"PersKtoKreditLimit"_s).setValue(2500);
    row->Fields(u"PersKtoAktiv"_s).setValue(true);
    row->Fields(u"PersKtoBemerkung"_s).setValue(u"Aus der Kontaktverwaltung übernommen."_s.repeated(30));
    row->Update();
    row->Close();
}

std::size_t Course::returnedAfter(std::size_t operations) const
{
    const auto first = m_returned.begin() + 1; // behind the opening
    return static_cast<std::size_t>(std::upper_bound(first, m_returned.end(), operations) - first);
}
