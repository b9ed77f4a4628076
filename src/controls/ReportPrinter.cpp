#include "controls/ReportPrinter.h"

#include "controls/ModalDoor.h"
#include "controls/ReportControl.h"
#include "controls/ReportPaint.h"

#include <QHeaderView>
#include <QPainter>
#include <QPalette>
#include <QPrintPreviewDialog>
#include <QPrinter>

#include <algorithm>
#include <utility>

namespace {

constexpr int PointSize = 9;
constexpr double LineGap = 0.2;  // between the lines of a row, in heights of a line
constexpr double RowGap = 0.5;   // above and below a row, together
const QColor Ink = Qt::black;
const QColor Rule(0xA0, 0xA0, 0xA0);

/// The first and the last page, from 0: all, or those that the user has asked the printer for.
std::pair<int, int> PagesWanted(QPagedPaintDevice& device, int pages) {
    const auto* printer = dynamic_cast<const QPrinter*>(&device);
    if (printer == nullptr || printer->fromPage() <= 0) {
        return {0, pages - 1};
    }
    const int last = printer->toPage() > 0 ? std::min(printer->toPage(), pages) : pages;
    return {std::min(printer->fromPage(), last) - 1, last - 1};
}

}  // namespace

struct ReportPrinter::Sheet {
    int Width = 0;
    int Line = 0;        // height of a line of text
    int Pixel = 1;       // what a pixel of the screen is on this device
    int HeadHeight = 0;  // title and column heads
    int RowHeight = 0;
    int RowsPerPage = 1;
    int Pages = 1;
    QList<int> Left;  // of each column, and the right end of the last
};

ReportPrinter::ReportPrinter(const ReportControl& grid, QString title)
    : m_grid(grid), m_title(std::move(title)) {}

void ReportPrinter::Print(ModalDoor& door, bool isPreview) const {
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(m_title);
    if (!isPreview) {
        Render(printer);
        return;
    }
    QPrintPreviewDialog preview(&printer);
    preview.setObjectName(QStringLiteral("dlgPrintPreview"));
    preview.setWindowTitle(m_title);
    QObject::connect(&preview, &QPrintPreviewDialog::paintRequested, &preview,
                     [this](QPrinter* device) { Render(*device); });
    door.ShowModal(preview, m_grid.window());
}

void ReportPrinter::Render(QPagedPaintDevice& device) const {
    QPainter painter;
    if (!painter.begin(&device)) {
        return;
    }
    QFont font = m_grid.font();
    font.setPointSize(PointSize);
    painter.setFont(font);
    const Sheet sheet = Measure(painter);
    const auto [firstPage, lastPage] = PagesWanted(device, sheet.Pages);
    for (int page = firstPage; page <= lastPage; ++page) {
        if (page > firstPage && !device.newPage()) {
            return;
        }
        DrawHead(painter, sheet, page);
        const int first = page * sheet.RowsPerPage;
        const int last = std::min(first + sheet.RowsPerPage, m_grid.RowCount());
        for (int row = first; row < last; ++row) {
            DrawRow(painter, sheet, *m_grid.RowRecord(row),
                    sheet.HeadHeight + (row - first) * sheet.RowHeight);
        }
    }
}

ReportPrinter::Sheet ReportPrinter::Measure(QPainter& painter) const {
    Sheet sheet;
    const QRect page = painter.viewport();
    sheet.Width = page.width();
    sheet.Line = painter.fontMetrics().height();
    // The screen's measures grow with the text.
    const double scale = static_cast<double>(sheet.Line) / m_grid.fontMetrics().height();
    sheet.Pixel = std::max(1, qRound(scale));
    sheet.HeadHeight = sheet.Line * 4;
    const int lines = m_grid.IsPreviewMode() ? qRound(sheet.Line * (2 + LineGap)) : sheet.Line;
    sheet.RowHeight = std::max(lines, qRound(ReportControl::ImageSide * scale)) + qRound(sheet.Line * RowGap);
    sheet.RowsPerPage = std::max(1, (page.height() - sheet.HeadHeight) / sheet.RowHeight);
    sheet.Pages = std::max(1, (m_grid.RowCount() + sheet.RowsPerPage - 1) / sheet.RowsPerPage);
    sheet.Left = ColumnEdges(sheet.Width, scale);
    return sheet;
}

