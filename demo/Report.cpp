// Reads contacts and their accounts back from the files.
#include "demo/Report.h"

#include <algorithm>

#include "demo/Clients.h"
#include "demo/Sql.h"
#include "platform/errors/RunTimeError.h"

using namespace Qt::StringLiterals;

namespace demo {

namespace {

constexpr int kInvalidCall = 5;

QString shown(const QVariant &value)
{
    return value.isValid() ? dao::textOf(value) : u"Null"_s;
}

QString text(dao::Recordset &row, const QString &column)
{
    return row.Fields(column).Value().toString().trimmed();
}

QString namedValues(dao::Recordset &row)
{
    QString lines;
    for (int i = 0; i < row.FieldCount(); ++i)
        lines += u"  %1 = %2\n"_s.arg(row.Fields(i).Name(), shown(row.Fields(i).Value()));
    return lines;
}

QString inOneLine(dao::Recordset &row)
{
    QStringList values;
    for (int i = 0; i < row.FieldCount(); ++i)
        values += shown(row.Fields(i).Value());
    return u"  "_s + values.join(u" | "_s) + u'\n';
}

QString passwordOf(const QString &file)
{
    const auto known = std::ranges::find(clients(), QStringView(file), &Client::file);
    return known == clients().end() ? QString() : known->password.toString();
}

QString accountReport(dao::DBEngine &engine, const QString &path, const QString &file, const QString &number)
{
    const auto database = engine.OpenDatabase(path, 0, true, u";PWD="_s + passwordOf(file));
    QString lines = u"%1, sPersKto:\n"_s.arg(file);
    const auto account = database->OpenRecordset(u"SELECT * FROM sPersKto WHERE PersKtoNummer = "_s + literal(number));
    lines += account->Eof() ? u"  Das Konto %1 gibt es nicht.\n"_s.arg(number) : namedValues(*account);

    const auto entries = database->OpenRecordset(u"SELECT PersKommNummer, PersKommLfdNr, PersKommName, PersKommNr, "
                                                 "PersKommAnsprech, PersKommTyp FROM sPersKom WHERE PersKommNummer = "_s
                                                 + literal(number) + u" ORDER BY PersKommLfdNr"_s);
    lines += u"%1, sPersKom:\n"_s.arg(file);
    for (; !entries->Eof(); entries->MoveNext())
        lines += inOneLine(*entries);
    database->Close();
    return lines;
}

} // namespace

QString report(dao::DBEngine &engine, const DemoFolder &folder, const QStringList &contactIds)
{
    const auto contactDatabase = engine.OpenDatabase(folder.contacts(), 0, true, u"FoxPro 2.6;"_s);
    QString lines;
    QStringList accountsShown;
    QString accounts;
    for (const QString &id : contactIds) {
        const auto contact
            = contactDatabase->OpenRecordset(u"SELECT * FROM KONTAKTE WHERE UNIQUE_ID = "_s + literal(id));
        if (contact->Eof())
            throw RunTimeError(kInvalidCall, u"Den Kontakt „%1“ gibt es nicht."_s.arg(id));
        lines += u"ACT!, Kontakt %1:\n"_s.arg(id) + namedValues(*contact);
        const QString client = text(*contact, u"PCK_MAND"_s);
        const QString number = text(*contact, u"PCK_NUMMER"_s);
        if (number.isEmpty() || accountsShown.contains(client + number))
            continue;
        accountsShown += client + number;
        accounts += accountReport(engine, folder.clients() + u'/' + client, client, number);
    }
    contactDatabase->Close();
    return lines + accounts;
}

} // namespace demo
