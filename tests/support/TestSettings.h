#pragma once

#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>

/// Points both formats of QSettings and the standard paths of this process into a temporary folder, so that
/// no test ever touches a user's settings.
class TestSettings {
public:
    TestSettings() {
        QStandardPaths::setTestModeEnabled(true);
        for (const auto format : {QSettings::NativeFormat, QSettings::IniFormat}) {
            for (const auto scope : {QSettings::UserScope, QSettings::SystemScope}) {
                QSettings::setPath(format, scope, m_folder.path());
            }
        }
        qputenv("XDG_CONFIG_HOME", m_folder.path().toLocal8Bit());
        qputenv("XDG_DATA_HOME", m_folder.path().toLocal8Bit());
    }

private:
    QTemporaryDir m_folder;
};
