// Texts that consist of pieces, as in the ini file and in the sources of composed fields.
#include "util/Zeichenketten.h"

#include <algorithm>
#include <iterator>

QString Trim(const QString &text)
{
    const auto istInhalt = [](QChar zeichen) { return zeichen != u' '; };
    const auto anfang = std::find_if(text.begin(), text.end(), istInhalt);
    const auto ende = std::find_if(text.rbegin(), std::make_reverse_iterator(anfang), istInhalt).base();
    return text.sliced(anfang - text.begin(), ende - anfang);
}

int AnzahlTeile(const QString &text, QChar trenner)
{
    if (text.isEmpty())
        return 0;
    return 1 + static_cast<int>(QStringView(text).mid(1).count(trenner));
}

QString Teil(const QString &text, QChar trenner, int k)
{
    if (k < 1 || k > AnzahlTeile(text, trenner))
        return {};
    qsizetype start = 0;
    for (int i = 1; i < k; ++i)
        start = text.indexOf(trenner, start) + 1;
    const qsizetype end = text.indexOf(trenner, start);
    return text.mid(start, end < 0 ? -1 : end - start);
}

QString Token(const QString &text, int k)
{
    return Trim(Teil(text, u'|', k));
}
