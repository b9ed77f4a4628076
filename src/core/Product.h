#pragma once

#include <QString>

/// The product's names, as titles and placeholders show them.
namespace Product {
inline const QString AppTitle = QStringLiteral("Larkspan Messenger");
inline const QString SuiteTitle = QStringLiteral("Larkspan Business");
inline const QString Company = QStringLiteral("Brenmoor");
}  // namespace Product
