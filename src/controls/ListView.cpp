#include "controls/ListView.h"

#include "controls/ModalDoor.h"

#include <QContextMenuEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QStyledItemDelegate>

#include <algorithm>

namespace {

/// Blank pixels above and below a row's text.
constexpr int RowPadding = 3;
constexpr int ImageSize = 14;

/// Draws a row with the image of its list; all rows have one height.
class RowDelegate final : public QStyledItemDelegate {
public:
    RowDelegate(const QList<QIcon>& images, QObject* parent)
        : QStyledItemDelegate(parent), m_images(images) {}

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override {
        const QSize plain = QStyledItemDelegate::sizeHint(option, index);
        return {plain.width(), option.fontMetrics.height() + 2 * RowPadding};
    }

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        if (m_images.isEmpty()) {
            return;
        }
        // Every row keeps the room of the image, so that the texts stand in one line.
        option->features |= QStyleOptionViewItem::HasDecoration;
        const int number = index.data(RowModel::SmallIconRole).toInt();
        option->icon = number >= 1 && number <= m_images.size() ? m_images[number - 1] : QIcon();
    }

private:
    const QList<QIcon>& m_images;
};

}  // namespace

ListView::ListView(QWidget* parent) : QListView(parent), m_rows(new RowModel(this)) {
    setModel(m_rows);
    setItemDelegate(new RowDelegate(m_images, this));
    setUniformItemSizes(true);
    setIconSize(QSize(ImageSize, ImageSize));
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextElideMode(Qt::ElideRight);
    setResizeMode(QListView::Adjust);
    setDragDropMode(QAbstractItemView::NoDragDrop);
    connect(this, &QAbstractItemView::clicked, this, [this](const QModelIndex& index) {
        Q_EMIT ItemClicked(index.data(RowModel::KeyRole).toString());
    });
}

void ListView::SetImage(int number, const QIcon& icon) {
    while (m_images.size() < number) {
        m_images.append(QIcon());
    }
    m_images[number - 1] = icon;
    viewport()->update();
}

QList<int> ListView::SelectedRows() const {
    QList<int> rows;
    const QItemSelection selection = selectionModel()->selection();
    for (const QItemSelectionRange& range : selection) {
        for (int row = range.top(); range.isValid() && row <= range.bottom(); ++row) {
            rows.append(row);
        }
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

QStringList ListView::SelectedKeys() const {
    QStringList keys;
    const QList<int> rows = SelectedRows();
    keys.reserve(rows.size());
    for (const int row : rows) {
        keys.append(m_rows->At(row).Key);
    }
    return keys;
}

int ListView::SelectedCount() const {
    return static_cast<int>(SelectedRows().size());
}

bool ListView::HasSelection() const {
    return selectionModel()->hasSelection();
}

QString ListView::CurrentKey() const {
    return currentIndex().data(RowModel::KeyRole).toString();
}

void ListView::SelectAllRows() {
    if (m_rows->Count() > 0) {
        const QItemSelection all(m_rows->index(0), m_rows->index(m_rows->Count() - 1));
        selectionModel()->select(all, QItemSelectionModel::ClearAndSelect);
    }
}

void ListView::UnselectAllRows() {
    selectionModel()->clearSelection();
}

void ListView::SelectKey(const QString& key) {
    m_selectionBeforeClick.clear();
    const int row = m_rows->RowOf(key);
    if (row >= 0) {
        selectionModel()->setCurrentIndex(m_rows->index(row), QItemSelectionModel::ClearAndSelect);
    }
}

void ListView::GoHome() {
    if (m_rows->Count() > 0) {
        // Qt leaves the first row alone when the cursor is there already, selected or not.
        SelectKey(m_rows->At(0).Key);
        Q_EMIT ItemClicked(CurrentKey());
    }
}

void ListView::EnsureVisible(int row) {
    if (row >= 0 && row < m_rows->Count()) {
        scrollTo(m_rows->index(row), QAbstractItemView::EnsureVisible);
    }
}

int ListView::TopRow() const {
    const QModelIndex top = indexAt(QPoint(viewport()->width() / 2, 0));
    return top.isValid() ? top.row() : 0;
}

int ListView::RowsPerPage() const {
    const int height = m_rows->Count() > 0 ? sizeHintForRow(0) : fontMetrics().height() + 2 * RowPadding;
    return height > 0 ? viewport()->height() / height : 0;
}

QString ListView::DragText() const {
    QString text;
    const QStringList keys = SelectedKeys();
    for (const QString& key : keys) {
        text += key + QStringLiteral("\r\n");
    }
    return text;
}

void ListView::SetDragOut(bool on) {
    setDragEnabled(on);
}

void ListView::SetDropIn(bool on) {
    m_isDropIn = on;
    setAcceptDrops(on);
    viewport()->setAcceptDrops(on);
}

void ListView::contextMenuEvent(QContextMenuEvent* event) {
    // The mouse opens the menu when its button is released, whatever the platform's habit is.
    event->accept();
    if (event->reason() == QContextMenuEvent::Keyboard) {
        EnsureVisible(currentIndex().row());
        const QRect row = visualRect(currentIndex());
        const QPoint place = row.isValid() ? row.bottomLeft() : viewport()->rect().topLeft();
        Q_EMIT ContextMenuRequested(viewport()->mapToGlobal(place));
    }
}

void ListView::keyPressEvent(QKeyEvent* event) {
    m_selectionBeforeClick.clear();
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        // A key that is still down after it has done its work elsewhere does not act here.
        if (!event->isAutoRepeat()) {
            Q_EMIT EnterPressed();
        }
        return;
    }
    if (event->key() == Qt::Key_Delete) {
        Q_EMIT DeletePressed();
        return;
    }
    if (event->matches(QKeySequence::SelectAll)) {
        SelectAllRows();
        return;
    }
    if (event->key() == Qt::Key_Home && event->modifiers() == Qt::NoModifier) {
        GoHome();
        return;
    }
    const QPersistentModelIndex before = currentIndex();
    QListView::keyPressEvent(event);
    if (currentIndex().isValid() && currentIndex() != before) {
        Q_EMIT ItemClicked(CurrentKey());
    }
}

void ListView::mousePressEvent(QMouseEvent* event) {
    const QModelIndex index = indexAt(event->position().toPoint());
    m_clickedIndex = index;
    m_pressedButton = event->button();
    m_selectionBeforeClick = event->button() == Qt::LeftButton && selectionModel()->isSelected(index)
                                 ? selectionModel()->selection()
                                 : QItemSelection();
    QListView::mousePressEvent(event);
}

void ListView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        mousePressEvent(event);
        return;
    }
    const QModelIndex index = indexAt(event->position().toPoint());
    if (index.isValid() && index == m_clickedIndex && !m_selectionBeforeClick.isEmpty()) {
        selectionModel()->select(m_selectionBeforeClick, QItemSelectionModel::ClearAndSelect);
    }
    m_selectionBeforeClick.clear();
    event->accept();
    Q_EMIT ItemDoubleClicked(index.data(RowModel::KeyRole).toString());
}

