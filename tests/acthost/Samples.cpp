// A small contact database.
#include "tests/acthost/Samples.h"

#include <stdexcept>
#include <vector>

#include <QFile>

#include "platform/dbf/DbfDriver.h"

using namespace Qt::StringLiterals;
using storage::Column;
using storage::Type;
using storage::Value;

QString makeContacts(const QString &folder)
{
    const auto database = dbf::DbfDriver().create({.path = folder}, storage::FileVersion::Jet4);
    const std::vector<Column> columns{
        {u"UNIQUE_ID"_s, Type::Text, 12}, {u"COMPANY"_s, Type::Text, 30}, {u"CONTACT"_s, Type::Text, 30},
        {u"TELEFON"_s, Type::Text, 35},   {u"REVENUE"_s, Type::Double},   {u"BIRTHDAY"_s, Type::DateTime},
        {u"PRIVAT"_s, Type::Boolean},     {u"PCK_TYP"_s, Type::Text, 1},  {u"NOTES"_s, Type::Memo},
    };
    database->createTable({u"KONTAKTE"_s, columns});
    const std::vector<std::vector<Value>> rows{
        {u"id-1"_s, u"Bäckerei Groß"_s, u"Anna Groß"_s, u"49|40|@@@@AD5529950"_s, 12.5, storage::DateTime{29221.0},
         true},
        {u"kurz"_s, Value(), u"Clara Ohnefirma"_s, u"0441 / 55 55-0"_s},
        {u"id-3"_s, u"Autohaus Zimmer"_s, u"Zoë Abt"_s},
    };
    storage::Table *table = database->table(u"KONTAKTE"_s);
    for (const std::vector<Value> &row : rows) {
        std::vector<storage::Assignment> values;
        for (const Value &value : row)
            values.push_back({static_cast<int>(values.size()), value});
        table->insert(values);
    }

    QFile list(folder + u"/KONTAKTE.felder"_s);
    const bool written = list.open(QFile::WriteOnly)
        && list.write("# Felder\n1|UNIQUE_ID|Kennung\n2|COMPANY|Firma\n26|CONTACT|Name\n11|TELEFON|Telefon\r\n"
                      "\n22|REVENUE|Umsatz\n23|BIRTHDAY|Geburtstag\n24|PRIVAT|Privat\n62|PCK_TYP|Art\n"
                      "21|NOTES|Notizen\n")
            > 0;
    if (!written)
        throw std::runtime_error("cannot write the list of fields");
    return folder + u"/KONTAKTE.DBF"_s;
}
