#pragma once

#include <QList>
#include <QRect>
#include <QString>

class ModalDoor;
class QPagedPaintDevice;
class QPainter;
class ReportControl;
struct ReportRecord;

/// Puts the rows of a ReportControl on paper: a title and the page number on each page, the column heads
/// under it, no row torn in two. Columns are as wide as on the screen; where the paper is too narrow for that
/// they give way, and texts end in an ellipsis. Whatever the colours of the screen are, paper is white.
class ReportPrinter {
public:
    /// The control outlives it.
    ReportPrinter(const ReportControl& grid, QString title);

    /// With a preview, in which the user chooses printer and paper; without one to the default printer.
    void Print(ModalDoor& door, bool isPreview) const;
    /// Draws all pages. Nothing if the device cannot be drawn on.
    void Render(QPagedPaintDevice& device) const;

private:
    /// Measures of one run, in units of the device.
    struct Sheet;

    [[nodiscard]] Sheet Measure(QPainter& painter) const;
    /// The left edge of each column, and the right end of the last, on paper of this width.
    [[nodiscard]] QList<int> ColumnEdges(int width, double scale) const;
    void DrawHead(QPainter& painter, const Sheet& sheet, int page) const;
    void DrawRow(QPainter& painter, const Sheet& sheet, const ReportRecord& record, int top) const;

    const ReportControl& m_grid;
    QString m_title;
};