void ListView::mouseReleaseEvent(QMouseEvent* event) {
    QListView::mouseReleaseEvent(event);
    if (event->button() == Qt::RightButton) {
        if (m_clickedIndex.isValid()) {
            Q_EMIT ItemClicked(m_clickedIndex.data(RowModel::KeyRole).toString());
        }
        Q_EMIT ContextMenuRequested(event->globalPosition().toPoint());
    }
}

void ListView::startDrag(Qt::DropActions) {
    // The toolkit drags with every button; a hand that is not still while it asks for the menu gets the menu.
    const QString text = m_pressedButton == Qt::LeftButton ? DragText() : QString();
    if (!text.isEmpty()) {
        RunKeyDrag(*this, text);
    }
}

bool ListView::IsTextFromElsewhere(const QDropEvent& event) const {
    return m_isDropIn && event.mimeData()->hasText() && event.source() != this;
}

void ListView::dragEnterEvent(QDragEnterEvent* event) {
    dragMoveEvent(event);
}

void ListView::dragMoveEvent(QDragMoveEvent* event) {
    if (!IsTextFromElsewhere(*event)) {
        event->ignore();
        return;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void ListView::dropEvent(QDropEvent* event) {
    if (!IsTextFromElsewhere(*event)) {
        event->ignore();
        return;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
    const QString source = event->source() != nullptr ? event->source()->objectName() : QString();
    Q_EMIT TextDropped(event->mimeData()->text(), source);
}

RedrawOff::RedrawOff(QWidget& widget) : m_widget(widget.updatesEnabled() ? &widget : nullptr) {
    widget.setUpdatesEnabled(false);
}

RedrawOff::~RedrawOff() {
    if (m_widget != nullptr) {
        m_widget->setUpdatesEnabled(true);
    }
}

void mdlListViewBugFix::ScrollToItem(ListView& list, int index) {
    const int top = list.TopRow() + 1;
    const int page = list.RowsPerPage();
    const int rows = list.Rows().Count();
    if (top > index) {
        list.EnsureVisible(index - 1);
    } else if (index - top >= page) {
        // A row made visible from below stands at the bottom of the page, so this one comes to the top.
        list.EnsureVisible(index + page > rows ? rows - 1 : index + page - 2);
    }
}
