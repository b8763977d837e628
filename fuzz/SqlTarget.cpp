// SQL statements, one a line, on a small Jet file or a folder of dBASE tables. A line that begins with @ is opened as a
// recordset whose first row is edited.
#include <map>

#include <QDir>
#include <QSet>

#include "fuzz/TableWork.h"
#include "platform/dao/embedded/EmbeddedEngine.h"
#include "platform/dbf/DbfDriver.h"
#include "platform/jet/JetDatabase.h"
#include "platform/jet/Verifier.h"

using namespace Qt::StringLiterals;

namespace {

using Files = std::map<QString, QByteArray>;

constexpr int selectInExecute = 3065;
const QString jetFile = u"base.mdb"_s;

const fuzz::Folder &folder()
{
    static const fuzz::Folder folder;
    return folder;
}

/// The databases' own files; locks and the like are not looked at.
Files filesNow()
{
    static const QSet<QString> endings{u"mdb"_s, u"dbf"_s, u"fpt"_s};
    Files files;
    for (const QFileInfo &file : QDir(folder().path({})).entryInfoList(QDir::Files)) {
        if (endings.contains(file.suffix().toLower()))
            files[file.fileName()] = folder().get(file.fileName());
    }
    return files;
}

std::shared_ptr<dao::Database> open(dao::DBEngine &engine, bool dBase)
{
    return dBase ? engine.OpenDatabase(folder().path({}), 0, false, u"FoxPro 2.6;"_s)
                 : engine.OpenDatabase(folder().path(jetFile), 0, false, {});
}

Files makeBase(bool dBase)
{
    folder().clear();
    const auto engine = dao::makeEmbeddedEngine();
    const auto database
        = dBase ? open(*engine, true) : engine->CreateDatabase(folder().path(jetFile), {}, dao::DBEngine::dbVersion40);
    const QString key = dBase ? QString() : u" PRIMARY KEY"_s;
    database->Execute(u"CREATE TABLE a (i LONG%1, t TEXT(20), d DATETIME, m MEMO, j YESNO)"_s.arg(key));
    database->Execute(u"CREATE TABLE b (i LONG%1, n DOUBLE, t TEXT(9))"_s.arg(key));
    if (!dBase) {
        database->Execute(u"CREATE INDEX it ON a (t)"_s);
        database->Execute(u"CREATE TABLE c (k LONG REFERENCES b (i), w CURRENCY NOT NULL)"_s);
    }
    for (int i = 0; i < 4; ++i) {
        const QString number = QString::number(i);
        database->Execute(u"INSERT INTO a VALUES (%1, 'Größe %1', #%2/1/2003#, '%1', %3)"_s.arg(
            number, QString::number(i + 1), i % 2 == 0 ? u"True"_s : u"False"_s));
        database->Execute(u"INSERT INTO b VALUES (%1, %1.5, 'b%1')"_s.arg(number));
        if (!dBase)
            database->Execute(u"INSERT INTO c VALUES (%1, %1)"_s.arg(number));
    }
    database->Close();
    return filesNow();
}

void edit(dao::Recordset &rows, fuzz::Input &input)
{
    rows.MoveFirst();
    rows.Edit();
    for (int i = 0; i < rows.FieldCount(); ++i) {
        const QString text = input.line();
        fuzz::succeeds([&] { rows.Fields(i).setValue(text); });
    }
    rows.Update();
}

void showAll(dao::Recordset &rows)
{
    for (; !rows.Eof(); rows.MoveNext()) {
        for (int i = 0; i < rows.FieldCount(); ++i)
            dao::textOf(rows.Fields(i).Value());
    }
    if (rows.RecordCount() > 0)
        rows.MoveLast();
}

void execute(dao::Database &database, const QString &sql)
{
    try {
        database.Execute(sql);
    } catch (const dao::DaoError &error) {
        if (error.Number() != selectInExecute)
            throw;
        showAll(*database.OpenRecordset(sql));
    }
}

/// What a check of the whole file, or of all rows, finds first; empty if nothing.
QString fault(bool dBase)
{
    try {
        if (!dBase) {
            const auto opened = jet::JetDriver().open({.path = folder().path(jetFile), .readOnly = true});
            const auto faults = jet::verify(dynamic_cast<jet::JetDatabase &>(*opened).file()).faults;
            return faults.empty() ? QString() : faults.front();
        }
        const auto opened = dbf::DbfDriver().open({.path = folder().path({}), .readOnly = true});
        for (const QString &name : opened->tableNames())
            fuzz::readTable(*opened->table(name));
        return {};
    } catch (const storage::StorageError &error) {
        return error.text();
    }
}

/// Names of tables, as far as they could be: what is joined multiplies the work, which is no fault.
qsizetype tablesIn(const QString &text)
{
    qsizetype names = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i].toLower();
        const QChar last = i > 0 ? text[i - 1] : u' ';
        const QChar next = i + 1 < text.size() ? text[i + 1] : u' ';
        const bool isWord = !last.isLetterOrNumber() && !next.isLetterOrNumber() && next != u'.' && next != u'!';
        names += c >= u'a' && c <= u'c' && isWord ? 1 : 0;
    }
    return names;
}

} // namespace

void fuzz::run(storage::Bytes bytes)
{
    static const Files bases[] = {makeBase(false), makeBase(true)};
    static const auto engine = dao::makeEmbeddedEngine();

    Input input(bytes);
    const bool dBase = input.byte() % 4 == 3;
    if (Input all = input; tablesIn(QString::fromLatin1(all.rest())) > 7)
        return;
    folder().clear();
    for (const auto &[name, content] : bases[dBase ? 1 : 0])
        folder().put(name, content);

    const auto database = open(*engine, dBase);
    for (int i = 0; i < 3 && !input.atEnd(); ++i) {
        const Files before = filesNow();
        const QString line = input.line();
        const bool done = succeeds([&] {
            if (line.startsWith(u'@'))
                edit(*database->OpenRecordset(line.mid(1)), input);
            else
                execute(*database, line);
        });
        const bool changed = filesNow() != before;
        require(done || !changed, u"a statement was carried out in part: "_s + line);
        const QString found = changed ? fault(dBase) : QString();
        require(found.isEmpty(), u"%1: %2"_s.arg(line, found));
    }
    database->Close();
}
