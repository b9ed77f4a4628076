#pragma once

#include <QIcon>
#include <QStringList>

/// The program's own icons: line drawings on a 24 by 24 grid that take the text colour of the palette when
/// they are painted, so that they follow a change between light and dark, are dimmed with their button, and
/// are sharp at any scale.
namespace Icons {

/// The icon `name`, which is the file name in icons/ (the program's own icon: in packaging/) without its
/// ending; a null icon for an unknown name.
[[nodiscard]] QIcon Get(const QString& name);
/// All names, sorted.
[[nodiscard]] QStringList Names();

}  // namespace Icons