QList<int> ReportPrinter::ColumnEdges(int width, double scale) const {
    const QHeaderView& header = *m_grid.header();
    const int last = header.count() - 1;
    if (last < 0) {
        return {0, width};
    }
    const double others = (header.length() - header.sectionSize(last)) * scale;
    // The last one takes what is left, and never less than an equal share, unless it is content with that.
    const double leastOfLast =
        std::min(header.sectionSize(last) * scale, static_cast<double>(width) / header.count());
    const double shrink = others > width - leastOfLast ? (width - leastOfLast) / others : 1.0;
    QList<int> edges = {0};
    double left = 0;
    for (int column = 0; column < last; ++column) {
        left += header.sectionSize(column) * scale * shrink;
        edges.append(qRound(left));
    }
    edges.append(width);
    return edges;
}

void ReportPrinter::DrawHead(QPainter& painter, const Sheet& sheet, int page) const {
    const QFont plain = painter.font();
    QFont bold = plain;
    bold.setBold(true);
    const QString number = QStringLiteral("Page %1 of %2").arg(page + 1).arg(sheet.Pages);
    const int numberWidth = painter.fontMetrics().horizontalAdvance(number) + 1;
    painter.setFont(bold);
    const QRect title(0, 0, sheet.Width - numberWidth - sheet.Line, sheet.Line);
    ReportPaint::DrawLine(painter, title, Qt::AlignLeft, m_title, Ink);
    for (int column = 0; column + 1 < sheet.Left.size(); ++column) {
        const QRect cell(sheet.Left[column], sheet.Line * 2, sheet.Left[column + 1] - sheet.Left[column],
                         sheet.Line);
        ReportPaint::DrawLine(painter, cell, m_grid.ColumnAlignment(column), m_grid.ColumnCaption(column),
                              Ink);
    }
    painter.setFont(plain);
    ReportPaint::DrawLine(painter, QRect(sheet.Width - numberWidth, 0, numberWidth, sheet.Line),
                          Qt::AlignRight, number, Ink);
    painter.setPen(QPen(Rule, sheet.Pixel));
    const int rule = sheet.Line * 3 + sheet.Line / 2;
    painter.drawLine(0, rule, sheet.Width, rule);
}

void ReportPrinter::DrawRow(QPainter& painter, const Sheet& sheet, const ReportRecord& record,
                            int top) const {
    const int rowImage = std::min(sheet.RowHeight, ReportControl::ImageSide * sheet.Pixel);
    int indent = 0;
    bool isLeading = true;
    for (int column = 0; column < record.Items.size() && column + 1 < sheet.Left.size(); ++column) {
        const ReportItem& item = record.Items[column];
        const int width = sheet.Left[column + 1] - sheet.Left[column];
        isLeading = isLeading && item.HideText;
        indent = isLeading ? sheet.Left[column + 1] : indent;
        const QIcon image = m_grid.Image(item.Icon);
        if (!image.isNull()) {
            const int imageSide = std::min(rowImage, width);
            QRect place(0, 0, imageSide, imageSide);
            place.moveCenter(QRect(sheet.Left[column], top, width, sheet.RowHeight).center());
            image.paint(&painter, place);
        }
        const QRect text(sheet.Left[column], top, width - sheet.Line / 2, sheet.Line);
        ReportPaint::DrawLine(painter, text, m_grid.ColumnAlignment(column), record.TextOf(column),
                              item.TextColour.isValid() ? item.TextColour : Ink);
    }
    if (m_grid.IsPreviewMode()) {
        const QRect preview(indent, top + qRound(sheet.Line * (1 + LineGap)), sheet.Width - indent,
                            sheet.Line);
        ReportPaint::DrawLine(painter, preview, Qt::AlignLeft, record.PreviewText, Ink);
    }
}
