#pragma once

#include "controls/ReportRecord.h"

/// A record of a grid with three columns: an image, a number and a name.
[[nodiscard]] inline ReportRecord RecordNamed(const QString& name, int value) {
    ReportRecord record;
    record.Tag = name;
    ReportItem image;
    image.HideText = true;
    image.Icon = 0;
    image.ToolTip = QStringLiteral(" <b>tip</b> of ") + name;
    ReportItem number;
    number.Value = value;
    ReportItem text;
    text.Value = name;
    record.Items = {image, number, text};
    record.PreviewText = QStringLiteral("Preview of ") + name;
    return record;
}
