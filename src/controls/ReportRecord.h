#pragma once

#include <QColor>
#include <QList>
#include <QString>
#include <QVariant>

/// One cell of a ReportControl's record.
struct ReportItem {
    QVariant Value;     // what the column is sorted by, and shown unless HideText
    QString Format;     // of Dates::Format, for a value that is a date
    QColor TextColour;  // for light paper; not valid: the palette's
    QColor BackColour;  // for light paper; not valid: the palette's
    int Icon = -1;      // number of an attached image, from 0; -1: none
    bool HideText = false;
    QString ToolTip;  // also what a screen reader says of a cell without text; empty: the preview
};

/// One record of a ReportControl: a cell for each column and a line of text under them.
struct ReportRecord {
    QString Tag;
    QList<ReportItem> Items;
    QString PreviewText;

    /// The text that a cell shows; empty for one that shows none or is not there.
    [[nodiscard]] QString TextOf(int item) const;
};
