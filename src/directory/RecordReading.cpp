#include "directory/RecordReading.h"

namespace velmora::RecordReading {

QVariant valueFor(const QVariant& d, const QString& key)
{
    if (d.typeId() != QMetaType::QVariantMap) {
        throw ValueError(QStringLiteral("a %1 was given where a dictionary was expected (key \"%2\")")
                             .arg(Values::kindName(d), key)
                             .toStdString());
    }
    // Reading through the const map avoids a detach of the shared tree.
    const QVariantMap& map = *static_cast<const QVariantMap*>(d.constData());
    const auto it = map.constFind(key);
    return it == map.constEnd() ? QVariant() : *it;
}

QString stringOr(const QVariant& value, const QString& fallback)
{
    const QString s = Values::stringValue(value);
    return s.isNull() ? fallback : s;
}

QVariantList elementsOf(const QVariant& value, const char* what)
{
    if (!value.isValid() || value.isNull())
        return {};
    if (value.typeId() != QMetaType::QVariantList) {
        throw ValueError(QStringLiteral("\"%1\" is a %2, not an array")
                             .arg(QLatin1String(what), Values::kindName(value))
                             .toStdString());
    }
    return value.toList();
}

QString describe(const std::exception& e)
{
    return QString::fromUtf8(e.what());
}

} // namespace velmora::RecordReading
