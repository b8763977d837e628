// What turns texts of contacts into PC-Kaufmann's form: phone filters, numbers in texts, pieces of texts.
#include "contacts/ActDBF.h"
#include "contacts/clKontakt.h"
#include "fuzz/Target.h"
#include "platform/storage/LikePattern.h"
#include "tests/fakes/FakeProgrammlauf.h"
#include "util/Zahlen.h"
#include "util/Zeichenketten.h"

using namespace Qt::StringLiterals;

namespace {

void checkTrimmed(const QString &number, const QString &from)
{
    // A number without any blank may stay longer: there is nothing that could be dropped.
    fuzz::require(number.size() <= 20 || !number.contains(u' ') || number.indexOf(u' ') >= 20,
                  u"\"%1\" became \"%2\""_s.arg(from, number));
}

void checkPhone(const QString &phone)
{
    FakeDesktop desktop;
    FakeProgrammlauf program(desktop);
    Konfiguration configuration;
    clKontakt contact(configuration, program);

    const QString trimmed = contact.TelefonTrim(phone);
    checkTrimmed(trimmed, phone);
    if (Trim(phone).size() <= 20)
        fuzz::require(trimmed == Trim(phone), u"a short number was changed: "_s + phone);
    checkTrimmed(contact.OLETelefonFilter(phone), phone);
    checkTrimmed(contact.DBF_Telefon_Filter(phone), phone);
    for (const QString &field : {u"Telefon"_s, u"UNIQUE_ID"_s, u"URL"_s, u"LEER"_s}) {
        QVariant fromTable = phone;
        QVariant fromWindow = phone;
        contact.DBF_Lese_Filter(fromTable, field);
        contact.OLE_Lese_Filter(fromWindow, field);
        fuzz::require(fromTable == Trim(phone) && fromWindow == Trim(phone), u"not trimmed: "_s + phone);
    }
    fuzz::require(desktop.boxes.empty(), u"a box for a text"_s);
}

void checkNumbers(const QString &text)
{
    double value = 0;
    fuzz::succeeds([&] { value = Val(text); });
    fuzz::succeeds([&] { CInt(value); });
    fuzz::succeeds([&] { CLng(value); });
    fuzz::require(IsNumeric(text) == Zahlenwert(text).has_value(), u"number or not: "_s + text);
}

void checkPieces(const QString &text)
{
    const int pieces = AnzahlTeile(text, u'|');
    fuzz::require(pieces == 0 || Teil(text, u'|', pieces + 1).isEmpty(), u"a piece too many: "_s + text);
    for (int k = 0; k <= pieces; ++k)
        fuzz::require(!Teil(text, u'|', k).contains(u'|'), u"an uncut piece: "_s + text);
    Token(text, 1);
    Token(text, 2);
}

void checkPattern(const QString &text)
{
    if (text.contains(u'[')) // nothing is escaped
        return;
    const auto pattern = storage::LikePattern::compile(ActDBF::GrossKleinMuster(text), true,
                                                       [](QStringView a, QStringView b) { return a.compare(b); });
    fuzz::require(pattern.has_value(), u"no pattern: "_s + text);
    if (!text.contains(u'#'))
        fuzz::require(pattern->matches(text), u"does not find itself: "_s + text);
}

} // namespace

void fuzz::run(storage::Bytes bytes)
{
    Input input(bytes.first(std::min<std::size_t>(bytes.size(), 1024)));
    const QString phone = input.line();
    checkPhone(phone);
    checkNumbers(phone);
    checkPieces(phone);
    checkPattern(input.line());
}
