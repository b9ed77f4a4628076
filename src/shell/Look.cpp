#include "shell/Look.h"

#include "controls/Icons.h"
#include "shell/FocusStyle.h"

#include <QApplication>

namespace {

/// Colours by role, for the states in which a control takes input, and the text colour of one that takes
/// none.
struct Colours {
    QColor Window, Text, Base, AlternateBase, Button, Mid, Dark, Placeholder, Disabled, Highlight, Link,
        ToolTip;
};

const Colours LightColours{QColor(0xF3, 0xF4, 0xF7), QColor(0x16, 0x19, 0x1D), QColor(0xFF, 0xFF, 0xFF),
                           QColor(0xF6, 0xF7, 0xF9), QColor(0xF7, 0xF8, 0xFA), QColor(0xC9, 0xCD, 0xD4),
                           QColor(0xA9, 0xAF, 0xB8), QColor(0x5A, 0x62, 0x6D), QColor(0x93, 0x99, 0xA3),
                           QColor(0x2D, 0x6C, 0xA2), QColor(0x24, 0x5C, 0x8C), QColor(0xFF, 0xFF, 0xFF)};

const Colours DarkColours{QColor(0x2A, 0x2D, 0x32), QColor(0xE9, 0xEB, 0xEE), QColor(0x1E, 0x21, 0x25),
                          QColor(0x24, 0x28, 0x2C), QColor(0x35, 0x39, 0x3F), QColor(0x4A, 0x4F, 0x57),
                          QColor(0x17, 0x19, 0x1C), QColor(0xA8, 0xAF, 0xB9), QColor(0x7B, 0x82, 0x8C),
                          QColor(0x2D, 0x6C, 0xA2), QColor(0x7F, 0xB6, 0xE6), QColor(0x35, 0x39, 0x3F)};

}  // namespace

namespace Look {

Scheme SchemeOf(const QPalette& desktop) {
    constexpr int Middle = 128;
    return desktop.color(QPalette::Window).lightness() < Middle ? Scheme::Dark : Scheme::Light;
}

QPalette PaletteOf(Scheme scheme) {
    const Colours& colours = scheme == Scheme::Dark ? DarkColours : LightColours;
    QPalette palette(colours.Button, colours.Window);
    palette.setColor(QPalette::Window, colours.Window);
    palette.setColor(QPalette::Base, colours.Base);
    palette.setColor(QPalette::AlternateBase, colours.AlternateBase);
    palette.setColor(QPalette::Button, colours.Button);
    palette.setColor(QPalette::Mid, colours.Mid);
    palette.setColor(QPalette::Dark, colours.Dark);
    palette.setColor(QPalette::ToolTipBase, colours.ToolTip);
    palette.setColor(QPalette::ToolTipText, colours.Text);
    palette.setColor(QPalette::PlaceholderText, colours.Placeholder);
    palette.setColor(QPalette::Highlight, colours.Highlight);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, colours.Link);
    palette.setColor(QPalette::BrightText, Qt::white);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, colours.Text);
        palette.setColor(QPalette::Disabled, role, colours.Disabled);
    }
    palette.setColor(QPalette::Disabled, QPalette::Highlight, colours.Mid);
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, colours.Disabled);
    return palette;
}

void Apply(const QString& wanted) {
    Scheme scheme = SchemeOf(QApplication::palette());
    if (!wanted.isEmpty()) {
        scheme = wanted == QStringLiteral("dark") ? Scheme::Dark : Scheme::Light;
    }
    QApplication::setStyle(new FocusStyle);  // the application takes it over
    QApplication::setPalette(PaletteOf(scheme));
    QApplication::setWindowIcon(Icons::Get(QStringLiteral("larkspan")));
}

}  // namespace Look
