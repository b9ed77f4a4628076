#include "controls/ReportRecord.h"

#include "core/Dates.h"

QString ReportRecord::TextOf(int item) const {
    if (item < 0 || item >= Items.size() || Items[item].HideText) {
        return {};
    }
    const ReportItem& cell = Items[item];
    return cell.Format.isEmpty() ? cell.Value.toString()
                                 : Dates::Format(cell.Value.toDateTime(), cell.Format);
}
