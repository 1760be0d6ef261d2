// SPDX-FileCopyrightText: 2026 The velmora-share developers
//
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QVariant>

#include <stdexcept>

namespace velmora {

// Raised when a property-list value is asked for a conversion its kind does not have
// (a dictionary's integer value, a date's text). The record readers catch it in their guard.
class ValueError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Conversions of property-list values with the platform's semantics: a string's number is read
// from its leading characters and is 0 without one, numbers convert as numbers do, a missing
// value (null QVariant) gives 0 or false, and any other kind raises ValueError.
namespace Values {

// Leading white space, an optional sign, decimal digits up to the first other character;
// clamps to the 64-bit range on overflow. "0x10" is 0, "1.9" is 1.
qint64 integerValue(QStringView text);
// True when, after white space, an optional sign and leading zeros, the next character is
// one of Y y T t 1-9.
bool boolValue(QStringView text);
// The leading decimal number, with fraction and exponent, read without regard to the locale.
double doubleValue(QStringView text);

qint64 integerValue(const QVariant& value);
bool boolValue(const QVariant& value);
double doubleValue(const QVariant& value);
// Single precision, as the platform's floatValue gives it.
float floatValue(const QVariant& value);

// A string field's value: a string as it stands, a number or boolean as its text, null for a
// missing value; raises ValueError for a container, date or data.
QString stringValue(const QVariant& value);

// The name of the value's kind, for error texts ("dictionary", "array", "string" ...).
QString kindName(const QVariant& value);

} // namespace Values
} // namespace velmora
