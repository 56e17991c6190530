#include "core/preferences.h"

void preferences::keep(QSettings &store, QLatin1StringView key, const QVariant &value)
{
    // A file holds texts only, and gives a number back as one; what is missing reads as an empty one.
    if (store.value(key, QString()).toString() != value.toString()) {
        store.setValue(key, value);
    }
}
