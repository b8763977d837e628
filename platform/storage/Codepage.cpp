// The code pages of dBASE and Jet 3 texts, as tables of their upper halves.
#include "platform/storage/Codepage.h"

#include <QList>

#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;

namespace storage {

constexpr Codepage windows1252(u"Windows-1252",
                               u"€\x81‚ƒ„…†‡ˆ‰Š‹Œ\x8DŽ\x8F"
                               u"\x90‘’“”•–—˜™š›œ\x9DžŸ"
                               u"\u00A0¡¢£¤¥¦§¨©ª«¬\u00AD®¯"
                               u"°±²³´µ¶·¸¹º»¼½¾¿"
                               u"ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏ"
                               u"ÐÑÒÓÔÕÖ×ØÙÚÛÜÝÞß"
                               u"àáâãäåæçèéêëìíîï"
                               u"ðñòóôõö÷øùúûüýþÿ");

constexpr Codepage dos437(u"DOS-Zeichensatz 437",
                          u"ÇüéâäàåçêëèïîìÄÅ"
                          u"ÉæÆôöòûùÿÖÜ¢£¥₧ƒ"
                          u"áíóúñÑªº¿⌐¬½¼¡«»"
                          u"░▒▓│┤╡╢╖╕╣║╗╝╜╛┐"
                          u"└┴┬├─┼╞╟╚╔╩╦╠═╬╧"
                          u"╨╤╥╙╘╒╓╫╪┘┌█▄▌▐▀"
                          u"αßΓπΣσµτΦΘΩδ∞φε∩"
                          u"≡±≥≤⌠⌡÷≈°∙·√ⁿ²■\u00A0");

constexpr Codepage dos850(u"DOS-Zeichensatz 850",
                          u"ÇüéâäàåçêëèïîìÄÅ"
                          u"ÉæÆôöòûùÿÖÜø£Ø×ƒ"
                          u"áíóúñÑªº¿®¬½¼¡«»"
                          u"░▒▓│┤ÁÂÀ©╣║╗╝¢¥┐"
                          u"└┴┬├─┼ãÃ╚╔╩╦╠═╬¤"
                          u"ðÐÊËÈıÍÎÏ┘┌█▄¦Ì▀"
                          u"ÓßÔÒõÕµþÞÚÛÙýÝ¯´"
                          u"\u00AD±‗¾¶§÷¸°¨·¹³²■\u00A0");

QString Codepage::decode(Bytes bytes) const
{
    QString text = u""_s;
    decode(bytes, text);
    return text;
}

void Codepage::decode(Bytes bytes, QString &into) const
{
    into.resize(static_cast<qsizetype>(bytes.size()));
    auto *text = reinterpret_cast<char16_t *>(into.data());
    std::uint8_t all = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) { // without a branch, so that many are done at once
        const auto byte = std::to_integer<std::uint8_t>(bytes[i]);
        text[i] = byte;
        all |= byte;
    }
    if (all < 0x80)
        return;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (text[i] >= 0x80)
            text[i] = m_upper[text[i] - 0x80U];
    }
}

QByteArray Codepage::encode(QStringView text) const
{
    QByteArray bytes(text.size(), Qt::Uninitialized);
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t character = text[i].unicode();
        if (character < 0x80) {
            bytes[i] = static_cast<char>(character);
            continue;
        }
        const auto found = std::ranges::lower_bound(m_byCharacter, character, {}, &Entry::character);
        if (found == m_byCharacter.end() || found->character != character) {
            const char32_t whole = QStringView(text.mid(i, 2)).toUcs4().front();
            throw StorageError(StorageError::NotEncodable,
                               u"Das Zeichen „%1“ (U+%2) gibt es im Zeichensatz %3 nicht"_s.arg(
                                   QString::fromUcs4(&whole, 1),
                                   QString::number(uint(whole), 16).toUpper().rightJustified(4, u'0'), name()));
        }
        bytes[i] = static_cast<char>(found->byte);
    }
    return bytes;
}

} // namespace storage
