#pragma once

#include <QWidget>

class QLabel;

/// The window that is seen while the program starts.
class frmSplash final : public QWidget {
    Q_OBJECT
public:
    /// `year` for the placeholders of its texts; `version` as major.minor.revision.
    frmSplash(int year, const QString& version);

private:
    [[nodiscard]] QLabel* NewLabel(const QString& name, const QString& text);
};
