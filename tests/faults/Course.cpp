// Courses of statements, run once without any fault to know what is right.
#include "tests/faults/Course.h"

#include <stdexcept>

#include <QDebug>
#include <QFile>

#include "platform/dao/embedded/EmbeddedEngine.h"
#include "platform/jet/JetDatabase.h"
#include "platform/jet/Verifier.h"
#include "tests/fakes/Beispieldaten.h"

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

QStringList existingAccounts()
{
    QStringList numbers;
    for (int i = 0; i < 50; ++i)
        numbers += u"D0100%1"_s.arg(i, 2, 10, QChar(u'0'));
    return numbers;
}

/// What all courses begin with.
const FolderContent &clientOf(Version version)
{
    static std::map<Version, FolderContent> clients;
    FolderContent &client = clients[version];
    if (client.empty()) {
        const QTemporaryDir folder;
        const QString path = folder.filePath(Course::fileName());
        const auto engine = Course::engineOver(storage::systemFiles());
        beispiel::erzeugeMandant(*engine, path, {}, version);
        beispiel::fuegeKontenHinzu(*engine, path, existingAccounts());
        client = readFolder(folder.path());
    }
    return client;
}

QString textOf(const storage::Value &value)
{
    QString text;
    QDebug(&text).nospace() << value.index();
    std::visit(
        [&text](const auto &content) {
            using Content = std::decay_t<decltype(content)>;
            if constexpr (std::is_same_v<Content, storage::Currency>)
                text += QString::number(content.tenThousandths);
            else if constexpr (std::is_same_v<Content, storage::DateTime>)
                text += QString::number(content.days, 'g', 17);
            else if constexpr (std::is_same_v<Content, storage::Decimal>)
                text += content.text;
            else if constexpr (!std::is_same_v<Content, std::monostate>)
                QDebug(&text) << content;
        },
        value);
    return text;
}

} // namespace

std::unique_ptr<dao::DBEngine> Course::engineOver(storage::FileSystem &files)
{
    return std::make_unique<dao::EmbeddedEngine>(std::make_unique<jet::JetDriver>(files), nullptr);
}

std::shared_ptr<dao::Database> Course::open(dao::DBEngine &engine, const QTemporaryDir &folder)
{
    return engine.OpenDatabase(folder.filePath(fileName()), 0, false, {});
}

QStringList Course::rowsOf(const QString &path)
{
    const auto database = jet::JetDriver().open({path, {}, true});
    QStringList rows;
    for (const QString &name : database->tableNames()) {
        storage::Table &table = *database->table(name);
        for (const auto cursor = table.scan(); cursor->next();) {
            QString row = name;
            for (int i = 0; i < static_cast<int>(table.schema().columns.size()); ++i)
                row += u'|' + textOf(cursor->value(i));
            rows += row;
        }
    }
    rows.sort();
    return rows;
}

Course::Course(Version version, const QStringList &statements)
    : m_statements(statements)
{
    const QString path = m_folder.filePath(fileName());
    const auto engine = engineOver(m_files);
    writeFolder(m_folder.path(), clientOf(version));
    m_recording = &m_files.record(m_folder.path());
    const auto remember = [&] {
        m_contents.push_back(readFolder(m_folder.path()).at(fileName()));
        m_rows.push_back(rowsOf(path));
        m_returned.push_back(m_recording->size());
    };
    const auto database = open(*engine, m_folder);
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
    std::size_t returned = 0;
    while (returned < size() && m_returned[returned + 1] <= operations)
        ++returned;
    return returned;
}

QString faultsOf(const QString &path)
{
    jet::PageFile file(storage::systemFiles(), {path, {}, true});
    const jet::VerifyReport report = jet::verify(file);
    return QStringList(report.faults.begin(), report.faults.end()).join(u'\n');
}
