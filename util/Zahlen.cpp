// Numbers in texts: the leading-number rule, rounding, and the user's notation.
#include "util/Zahlen.h"

#include <cmath>
#include <limits>

#include <QLocale>

#include "platform/errors/RunTimeError.h"

namespace {

template <typename T> T gerundet(double zahl)
{
    const double ganz = std::nearbyint(zahl); // the default rounding mode is half to even
    if (!(ganz >= std::numeric_limits<T>::min() && ganz <= std::numeric_limits<T>::max()))
        throw RunTimeError(RunTimeError::Overflow);
    return static_cast<T>(ganz);
}

bool istZiffer(QChar zeichen)
{
    return zeichen >= u'0' && zeichen <= u'9';
}

qsizetype hinterZiffern(const QString &text, qsizetype ab)
{
    while (ab < text.size() && istZiffer(text[ab]))
        ++ab;
    return ab;
}

qsizetype hinterVorzeichen(const QString &text, qsizetype ab)
{
    return ab < text.size() && (text[ab] == u'+' || text[ab] == u'-') ? ab + 1 : ab;
}

} // namespace

double Val(const QString &text)
{
    QString ohne = text;
    ohne.removeIf([](QChar zeichen) { return zeichen == u' ' || zeichen == u'\t' || zeichen == u'\n'; });

    const qsizetype ziffern = hinterVorzeichen(ohne, 0);
    qsizetype ende = hinterZiffern(ohne, ziffern);
    if (ende < ohne.size() && ohne[ende] == u'.')
        ende = hinterZiffern(ohne, ende + 1);
    if (ende < ohne.size() && ohne[ende].toUpper() == u'E') {
        const qsizetype exponent = hinterVorzeichen(ohne, ende + 1);
        if (hinterZiffern(ohne, exponent) > exponent)
            ende = hinterZiffern(ohne, exponent);
    }
    bool gelesen = false;
    const double zahl = QLocale::c().toDouble(QStringView(ohne).left(ende), &gelesen);
    if (!gelesen && std::isinf(zahl))
        throw RunTimeError(RunTimeError::Overflow);
    return gelesen ? zahl : 0;
}

qint16 CInt(double zahl)
{
    return gerundet<qint16>(zahl);
}

qint32 CLng(double zahl)
{
    return gerundet<qint32>(zahl);
}

std::optional<double> Zahlenwert(const QString &text)
{
    for (const QLocale &schreibweise : {QLocale(), QLocale(QLocale::German, QLocale::Germany)}) {
        bool gelesen = false;
        const double zahl = schreibweise.toDouble(text.trimmed(), &gelesen);
        if (gelesen && std::isfinite(zahl))
            return zahl;
    }
    return std::nullopt;
}

bool IsNumeric(const QString &text)
{
    return Zahlenwert(text).has_value();
}
