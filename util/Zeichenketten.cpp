// Texts that consist of pieces, as in the ini file and in the sources of composed fields.
#include "util/Zeichenketten.h"

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
    return Teil(text, u'|', k).trimmed();
}
