#pragma once

#include <QString>

/// The text without the blanks at both ends. Only blanks (character 32) count: line breaks, tabs and no-break spaces
/// stay.
QString Trim(const QString &text);

/// How many pieces a text has: 0 for the empty text, else 1 plus the separators from the second character on. One in
/// front is not counted, so the last piece of such a text cannot be reached.
int AnzahlTeile(const QString &text, QChar trenner);

/// Piece number k (from 1) as it stands; "" outside 1 to AnzahlTeile.
QString Teil(const QString &text, QChar trenner, int k);

/// Piece number k of a value of the form number|name, trimmed.
QString Token(const QString &text, int k);
