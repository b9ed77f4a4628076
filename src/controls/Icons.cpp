#include "controls/Icons.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <utility>

// A static library's resources are linked only when they are asked for, and the macro works in no namespace.
static void InitIconResource() {
    Q_INIT_RESOURCE(icons);
}

namespace {

const QString Folder = QStringLiteral(":/icons");

/// The colour in the drawings that stands for the palette's text; every other one is meant as it is.
const QByteArray TextColourMark = QByteArrayLiteral("#000000");

QColor ColourOf(QIcon::Mode mode) {
    const QPalette palette = QApplication::palette();
    switch (mode) {
        case QIcon::Disabled:
            return palette.color(QPalette::Disabled, QPalette::ButtonText);
        case QIcon::Selected:
            return palette.color(QPalette::Active, QPalette::HighlightedText);
        default:
            return palette.color(QPalette::Active, QPalette::ButtonText);
    }
}

/// Renders one drawing in the colour of the moment.
class PaletteIconEngine final : public QIconEngine {
public:
    PaletteIconEngine(QString name, QByteArray drawing)
        : m_name(std::move(name)), m_drawing(std::move(drawing)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const QColor colour = ColourOf(mode);
        QByteArray drawing = m_drawing;
        drawing.replace(TextColourMark, colour.name(QColor::HexRgb).toLatin1());
        QSvgRenderer renderer(drawing);
        const int side = qMin(rect.width(), rect.height());
        QRect square(0, 0, side, side);
        square.moveCenter(rect.center());
        const double before = painter->opacity();
        painter->setOpacity(before * (mode == QIcon::Disabled ? DisabledOpacity(colour) : 1));
        renderer.render(painter, square);
        painter->setOpacity(before);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        const QString key = QStringLiteral("larkspan-icon-%1-%2x%3-%4-%5")
                                .arg(m_name)
                                .arg(size.width())
                                .arg(size.height())
                                .arg(static_cast<int>(mode))
                                .arg(ColourOf(mode).name(QColor::HexArgb));
        QPixmap pixmap;
        if (!QPixmapCache::find(key, &pixmap)) {
            pixmap = QPixmap(size);
            pixmap.fill(Qt::transparent);
            QPainter painter(&pixmap);
            paint(&painter, QRect(QPoint(0, 0), size), mode, state);
            painter.end();
            QPixmapCache::insert(key, pixmap);
        }
        return pixmap;
    }

    [[nodiscard]] QIconEngine* clone() const override { return new PaletteIconEngine(m_name, m_drawing); }

private:
    /// A drawing with colours of its own is dimmed too; one in the text colour already is, by the palette.
    [[nodiscard]] double DisabledOpacity(const QColor& colour) const {
        return m_drawing.contains(TextColourMark) ? colour.alphaF() : 0.4;
    }

    QString m_name;
    QByteArray m_drawing;
};

}  // namespace

QIcon Icons::Get(const QString& name) {
    InitIconResource();
    QFile file(Folder + u'/' + name + QStringLiteral(".svg"));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return QIcon(new PaletteIconEngine(name, file.readAll()));
}

QStringList Icons::Names() {
    InitIconResource();
    QStringList names;
    const QStringList files = QDir(Folder).entryList({QStringLiteral("*.svg")}, QDir::Files, QDir::Name);
    for (const QString& file : files) {
        names.append(file.chopped(4));
    }
    return names;
}
