#include "app/AppContext.h"

#include "app/Machine.h"
#include "core/Numbers.h"

#include <QLocale>

AppContext::AppContext(const Machine& machine)
    : History(machine.Files, machine.Places, machine.Boxes, machine.Page),
      MessageTracker(*this, AppSettings, machine.Time),
      Notifier({machine.Beeper, machine.Places, machine.Files, machine.Notices}),
      Database{machine.Engine, machine.Time, machine.Pump, machine.NetworkDrives, machine.Places},
      Outbox{*this, AppSettings, machine.Boxes, Database},
      Phonebook{*this, AppSettings, machine.Boxes, Database, [this] {
                    AddressContacts.Clear();
                    RecipientContacts.Clear();
                }} {}

void AppContext::ReadLocaleCountry() {
    constexpr qsizetype CodeLength = 2;
    const QString code = QLocale().name().section(u'_', 1, 1);
    LocaleCountry = code.size() == CodeLength ? code : QStringLiteral("IE");
}

void AppContext::LoadSortBy() {
    const QString value =
        AppSettings.GetValue(SettingNames::SectionDefaults, SettingNames::SortBy, QStringLiteral("0"));
    SortBy = Numbers::NullToLong(value);
}

void AppContext::SaveSortBy() {
    AppSettings.SetValue(SettingNames::SectionDefaults, SettingNames::SortBy, QString::number(SortBy));
}

void AppContext::CreateTracker(TrayBalloon* trayIcon, PopupSurface* popup) {
    Notifier.SetTrayIcon(trayIcon);
    Notifier.SetPopup(popup);
    MessageTracker.SetSink(&Notifier);
    MessageTracker.LoadSettings();
}

void AppContext::ReleaseTracker() {
    MessageTracker.SetSink(nullptr);
    Notifier.SetPopup(nullptr);
    Notifier.SetTrayIcon(nullptr);
}
