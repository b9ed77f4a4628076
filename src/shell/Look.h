#pragma once

#include <QPalette>
#include <QString>

/// The program's look: one widget style and two palettes, light and dark, out of which every colour is taken.
namespace Look {

/// Dark text on light, or light text on dark.
enum class Scheme { Light, Dark };

/// Dark where the desktop's windows are dark.
[[nodiscard]] Scheme SchemeOf(const QPalette& desktop);
/// All colours of the program in one scheme.
[[nodiscard]] QPalette PaletteOf(Scheme scheme);
/// `wanted` is "light", "dark" or empty for the desktop's own.
void Apply(const QString& wanted);

}  // namespace Look
