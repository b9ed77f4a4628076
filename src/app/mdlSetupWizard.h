#pragma once

#include <QString>

class CommandLine;
class LocalFiles;
class Settings;
struct PhonebookState;

/// When the two wizards are due.
namespace mdlSetupWizard {

/// True if the setup was never finished, if no phonebook is configured or its file is missing, or if the
/// command line asks for it. A test that fails counts as no.
[[nodiscard]] bool IsSetupWizardDue(const Settings& settings, const LocalFiles& files,
                                    const CommandLine& commandLine);
/// True if the phonebook's Config row, the command line or the settings ask for it; never where Config cannot
/// be read. A missing row counts as one that does not ask.
[[nodiscard]] bool IsPhonebookWizardDue(const PhonebookState& phonebook, const Settings& settings,
                                        const CommandLine& commandLine);
/// Notes that the setup is finished.
void SetSetupFinished(Settings& settings);

}  // namespace mdlSetupWizard
