#include "shell/WindowPlace.h"

#include "core/Settings.h"

#include <QSplitter>
#include <QWidget>

namespace {

constexpr QSize FirstSize(1100, 740);
const QString WindowKey = QStringLiteral("Window");
const QString SplitterKey = QStringLiteral("Splitter");

QByteArray Read(const Settings& settings, const QString& key) {
    return QByteArray::fromBase64(settings.GetValue(SettingNames::SectionDisplay, key, QString()).toLatin1());
}

}  // namespace

void WindowPlace::Restore(QWidget& window, QSplitter& splitter, const Settings& settings) {
    window.resize(FirstSize);
    window.restoreGeometry(Read(settings, WindowKey));
    splitter.restoreState(Read(settings, SplitterKey));
}

void WindowPlace::Save(const QWidget& window, const QSplitter& splitter, Settings& settings) {
    settings.SetValue(SettingNames::SectionDisplay, WindowKey,
                      QString::fromLatin1(window.saveGeometry().toBase64()));
    settings.SetValue(SettingNames::SectionDisplay, SplitterKey,
                      QString::fromLatin1(splitter.saveState().toBase64()));
}
