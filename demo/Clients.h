#pragma once

#include <span>

#include <QStringView>

namespace demo {

/// A communication entry of an account.
struct Entry {
    QStringView kind; ///< "Telefon", "Mobil", "Fax" or "Email"
    QStringView value;
    QStringView person{};
};

/// A personal account. What is left out stays at the table's default.
struct Account {
    QStringView number; ///< type letter and six digits
    QStringView matchcode{};
    QStringView salutation{};
    QStringView name{};
    QStringView street{};
    QStringView zip{};
    QStringView city{};
    QStringView phone{};
    QStringView contact{};
    double discount = 0; ///< percent
    int priceGroup = 0;
    double creditLimit = 0; ///< euros
    QStringView since{}; ///< ISO date
    QStringView note{};
    QStringView card{}; ///< only in a client that keeps the numbers of customer cards
    std::span<const Entry> entries{};
};

struct PriceList {
    int number;
    QStringView name;
};

struct Currency {
    int number;
    QStringView name;
    QStringView code;
    double rate; ///< units for one euro
};

/// One client database.
struct Client {
    QStringView file;
    QStringView company;
    QStringView password{};
    bool hasCustomerCards = false; ///< its account table has a column that the template lacks
    std::span<const Account> accounts;
    std::span<const PriceList> priceLists;
    QStringView priceGroups[3];
    std::span<const Currency> currencies;
};

std::span<const Client> clients();

} // namespace demo
