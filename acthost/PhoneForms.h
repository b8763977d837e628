#pragma once

#include <QString>

namespace acthost {

/// A phone number has three forms:
///
///   stored      49|40|@@@@AD5529950    country, area, six mask characters and the remaining digits
///   automation  [49] 40 552 9950
///   card        +49 40 552 9950
///
/// The mask has 36 bits, six in the low bits of each character, the last character holding places 1 to 6. A set bit
/// means that this place of the local number, counted from 1, is a separator; area and digits fill the other places.
/// A text in any other form is plain: it is the same in all three.

QString automationPhone(const QString &stored);
QString cardPhone(const QString &stored);

/// What to store for a text that came by automation. "[49]40 552 9950" or "[49] 40 552 9950" gets the stored form, its
/// first group being the area; everything else stays plain. Separators beyond place 36 are lost.
QString storedPhone(const QString &automation);

} // namespace acthost
