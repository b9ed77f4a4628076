#include "store/engine/Recordset.h"

#include "core/Numbers.h"
#include "store/engine/Error.h"

#include <QDateTime>

namespace engine {

QVariant Recordset::Value(QStringView name) const {
    const int index = FieldIndex(name);
    if (index < 0) {
        throw Failure(Number::ItemNotFound, QStringLiteral("There is no field of that name."));
    }
    return Value(index);
}

QString Recordset::Text(int index) const {
    return Numbers::NullToString(Value(index));
}

QVariant Recordset::ClockFace(int index) const {
    QVariant value = Value(index);
    if (value.typeId() == QMetaType::QDateTime) {
        const QDateTime time = value.toDateTime();
        return QDateTime(time.date(), time.time(), Qt::UTC);
    }
    return value;
}

bool FieldExists(const Recordset* recordset, QStringView name) noexcept {
    try {
        return recordset != nullptr && recordset->FieldIndex(name) >= 0;
    } catch (...) {
        return false;
    }
}

}  // namespace engine
