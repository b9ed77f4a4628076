#pragma once

#include <QString>

/// The folders of this machine that the program uses. Every result ends in a separator ("\" or "/"), so that a
/// file name can be put right behind it; NativePath turns the sum into what this machine opens.
class Folders {
public:
    virtual ~Folders() = default;
    /// Where the local files lie: LARKSPAN_HOME if set; else the running program's folder if it can be
    /// written; else $XDG_DATA_HOME/larkspan-messenger, made with mode 0700.
    [[nodiscard]] virtual QString ApplicationFolder() const = 0;
    /// What came with the program and is not found in the application folder: icons, sounds, tips, help.
    [[nodiscard]] virtual QString ShareFolder() const = 0;
    /// The environment variable TEMP, or the application folder if that is empty.
    [[nodiscard]] virtual QString TempFolder() const = 0;
    [[nodiscard]] virtual QString CurrentFolder() const = 0;
};

/// The folders of the running process.
class SystemFolders final : public Folders {
public:
    [[nodiscard]] QString ApplicationFolder() const override;
    [[nodiscard]] QString ShareFolder() const override;
    [[nodiscard]] QString TempFolder() const override;
    [[nodiscard]] QString CurrentFolder() const override;
};

/// Fills in COMPUTERNAME and USERNAME where the session does not set them: the host's name in upper case, and
/// the name of the account.
void CompleteEnvironment();
