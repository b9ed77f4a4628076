#pragma once

#include <QString>

class Folders;
class LocalFiles;

/// The path of a file that comes with the program (tips, help, icons, sounds), as this machine opens it: in
/// the application folder, where an office may have put its own, else in the installed share folder; empty if
/// it is in neither.
[[nodiscard]] QString FindSuppliedFile(const Folders& folders, const LocalFiles& files, const QString& name);
