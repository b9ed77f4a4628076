#pragma once

#include <QString>

/// The product's names, as titles and placeholders show them, and where it is at home.
namespace Product {
inline const QString AppTitle = QStringLiteral("Larkspan Messenger");
inline const QString SuiteTitle = QStringLiteral("Larkspan Business");
inline const QString Company = QStringLiteral("Brenmoor");
inline const QString HomePage = QStringLiteral("https://larkspan.example/");
}  // namespace Product
