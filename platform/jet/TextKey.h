#pragma once

#include <QStringView>

#include "platform/jet/IndexKey.h"

namespace jet {

/// Appends the key of a text in the General order, without the byte that says "not Null". Capitals and small letters
/// have the same key; so have texts that differ in trailing blanks only, or behind the 255th character.
/// In Jet 3, characters outside code page 1252 sort behind all others; no stored text has them.
void appendTextKey(QStringView text, bool jet4, bool ascending, KeyBytes &key);

/// The order of two texts: below, equal to or above 0, as their keys compare.
int compareTexts(bool jet4, QStringView left, QStringView right);

} // namespace jet
