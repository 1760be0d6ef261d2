#pragma once

#include "platform/Values.h"

#include <QVariant>
#include <QVariantMap>

namespace velmora::RecordReading {

// The value under key of a dictionary value; null when the key is missing. Raises ValueError
// when d is not a dictionary, as a record reader's guard expects.
QVariant valueFor(const QVariant& d, const QString& key);

// A string field's value (Values::stringValue), or fallback when the value is missing.
QString stringOr(const QVariant& value, const QString& fallback);

// The elements of an array value; none for a missing value. Raises ValueError for any other kind.
QVariantList elementsOf(const QVariant& value, const char* what);

// The text of the guard's log line for a failure while reading a record.
QString describe(const std::exception& e);

} // namespace velmora::RecordReading
