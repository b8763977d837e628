// Makes the contact table of the contact manager's sample database.
#include "demo/Databases.h"

#include <QStringList>

#include "acthost/PhoneForms.h"
#include "demo/Contacts.h"
#include "demo/Mapping.h"
#include "demo/Sql.h"

using namespace Qt::StringLiterals;

namespace demo {

namespace {

QVariant phone(QStringView number)
{
    return textOrNothing(acthost::storedPhone(number.toString()));
}

QList<Given> rowOf(const Contact &contact)
{
    const Company &company = companyOf(contact);
    const QStringView companyName = contact.companyName.isEmpty() ? company.name : contact.companyName;
    const QString fullName = u"%1 %2"_s.arg(contact.firstName, contact.lastName).trimmed();
    return {{u"UNIQUE_ID"_s, contact.id.toString()},
            {u"COMPANY"_s, textOrNothing(companyName)},
            {u"CONTACT"_s, fullName},
            {u"SALUTATION"_s, textOrNothing(contact.salutation)},
            {u"FIRSTNAME"_s, textOrNothing(contact.firstName)},
            {u"LASTNAME"_s, textOrNothing(contact.lastName)},
            {u"DEPARTMENT"_s, textOrNothing(contact.department)},
            {u"STREET"_s, textOrNothing(company.street)},
            {u"ZIP"_s, textOrNothing(company.zip)},
            {u"CITY"_s, textOrNothing(company.city)},
            {u"COUNTRY"_s, textOrNothing(company.country)},
            {u"POBOX"_s, textOrNothing(contact.postBox)},
            {u"TELEFON"_s, phone(contact.phone)},
            {u"TELEFON2"_s, phone(contact.privatePhone)},
            {u"TELEFAX"_s, phone(company.fax)},
            {u"HANDY"_s, phone(contact.mobile)},
            {u"EMAIL"_s, textOrNothing(contact.email)},
            {u"URL"_s, textOrNothing(company.website)},
            {u"NOTES"_s, textOrNothing(contact.notes)},
            {u"PCK_NUMMER"_s, textOrNothing(contact.account)},
            {u"PCK_MAND"_s, textOrNothing(contact.client)},
            {u"PCK_TYP"_s, textOrNothing(contact.role)}};
}

} // namespace

void createContactTable(dao::DBEngine &engine, const QString &folder)
{
    const auto database = engine.OpenDatabase(folder, 0, false, u"FoxPro 2.6;"_s);
    QStringList columns;
    for (const ContactField &field : contactFields())
        columns += u"%1 %2"_s.arg(field.column, field.type);
    database->Execute(u"CREATE TABLE KONTAKTE (%1)"_s.arg(columns.join(u", "_s)));
    for (const Contact &contact : contacts())
        insertRow(*database, u"KONTAKTE"_s, rowOf(contact));
    database->Close();
}

} // namespace demo
