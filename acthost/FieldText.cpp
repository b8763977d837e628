// Stored values between the contact table, automation and people.
#include "acthost/FieldText.h"

#include <cmath>

#include <QDate>
#include <QLocale>

#include "acthost/PhoneForms.h"
#include "platform/errors/RunTimeError.h"

using namespace Qt::StringLiterals;

namespace acthost {

namespace {

constexpr int kInvalidCall = 5;

QDate dayZero()
{
    return {1899, 12, 30};
}

QDate dateOf(const storage::DateTime &moment)
{
    return dayZero().addDays(static_cast<qint64>(std::floor(moment.days)));
}

template <typename... Cases> struct Overloaded : Cases... {
    using Cases::operator()...;
};

RunTimeError refused(const Field &field, int number, const QString &reason)
{
    return {number, u"Feld „%1“ (%2): %3"_s.arg(field.label, field.column, reason)};
}

storage::Value numberFrom(const Field &field, const QString &text)
{
    bool isNumber = false;
    const double number = QString(text).replace(u',', u'.').toDouble(&isNumber);
    if (!isNumber)
        throw refused(field, RunTimeError::TypeMismatch, u"„%1“ ist keine Zahl."_s.arg(text));
    return number;
}

storage::Value dateFrom(const Field &field, const QString &text)
{
    for (const QString &form : {u"yyyy-MM-dd"_s, u"d.M.yyyy"_s}) {
        const QDate date = QDate::fromString(text, form);
        if (date.isValid())
            return storage::DateTime{static_cast<double>(dayZero().daysTo(date))};
    }
    throw refused(field, RunTimeError::TypeMismatch, u"„%1“ ist kein Datum."_s.arg(text));
}

storage::Value truthFrom(const Field &field, const QString &text)
{
    if (text.compare("ja"_L1, Qt::CaseInsensitive) == 0)
        return true;
    if (text.compare("nein"_L1, Qt::CaseInsensitive) == 0)
        return false;
    throw refused(field, RunTimeError::TypeMismatch, u"„%1“ ist weder Ja noch Nein."_s.arg(text));
}

storage::Value textFrom(const Field &field, const storage::Column &column, const QString &text)
{
    const QString stored = field.isPhone() ? storedPhone(text) : text;
    if (column.type == storage::Type::Text && stored.size() > column.size)
        throw refused(field, kInvalidCall,
                      u"„%1“ ist zu lang; das Feld hat %2 Stellen."_s.arg(stored).arg(column.size));
    return stored;
}

} // namespace

QVariant automationValue(const Field &field, const storage::Value &value)
{
    return std::visit(
        Overloaded{
            [](std::monostate) { return QVariant(QString()); },
            [](bool truth) { return QVariant(truth ? u"Ja"_s : u"Nein"_s); },
            [](double number) { return QVariant(number); },
            [](const storage::DateTime &moment) { return QVariant(dateOf(moment).toString(Qt::ISODate)); },
            [&field](const QString &text) { return QVariant(field.isPhone() ? automationPhone(text) : text); },
            [&field](const auto &) -> QVariant {
                throw refused(field, RunTimeError::TypeMismatch, u"Felder dieser Art gibt es hier nicht."_s);
            },
        },
        value);
}

QString cardText(const Field &field, const storage::Value &value)
{
    if (const double *number = std::get_if<double>(&value))
        return QLocale(QLocale::German).toString(*number, 'f', QLocale::FloatingPointShortest);
    if (const storage::DateTime *moment = std::get_if<storage::DateTime>(&value))
        return dateOf(*moment).toString(u"dd.MM.yyyy"_s);
    if (const QString *text = std::get_if<QString>(&value); text && field.isPhone())
        return cardPhone(*text);
    return automationValue(field, value).toString();
}

storage::Value storedValue(const Field &field, const storage::Column &column, const QString &text)
{
    switch (column.type) {
    case storage::Type::Text:
    case storage::Type::Memo:
        return textFrom(field, column, text);
    default:
        break;
    }
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return {};
    switch (column.type) {
    case storage::Type::Double:
        return numberFrom(field, trimmed);
    case storage::Type::DateTime:
        return dateFrom(field, trimmed);
    case storage::Type::Boolean:
        return truthFrom(field, trimmed);
    default:
        throw refused(field, RunTimeError::TypeMismatch, u"Felder dieser Art gibt es hier nicht."_s);
    }
}

} // namespace acthost
