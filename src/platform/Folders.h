#pragma once

#include <QString>

/// The folders of this machine that the program uses. Every result ends in a separator ("\" or "/"), so that
/// a file name can be put right behind it; NativePath turns the sum into what this machine opens.
class Folders {
public:
    virtual ~Folders() = default;
    /// Where the local files lie: LARKSPAN_HOME if set; else the running program's folder if it can be
    /// written (a copy that an office unpacked for itself; not an installed package, which also an
    /// administrator's run leaves alone); else $XDG_DATA_HOME/larkspan-messenger. A missing folder is made
    /// with mode 0700.
    [[nodiscard]] virtual QString ApplicationFolder() const = 0;
    /// What came with the program and is not found in the application folder: icons, sounds, tips, help. The
    /// first that exists of ../share/larkspan-messenger beside the program's folder and larkspan-messenger in
    /// $XDG_DATA_DIRS.
    [[nodiscard]] virtual QString ShareFolder() const = 0;
    /// The environment variable TEMP, or the application folder if that is empty.
    [[nodiscard]] virtual QString TempFolder() const = 0;
    /// The working folder of the process.
    [[nodiscard]] virtual QString CurrentFolder() const = 0;
};

/// The folders of the running process.
class SystemFolders final : public Folders {
public:
    /// `programFolder` is where the running program lies, found out if empty.
    explicit SystemFolders(const QString& programFolder = QString());
    [[nodiscard]] QString ApplicationFolder() const override;
    [[nodiscard]] QString ShareFolder() const override;
    [[nodiscard]] QString TempFolder() const override;
    [[nodiscard]] QString CurrentFolder() const override;

private:
    QString m_programFolder;
};

/// Fills in COMPUTERNAME and USERNAME where the session does not set them: the host's name in upper case, and
/// the name of the account.
void CompleteEnvironment();
