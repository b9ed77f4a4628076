#include "controls/TabControl.h"

#include "controls/Icons.h"
#include "controls/TabAccess.h"
#include "controls/TabPaint.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolButton>
#include <QToolTip>

namespace {

constexpr int RowPadding = 6;     // above and below a caption in the strip
constexpr int Gap = 2;            // between tabs
constexpr int LetterHeight = 11;  // least height of an entry of the letter column
constexpr int LetterWidth = 26;

}  // namespace

TabControl::TabControl(Look look, QWidget* parent) : QWidget(parent), m_look(look) {
    TabAccess::Install();
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    if (look == Look::Strip) {
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        MakeScrollButtons();
    } else {
        setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    }
}

void TabControl::MakeScrollButtons() {
    const auto make = [this](const QString& icon, const QString& name) {
        auto* button = new QToolButton(this);
        button->setIcon(Icons::Get(icon));
        button->setIconSize(QSize(14, 14));
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::NoFocus);  // the arrow keys reach every tab
        button->setAccessibleName(name);
        button->setToolTip(name);
        button->hide();
        return button;
    };
    m_rowsUp = make(QStringLiteral("chevron-up"), tr("Previous Row Of Tabs"));
    m_rowsDown = make(QStringLiteral("chevron-down"), tr("Next Row Of Tabs"));
    m_allTabs = make(QStringLiteral("all-tabs"), tr("All Tabs"));
    connect(m_rowsUp, &QToolButton::clicked, this, [this] { ScrollRows(-1); });
    connect(m_rowsDown, &QToolButton::clicked, this, [this] { ScrollRows(1); });
    connect(m_allTabs, &QToolButton::clicked, this,
            [this] { Q_EMIT AllTabsRequested(m_allTabs->mapToGlobal(m_allTabs->rect().bottomLeft())); });
}

void TabControl::RemoveAll() {
    m_tabs.clear();
    m_selected = -1;
    m_hovered = -1;
    m_dropTarget = -1;
    m_firstRow = 0;
    Relayout();
}

void TabControl::Insert(int position, const QString& caption) {
    const int place = qBound(0, position, Count());
    m_tabs.insert(place, Tab{caption, QString()});
    const bool isFirst = Count() == 1;
    if (m_selected >= place) {
        ++m_selected;
    }
    m_hovered = -1;
    Relayout();
    if (isFirst) {
        SetSelected(0);
    }
}

void TabControl::RemoveAt(int position) {
    m_tabs.removeAt(position);
    m_hovered = -1;
    const bool wasSelected = m_selected == position;
    if (m_selected > position) {
        --m_selected;
    }
    if (wasSelected) {
        m_selected = -1;
    }
    Relayout();
    if (wasSelected && Count() > 0) {
        SetSelected(qMin(position, Count() - 1));
    }
}

void TabControl::SetCaption(int position, const QString& caption) {
    m_tabs[position].Caption = caption;
    Relayout();
}

void TabControl::SetTag(int position, const QString& tag) {
    m_tabs[position].Tag = tag;
}

void TabControl::Select(int position) {
    if (position >= 0 && position < Count() && position != m_selected) {
        SetSelected(position);
    }
}

void TabControl::SetSelected(int position) {
    m_selected = position;
    ShowRow(m_places[position].Row);
    update();
    TabAccess::NotifySelection(*this, position);
    Q_EMIT SelectionChanged(position);
}

void TabControl::Move(int from, int to) {
    if (from == to) {
        return;
    }
    m_tabs.move(from, to);
    if (m_selected == from) {
        m_selected = to;
    } else if (m_selected > from && m_selected <= to) {
        --m_selected;
    } else if (m_selected < from && m_selected >= to) {
        ++m_selected;
    }
    Relayout();
}

int TabControl::TabUnder(const QPoint& point) const {
    for (int position = 0; position < Count(); ++position) {
        if (TabRect(position).contains(point)) {
            return position;
        }
    }
    return -1;
}

QRect TabControl::TabRect(int position) const {
    const TabFlow::Place& place = m_places[position];
    if (m_look == Look::Letters) {
        return place.Rect;
    }
    const bool isVisible = place.Row >= m_firstRow && place.Row < m_firstRow + MaxRows;
    return isVisible ? place.Rect.translated(0, -m_firstRow * RowHeight()) : QRect();
}

void TabControl::SetQuiet(bool quiet) {
    m_isQuiet = quiet;
    update();
}

void TabControl::SetDropIn(const QString& source, std::function<bool(int)> isTarget) {
    m_dropSource = source;
    m_isDropTarget = std::move(isTarget);
    setAcceptDrops(m_isDropTarget != nullptr);
}

