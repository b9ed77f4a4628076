#pragma once

#include "platform/UrlOpener.h"

/// The desktop's own programs: a browser for a web page.
class QtUrlOpener final : public UrlOpener {
public:
    void Open(const QString& url) override;
};
