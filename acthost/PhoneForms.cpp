// Phone numbers between the contact table, automation and the contact card.
#include "acthost/PhoneForms.h"

#include <array>
#include <optional>

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace acthost {

namespace {

constexpr int kMaskCharacters = 6;
constexpr int kBitsPerCharacter = 6;
constexpr int kPlaces = kMaskCharacters * kBitsPerCharacter;

struct Number {
    QString country; // may be empty
    QString local; // area and digits, separated by single blanks
};

bool isSeparator(QStringView mask, int place)
{
    if (place > kPlaces)
        return false;
    const int character = kMaskCharacters - 1 - (place - 1) / kBitsPerCharacter;
    return ((mask[character].unicode() >> ((place - 1) % kBitsPerCharacter)) & 1U) != 0;
}

QString withSeparators(const QString &signs, QStringView mask)
{
    QString local;
    qsizetype next = 0;
    while (next < signs.size())
        local += isSeparator(mask, static_cast<int>(local.size()) + 1) ? QChar(u' ') : signs[next++];
    return local.simplified();
}

std::optional<Number> readStored(const QString &text)
{
    static const QRegularExpression form(u"^(\\d*)\\|([^|]*)\\|([@-\\x7f]{6})([^|]*)$"_s);
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    return Number{match.captured(1), withSeparators(match.captured(2) + match.captured(4), match.capturedView(3))};
}

QString maskOf(QStringView local)
{
    std::array<unsigned, kMaskCharacters> bits{};
    for (int place = 1; place <= kPlaces && place <= local.size(); ++place) {
        if (local[place - 1] == u' ')
            bits[static_cast<std::size_t>(kMaskCharacters - 1 - (place - 1) / kBitsPerCharacter)] |= 1U
                << ((place - 1) % kBitsPerCharacter);
    }
    QString mask;
    for (const unsigned six : bits)
        mask += QChar(u'@' + six);
    return mask;
}

} // namespace

QString automationPhone(const QString &stored)
{
    const std::optional<Number> number = readStored(stored);
    if (!number)
        return stored;
    return number->country.isEmpty() ? number->local : u"[%1] %2"_s.arg(number->country, number->local);
}

QString cardPhone(const QString &stored)
{
    const std::optional<Number> number = readStored(stored);
    if (!number)
        return stored;
    return number->country.isEmpty() ? number->local : u"+%1 %2"_s.arg(number->country, number->local);
}

QString storedPhone(const QString &automation)
{
    static const QRegularExpression form(u"^\\s*\\[\\s*(\\d+)\\s*\\]([^|]*)$"_s);
    const QRegularExpressionMatch match = form.match(automation);
    const QString local = match.captured(2).simplified();
    if (local.isEmpty())
        return automation;
    const qsizetype areaEnd = local.indexOf(u' ');
    const QString area = local.left(areaEnd);
    const QString digits = local.sliced(area.size()).remove(u' ');
    return u"%1|%2|%3%4"_s.arg(match.captured(1), area, maskOf(local), digits);
}

} // namespace acthost
