// Puts the sample data together in a folder of its own.
#include "demo/DemoFolder.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QSet>
#include <QTemporaryDir>

#include "demo/Databases.h"
#include "demo/Mapping.h"
#include "platform/errors/RunTimeError.h"
#include "platform/storage/Codepage.h"
#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;

namespace demo {

namespace {

constexpr int kPathOrFileAccess = 75;
const QString marker = u"LIESMICH.txt"_s;

[[noreturn]] void fail(const QString &text)
{
    throw RunTimeError(kPathOrFileAccess, text);
}

void makeFolder(const QString &path)
{
    if (!QDir().mkpath(path))
        fail(u"Der Ordner „%1“ kann nicht angelegt werden."_s.arg(path));
}

void moveFolder(const QString &from, const QString &to)
{
    if (!QDir().rename(from, to))
        fail(u"Der Ordner „%1“ kann nicht in „%2“ umbenannt werden."_s.arg(from, to));
}

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QFile::WriteOnly) || file.write(content) != content.size() || !file.flush())
        fail(u"„%1“ kann nicht geschrieben werden: %2"_s.arg(path, file.errorString()));
}

void copyIcons(const QString &folder)
{
    makeFolder(folder);
    const QDir icons(u":/bilder/icons"_s);
    for (const QString &name : icons.entryList()) {
        QFile icon(icons.filePath(name));
        if (!icon.open(QFile::ReadOnly))
            fail(u"Das Symbol „%1“ fehlt im Programm."_s.arg(name));
        writeFile(folder + u'/' + name, icon.readAll());
    }
}

// Comments begin with an apostrophe, so none may stand in here.
QString configuration(const DemoFolder &folder)
{
    return u"[VELDRAK]\r\n"
           "ID_Nummer=60|PCK_NUMMER\r\n"
           "ID_Mandant=61|PCK_MAND\r\n"
           "ID_Typ=62|PCK_TYP\r\n"
           "ID_SuchFeld1=2|COMPANY\r\n"
           "ID_SuchFeld2=26|CONTACT\r\n"
           "PCKpfad=%1/\r\n"
           "DATEVNr=1\r\n"
           "AutoSuche=1\r\n"_s.arg(folder.clients());
}

QString fieldList()
{
    QString list = u"# Feldkennungen der Kontaktdatenbank: Nummer|SPALTE|Bezeichnung\n"_s;
    for (const ContactField &field : contactFields())
        list += u"%1|%2|%3\n"_s.arg(QString::number(field.number), field.column.toString().toUpper(), field.label);
    return list;
}

QString explanation()
{
    return u"Beispieldaten für VELDRAK, angelegt von veldrak-demo.\n"
           "Alle Personen, Firmen, Nummern und Adressen sind erfunden.\n\n"
           "ACT/KONTAKTE.DBF   Kontaktdatenbank (acthost)\n"
           "PCK/*.PCK          drei Mandanten; Kennwort von Sonnenhof.PCK: Rapsfeld-1842\n"
           "veldrak.piz        Feldzuordnung\n"
           "VELDRAK.ini        Konfiguration\n"_s;
}

QSet<QString> filesBelow(const QString &folder)
{
    QSet<QString> files;
    QDirIterator all(folder, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (all.hasNext())
        files.insert(QDir(folder).relativeFilePath(all.next()));
    return files;
}

} // namespace

DemoFolder::DemoFolder(const QString &folder)
    : path(QDir::cleanPath(QDir(folder).absolutePath()))
{ }

QString DemoFolder::clients() const
{
    return path + u"/PCK"_s;
}

QString DemoFolder::contacts() const
{
    return path + u"/ACT"_s;
}

bool DemoFolder::exists() const
{
    return QFile::exists(path + u'/' + marker);
}

void DemoFolder::create(dao::DBEngine &engine, bool replace) const
{
    requireUsableName();
    requireRoom(replace);
    const QString parent = QFileInfo(path).path();
    makeFolder(parent);
    // Made beside its place, so that it can simply be moved there.
    QTemporaryDir workshop(parent + u"/.veldrak-demo-XXXXXX"_s);
    if (!workshop.isValid())
        fail(u"In „%1“ kann nichts angelegt werden: %2"_s.arg(parent, workshop.errorString()));
    const DemoFolder fresh(workshop.filePath(u"neu"_s));
    fresh.fill(engine, *this);
    if (exists()) {
        requireOnlyKnownFiles(fresh);
        moveFolder(path, workshop.filePath(u"alt"_s));
    } else {
        QDir().rmdir(path); // an empty one; if it is not empty any more, the move says so
    }
    moveFolder(fresh.path, path);
}

void DemoFolder::requireUsableName() const
{
    if (path.contains(u'\''))
        fail(u"Der Pfad „%1“ enthält ein Hochkomma; damit beginnt in VELDRAK.ini ein Kommentar."_s.arg(path));
    try {
        storage::windows1252.encode(path);
    } catch (const storage::StorageError &error) {
        fail(u"Der Pfad „%1“ kann nicht in VELDRAK.ini stehen: %2"_s.arg(path, error.text()));
    }
}

void DemoFolder::requireRoom(bool replace) const
{
    const QFileInfo place(path);
    if (!place.exists())
        return;
    if (!place.isDir())
        fail(u"„%1“ ist kein Ordner."_s.arg(path));
    if (exists()) {
        if (!replace)
            fail(u"In „%1“ stehen schon Beispieldaten. Mit --neu werden sie neu angelegt."_s.arg(path));
        return;
    }
    if (!QDir(path).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot))
        fail(u"Der Ordner „%1“ ist nicht leer und enthält keine Beispieldaten."_s.arg(path));
}

void DemoFolder::requireOnlyKnownFiles(const DemoFolder &fresh) const
{
    const QSet<QString> foreign = filesBelow(path) - filesBelow(fresh.path);
    for (const QString &file : foreign) {
        // Lock files and journals come and go with the databases; a program that was killed leaves them.
        if (!file.endsWith(u".ldb"_s, Qt::CaseInsensitive) && !file.endsWith(u".vjn"_s, Qt::CaseInsensitive))
            fail(u"„%1/%2“ gehört nicht zu den Beispieldaten; der Ordner bleibt, wie er ist."_s.arg(path, file));
    }
}

void DemoFolder::fill(dao::DBEngine &engine, const DemoFolder &final) const
{
    makeFolder(clients());
    makeFolder(contacts());
    createMapping(engine, path + u"/veldrak.piz"_s);
    for (const Client &client : demo::clients())
        createClient(engine, client, clients() + u'/' + client.file.toString());
    createContactTable(engine, contacts());
    writeFile(contacts() + u"/KONTAKTE.felder"_s, fieldList().toUtf8());
    writeFile(path + u"/VELDRAK.ini"_s, storage::windows1252.encode(configuration(final)));
    copyIcons(path + u"/bilder/icons"_s);
    writeFile(path + u'/' + marker, explanation().toUtf8());
}

} // namespace demo
