#pragma once

#include <QString>

/// Hands an address to whatever the desktop opens such addresses with.
class UrlOpener {
public:
    virtual ~UrlOpener() = default;
    /// Returns at once; an address that nobody opens goes unnoticed.
    virtual void Open(const QString& url) = 0;
};
