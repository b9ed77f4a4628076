#include "controls/PopupControl.h"

#include "controls/PopupPlace.h"

#include <QAccessible>
#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QTimer>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace {

constexpr int RaiseInterval = 500;  // ms
constexpr double TintPart = 0.16;   // of the highlight colour in the ground

QColor Mixed(const QColor& one, const QColor& other, double part) {
    const auto mix = [part](double a, double b) { return static_cast<float>(a * (1 - part) + b * part); };
    return QColor::fromRgbF(mix(one.redF(), other.redF()), mix(one.greenF(), other.greenF()),
                            mix(one.blueF(), other.blueF()));
}

}  // namespace

/// An item as the popup paints it.
class PopupControl::Line final : public PopupItem {
public:
    Line(const PopupControl& popup, const QRect& place, QString caption, std::optional<unsigned> background)
        : m_popup(popup), m_place(place), m_caption(std::move(caption)), m_background(background) {}

    [[nodiscard]] int Top() const override { return m_place.top(); }
    [[nodiscard]] int Width() const override { return m_place.width(); }
    [[nodiscard]] int Height() const override { return m_place.height(); }
    void SetWidth(int width) override { m_place.setWidth(width); }
    void CalculateHeight() override { m_place.setHeight(QFontMetrics(Font()).height()); }
    void CalculateWidth() override {
        // One more than the text: an exact fit may be cut by rounding.
        m_place.setWidth(QFontMetrics(Font()).horizontalAdvance(m_caption) + 1);
    }
    void SetTextAlignment(int format) override { m_format = format; }
    void SetHyperLink(bool on) override { m_isLink = on; }
    void SetBold(bool on) override { m_isBold = on; }
    void SetIcon(int number) override { m_icon = number; }

    [[nodiscard]] const QString& Caption() const { return m_caption; }

    void Paint(QPainter& painter) const {
        if (m_background.has_value()) {
            painter.fillRect(m_place, QColor::fromRgb(*m_background));
        }
        if (m_icon > 0) {
            m_popup.m_images.value(m_icon - 1).paint(&painter, m_place);
        }
        painter.setFont(Font());
        painter.setPen(m_popup.palette().color(m_isLink ? QPalette::Link : QPalette::WindowText));
        // A line that is longer than the popup ends in an ellipsis, or its end would just be missing.
        const int room = std::min(m_place.width(), m_popup.width() - m_place.left() - RightMargin);
        const bool isOneLine = (m_format & (SingleLine | EndEllipsis)) != 0;
        const QString text =
            isOneLine ? painter.fontMetrics().elidedText(m_caption, Qt::ElideRight, std::max(room, 0))
                      : m_caption;
        painter.drawText(m_place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
    }

private:
    static constexpr int RightMargin = 10;

    [[nodiscard]] QFont Font() const {
        QFont font = m_popup.font();
        font.setBold(m_isBold);
        return font;
    }

    const PopupControl& m_popup;
    QRect m_place;
    QString m_caption;
    std::optional<unsigned> m_background;
    int m_format = 0;
    int m_icon = 0;
    bool m_isLink = true;
    bool m_isBold = false;
};

PopupControl::PopupControl(QWidget* parent)
    : QWidget(parent, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                          Qt::WindowDoesNotAcceptFocus),
      m_showTimer(new QTimer(this)),
      m_raiseTimer(new QTimer(this)) {
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    setAttribute(Qt::WA_X11NetWmWindowTypeNotification);
    setFocusPolicy(Qt::NoFocus);
    m_showTimer->setSingleShot(true);
    // It is no window of the window manager's, which puts others above it when they are raised.
    m_raiseTimer->setInterval(RaiseInterval);
    connect(m_raiseTimer, &QTimer::timeout, this, &PopupControl::StayOnTop);
    connect(m_showTimer, &QTimer::timeout, this, &PopupControl::Close);
}

PopupControl::~PopupControl() = default;

void PopupControl::Close() {
    m_showTimer->stop();
    m_raiseTimer->stop();
    hide();
}

void PopupControl::RemoveAllItems() {
    m_items.clear();
    update();
}

PopupItem& PopupControl::Item(int index) {
    return *m_items.at(static_cast<size_t>(index));
}

PopupItem& PopupControl::AddItem(int left, int top, int right, int bottom, const QString& caption,
                                 std::optional<unsigned> background) {
    const QRect place(left, top, right - left, bottom - top);
    m_items.push_back(std::make_unique<Line>(*this, place, caption, background));
    update();
    return *m_items.back();
}

void PopupControl::SetSize(int width, int height) {
    m_size = QSize(width, height);
    resize(m_size);
}

void PopupControl::SetShowDelay(int milliseconds) {
    m_showTimer->setInterval(milliseconds);
}

void PopupControl::Show() {
    MoveToCorner();
    setAccessibleName(Captions().join(QStringLiteral(", ")));
    show();
    windowHandle()->installEventFilter(this);
    StayOnTop();
    m_showTimer->start();
    m_raiseTimer->start();
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void PopupControl::StayOnTop() {
    QWidget* const innermost = QApplication::activePopupWidget();
    if (innermost == nullptr) {
        raise();
        return;
    }
    // Menus have the mouse to themselves: under this a click would choose an entry that nobody sees.
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        if (window->isVisible() && window->windowType() == Qt::Popup && window != innermost) {
            window->raise();
        }
    }
    innermost->raise();
}

void PopupControl::MoveToCorner() {
    const QRect tray = m_trayPlace ? m_trayPlace() : QRect();
    const QScreen* screen = tray.isEmpty() ? nullptr : QGuiApplication::screenAt(tray.center());
    if (screen == nullptr) {
        screen = QGuiApplication::primaryScreen();
    }
    if (screen != nullptr) {
        move(PopupPlace(screen->geometry(), screen->availableGeometry(), tray, m_size));
    }
}

QStringList PopupControl::Captions() const {
    QStringList captions;
    for (const auto& item : m_items) {
        if (!item->Caption().isEmpty()) {
            captions.append(item->Caption());
        }
    }
    return captions;
}

void PopupControl::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QColor ground =
        Mixed(palette().color(QPalette::Window), palette().color(QPalette::Highlight), TintPart);
    painter.setPen(palette().color(QPalette::Highlight));
    painter.setBrush(ground);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    for (const auto& item : m_items) {
        item->Paint(painter);
    }
}

void PopupControl::mousePressEvent(QMouseEvent* event) {
    event->accept();
}

void PopupControl::mouseReleaseEvent(QMouseEvent* event) {
    event->accept();
    if (rect().contains(event->position().toPoint())) {
        Q_EMIT ItemClicked();
    }
}

bool PopupControl::eventFilter(QObject* watched, QEvent* event) {
    // A modal dialog keeps the mouse from the widget, but not from a native window of this kind.
    if (watched == windowHandle() && event->type() == QEvent::MouseButtonRelease &&
        QApplication::activeModalWidget() != nullptr) {
        mouseReleaseEvent(static_cast<QMouseEvent*>(event));
        return true;
    }
    return QWidget::eventFilter(watched, event);
}
