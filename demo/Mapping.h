#pragma once

#include <span>

#include <QStringView>

namespace demo {

/// Where a mapped field goes.
enum Direction : unsigned {
    ToAccount = 1, ///< the main contact's value fills the account's column
    ToContact = 2, ///< goes back to the contact manager
    MainEntry = 4, ///< a communication entry of the main contact
    OtherEntry = 8 ///< a communication entry of a secondary contact
};

/// A column of the contact table with its number and German name, and the account column it is mapped to.
struct ContactField {
    int number; ///< the contact manager's identifier
    QStringView column; ///< of the contact table, in the spelling in which the mapping names it
    QStringView type; ///< as CREATE TABLE takes it
    QStringView label; ///< on the contact manager's card
    QStringView mappedName{}; ///< neutral name; empty: not mapped
    QStringView accountColumn{};
    unsigned directions = 0; ///< of Direction
};

/// An account column put together from several fields.
struct ComposedField {
    QStringView sources;
    QStringView accountColumn;
};

/// In table order; the mapped ones are numbered from 1 in this order. The first of them tells several main contacts of
/// one company apart.
std::span<const ContactField> contactFields();
std::span<const ComposedField> composedFields();

} // namespace demo
