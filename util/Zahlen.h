#pragma once

#include <optional>

#include <QString>

/// The number at the beginning of a text, whatever the locale: blanks are skipped, then a sign, digits, a point and an
/// exponent; 0 if there is none.
double Val(const QString &text);

/// Rounded to a whole number, halves to the even one. RunTimeError 6 outside the type's range.
qint16 CInt(double zahl);
qint32 CLng(double zahl);

/// The number that the whole text stands for, in the user's notation or, since the program's own texts are German, in
/// the German one; nothing if it is none. Group separators only where they belong: "1.5" is no German number.
std::optional<double> Zahlenwert(const QString &text);

/// Whether Zahlenwert finds a number.
bool IsNumeric(const QString &text);