QSize TabControl::sizeHint() const {
    if (m_look == Look::Letters) {
        return {LetterWidth, qMax(1, Count()) * (LetterHeight + 4)};
    }
    return {240, qMin(RowCount(), MaxRows) * RowHeight()};
}

QSize TabControl::minimumSizeHint() const {
    if (m_look == Look::Letters) {
        return {LetterWidth, qMax(1, Count()) * LetterHeight};
    }
    return {120, sizeHint().height()};
}

int TabControl::RowHeight() const {
    return fontMetrics().height() + 2 * RowPadding;
}

int TabControl::RowCount() const {
    return m_places.isEmpty() ? 1 : m_places.last().Row + 1;
}

void TabControl::Relayout() {
    if (m_look == Look::Letters) {
        m_places = TabFlow::OverHeight(Count(), size());
    } else {
        FlowIntoRows(width());
        if (RowCount() > MaxRows) {
            FlowIntoRows(width() - 2 * RowHeight());
        }
        m_firstRow = qBound(0, m_firstRow, qMax(0, RowCount() - MaxRows));
        setFixedHeight(sizeHint().height());
        PlaceScrollButtons();
    }
    updateGeometry();
    update();
}

void TabControl::FlowIntoRows(int room) {
    QList<int> widths;
    for (const Tab& tab : m_tabs) {
        widths.append(fontMetrics().horizontalAdvance(tab.Caption) + 2 * TabPaint::Padding);
    }
    m_places = TabFlow::IntoRows(widths, room, RowHeight(), Gap);
    for (TabFlow::Place& place : m_places) {
        place.Rect = QStyle::visualRect(layoutDirection(), QRect(0, 0, width(), 1), place.Rect);
    }
}

void TabControl::PlaceScrollButtons() {
    const bool isNeeded = RowCount() > MaxRows;
    const int side = RowHeight() - Gap;
    int row = 0;
    for (QToolButton* button : {m_rowsUp, m_allTabs, m_rowsDown}) {
        const QRect place(width() - side, row++ * RowHeight(), side, side);
        button->setGeometry(QStyle::visualRect(layoutDirection(), rect(), place));
        button->setVisible(isNeeded);
    }
    m_rowsUp->setEnabled(m_firstRow > 0);
    m_rowsDown->setEnabled(m_firstRow + MaxRows < RowCount());
}

void TabControl::ShowRow(int row) {
    if (m_look == Look::Strip) {
        ScrollRows(qMin(0, row - m_firstRow) + qMax(0, row - (m_firstRow + MaxRows - 1)));
    }
}

void TabControl::ScrollRows(int steps) {
    const int first = qBound(0, m_firstRow + steps, qMax(0, RowCount() - MaxRows));
    if (first != m_firstRow) {
        m_firstRow = first;
        PlaceScrollButtons();
        update();
    }
}

void TabControl::SetHovered(int position) {
    if (position != m_hovered) {
        m_hovered = position;
        update();
    }
}

void TabControl::SetDropTarget(int position) {
    if (position != m_dropTarget) {
        m_dropTarget = position;
        update();
    }
}

QFont TabControl::LetterFont() const {
    QFont letters = font();
    const int room = Count() > 0 ? height() / Count() : LetterHeight;
    const int natural = QFontInfo(letters).pixelSize();
    letters.setPixelSize(qBound(8, room - 1, natural));
    return letters;
}

void TabControl::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_look == Look::Letters) {
        painter.setFont(LetterFont());
    }
    for (int position = 0; position < Count(); ++position) {
        if (!TabRect(position).isEmpty()) {
            PaintOf(position).Draw(painter, palette());
        }
    }
}

TabPaint TabControl::PaintOf(int position) const {
    TabPaint paint;
    paint.Place = TabRect(position);
    paint.Caption = m_tabs[position].Caption;
    paint.IsStrip = m_look == Look::Strip;
    paint.IsSelected = position == m_selected;
    paint.IsHovered = position == m_hovered;
    paint.IsDropTarget = position == m_dropTarget;
    paint.HasFocus = hasFocus();
    paint.IsQuiet = m_isQuiet;
    return paint;
}

bool TabControl::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        // A caption that had to be shortened is told in full.
        const auto* help = static_cast<QHelpEvent*>(event);
        const int position = TabUnder(help->pos());
        const int room = position >= 0 ? TabRect(position).width() : 0;
        if (m_look == Look::Strip && position >= 0 &&
            fontMetrics().horizontalAdvance(Caption(position)) > room) {
            QToolTip::showText(help->globalPos(), Caption(position), this, TabRect(position));
            return true;
        }
    }
    return QWidget::event(event);
}

void TabControl::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::LayoutDirectionChange) {
        Relayout();
    }
}

void TabControl::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    Relayout();
    if (m_selected >= 0) {
        ShowRow(m_places[m_selected].Row);
    }
}
