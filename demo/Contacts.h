#pragma once

#include <span>

#include <QStringView>

namespace demo {

/// A company and what all its contacts share.
struct Company {
    QStringView key; ///< seven letters with which its contacts' identifiers begin
    QStringView name;
    QStringView street{};
    QStringView zip{};
    QStringView city{};
    QStringView country = u"Deutschland";
    QStringView website{};
    QStringView fax{};
};

/// One contact of the contact manager. Phone numbers with the country in square brackets are kept in the stored form
/// with its mask, all others as they stand.
struct Contact {
    QStringView id; ///< unique, at most 12 characters: the key of the company, a dash, a number
    QStringView salutation;
    QStringView firstName{};
    QStringView lastName{};
    QStringView department{};
    QStringView phone{};
    QStringView mobile{};
    QStringView email{};
    QStringView account{}; ///< number, client and role: only where the contact is in the accounting program already
    QStringView client{};
    QStringView role{};
    QStringView companyName{}; ///< where it is not written as the company itself writes it
    QStringView privatePhone{};
    QStringView postBox{};
    QStringView notes{};
};

/// All companies and contacts, in the order in which they stand in the table.
std::span<const Company> companies();
std::span<const Contact> contacts();

/// The company of a contact; contacts without one belong to a company without a name.
const Company &companyOf(const Contact &contact);

} // namespace demo
