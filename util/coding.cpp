// Scrambled constants: no credential stands readable in the program file.
#include "util/coding.h"

using namespace Qt::StringLiterals;

namespace coding {

namespace {

// Only a piece of each is a credential; the rest is there to be left out.
const QString konstanteW = u"yiqjuep71qi}"_s;
const QString konstanteB = u"YiqjuepVFO6rvk{39"_s;
const QString konstanteK = u"8hz,wPesjdry"_s;
const QString konstanteM = u"t{4%xIiqj}ytxgrjxo7v"_s;

} // namespace

QString entschluesselt(const QString &text)
{
    QString klar = text;
    for (qsizetype i = 0; i < klar.size(); ++i)
        klar[i] = QChar(static_cast<char16_t>(klar[i].unicode() - (3 + i % 4)));
    return klar;
}

QString workgroupDatei()
{
    return entschluesselt(konstanteW);
}

QString benutzer()
{
    return entschluesselt(konstanteB.left(11));
}

QString kennwort()
{
    return entschluesselt(konstanteK.right(7));
}

QString mappingZugriff()
{
    return entschluesselt(konstanteM.mid(5, 12));
}

} // namespace coding
