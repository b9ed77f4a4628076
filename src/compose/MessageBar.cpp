#include "compose/MessageBar.h"

#include "controls/Contrast.h"

#include <QPainter>

#include <algorithm>

namespace {

constexpr int BarHeight = 8;
/// Contrast against the window below which a colour is drawn lighter.
constexpr double LeastContrast = 2.0;
constexpr int LighterStep = 112;  // per cent
constexpr int MaxSteps = 20;

}  // namespace

MessageBar::MessageBar(QWidget* parent)
    : QProgressBar(parent), m_barColour(palette().color(QPalette::Highlight)) {
    setTextVisible(false);
    setRange(0, 1);
    setValue(0);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void MessageBar::SetMaximum(int maximum) {
    if (maximum != this->maximum()) {
        setRange(std::min(0, maximum), maximum);
        update();
    }
}

void MessageBar::SetPosition(int position) {
    if (position == m_position) {
        return;
    }
    m_position = position;
    // A progress bar paints itself at once on every new value; this one changes with every key.
    const bool isUpdating = updatesEnabled();
    setUpdatesEnabled(false);
    setValue(position);
    setUpdatesEnabled(isUpdating);
    update();
}

void MessageBar::SetBarColour(const QColor& colour) {
    m_barColour = colour;
    update();
}

QSize MessageBar::sizeHint() const {
    return {120, BarHeight};
}

QSize MessageBar::minimumSizeHint() const {
    return {40, BarHeight};
}

void MessageBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const QRectF track(rect());
    const double radius = track.height() / 2;
    QColor trackColour = palette().color(QPalette::WindowText);
    trackColour.setAlphaF(0.16F);
    painter.setBrush(trackColour);
    painter.drawRoundedRect(track, radius, radius);
    const double part = FilledPart();
    if (part > 0) {
        QRectF fill = track;
        fill.setWidth(std::max(track.height(), track.width() * part));
        if (isRightToLeft()) {
            fill.moveRight(track.right());
        }
        painter.setBrush(DrawnColour());
        painter.drawRoundedRect(fill, radius, radius);
    }
}

QColor MessageBar::DrawnColour() const {
    const QColor background = palette().color(QPalette::Window);
    QColor colour = m_barColour;
    for (int step = 0; step < MaxSteps && Contrast(colour, background) < LeastContrast; ++step) {
        colour = colour.lighter(LighterStep);
    }
    return colour;
}

double MessageBar::FilledPart() const {
    if (maximum() <= 0) {
        return 1.0;
    }
    return std::clamp(static_cast<double>(m_position) / maximum(), 0.0, 1.0);
}
