#include "app/mdlSetupWizard.h"

#include "app/CommandLine.h"
#include "core/Numbers.h"
#include "core/Settings.h"
#include "core/Trap.h"
#include "platform/LocalFiles.h"
#include "store/Phonebook.h"

namespace mdlSetupWizard {

namespace {

QString RunWizardSetting(const Settings& settings) {
    return settings.GetValue(SettingNames::SectionSetup, SettingNames::RunWizard, QStringLiteral("1"));
}

bool ReadsAsTrue(const QString& value) {
    return value.compare(QStringLiteral("true"), Qt::CaseInsensitive) == 0 || Numbers::Read(value) != 0.0;
}

}  // namespace

bool IsSetupWizardDue(const Settings& settings, const LocalFiles& files, const CommandLine& commandLine) {
    bool isDue = false;
    Trap([&] { isDue = ReadsAsTrue(RunWizardSetting(settings)); });
    Trap([&] { isDue = isDue || mdlPhonebook::GetPhonebookPath(settings).isEmpty(); });
    Trap([&] { isDue = isDue || !files.Exists(mdlPhonebook::GetPhonebookPath(settings)); });
    return isDue || commandLine.IsSetupWizard();
}

bool IsPhonebookWizardDue(const PhonebookState& phonebook, const Settings& settings,
                          const CommandLine& commandLine) {
    const std::optional<bool> configured = mdlPhonebook::ReadRunWizard(phonebook);
    if (!configured) {
        return false;
    }
    return *configured || commandLine.IsPhonebookWizard() ||
           RunWizardSetting(settings) == QStringLiteral("1");
}

void SetSetupFinished(Settings& settings) {
    settings.SetValue(SettingNames::SectionSetup, SettingNames::RunWizard, QStringLiteral("0"));
}

}  // namespace mdlSetupWizard
