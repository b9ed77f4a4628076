#include "core/Settings.h"

#include <QFile>
#include <QSettings>
#include <QStringList>

#include "core/Product.h"

namespace {

QString FullKey(const QString& section, const QString& key) {
    return section + u'/' + key;
}

}  // namespace

Settings::Settings() = default;
Settings::~Settings() = default;

void Settings::SetApplication(const QString& name) {
    m_store = std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope, Product::Company, name);
    m_store->setFallbacksEnabled(false);
}

QString Settings::GetValue(const QString& section, const QString& key, const QString& defaultValue) const {
    if (m_store == nullptr) {
        return defaultValue;
    }
    m_store->sync();
    const QVariant value = m_store->value(FullKey(section, key));
    if (value.isNull()) {
        return defaultValue;
    }
    // A comma in a line that was written by hand makes the store see a list.
    return value.typeId() == QMetaType::QStringList ? value.toStringList().join(QStringLiteral(", "))
                                                    : value.toString();
}

void Settings::SetValue(const QString& section, const QString& key, const QString& value) {
    if (m_store != nullptr) {
        m_store->setValue(FullKey(section, key), value);
        m_store->sync();
        QFile::setPermissions(m_store->fileName(), QFile::ReadOwner | QFile::WriteOwner);
    }
}

QString Settings::FileName() const {
    return m_store == nullptr ? QString() : m_store->fileName();
}
