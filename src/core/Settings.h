#pragma once

#include <QString>

#include <memory>

class QSettings;

/// A small store of text values by section and key, one per user (an ini file, organisation "Brenmoor", mode
/// 0600). Values go straight to the store; failures are not reported: a value that is missing, or a failed
/// read, gives the default. All of the program's own settings go through the one instance `AppSettings`.
class Settings {
public:
    Settings();
    ~Settings();
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;

    /// The store's name; set once to "Larkspan Messenger" before the first value is read.
    void SetApplication(const QString& name);
    [[nodiscard]] QString GetValue(const QString& section, const QString& key,
                                   const QString& defaultValue) const;
    /// Written at once.
    void SetValue(const QString& section, const QString& key, const QString& value);
    /// The path of the ini file.
    [[nodiscard]] QString FileName() const;

private:
    std::unique_ptr<QSettings> m_store;
};

/// Sections and keys, one place for all of them.
namespace SettingNames {
inline const QString SectionDB = QStringLiteral("DB");
inline const QString Outbox = QStringLiteral("Outbox");      // folder or file of the outbox, default empty
inline const QString Contacts = QStringLiteral("Contacts");  // file of the phonebook, default empty
inline const QString SectionDefaults = QStringLiteral("Defaults");
inline const QString SortBy = QStringLiteral("SortBy");    // "0" by surname (default), "1" by first name
inline const QString EndWith = QStringLiteral("EndWith");  // signature text, default empty
inline const QString SectionSetup = QStringLiteral("Setup");
inline const QString RunWizard = QStringLiteral("RunWizard");  // "1" (default): setup wizard due
inline const QString SectionNotify = QStringLiteral("Notify");
inline const QString Enabled = QStringLiteral("Enabled");  // "1" (default): tracking and notification on
inline const QString PlaySound = QStringLiteral("Sound");  // "0" (default)
inline const QString Desktop = QStringLiteral("Desktop");  // "0" (default): the desktop's notifications too
inline const QString DesktopDetails =
    QStringLiteral("DesktopDetails");                        // "0" (default): no number, no text there
inline const QString Interval = QStringLiteral("Interval");  // "60" (default), seconds between polls
inline const QString SectionDisplay = QStringLiteral("Display");
inline const QString TabOrder = QStringLiteral("TabOrder");  // saved order of group tabs, default empty
inline const QString Window = QStringLiteral("Window");      // size and place of the window, Base64
inline const QString Splitter = QStringLiteral("Splitter");  // its division, Base64
inline const QString SectionTip = QStringLiteral("Tip");
inline const QString Startup = QStringLiteral("Startup");  // "0" (default): the tip of the day at each start
inline const QString Next = QStringLiteral("Next");        // number of the next tip, from "0" (default)
}  // namespace SettingNames
