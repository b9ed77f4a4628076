#pragma once

#include <QColor>
#include <QGuiApplication>
#include <QList>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPen>
#include <QRectF>
#include <QScreen>
#include <QString>
#include <QTransform>

/// A text on a sheet of paper: where it stands, in units of the paper, and in which colour.
struct TextSeen {
    QString Text;
    QRectF Place;
    QColor Ink;
};

/// A sheet that keeps the texts that are painted on it.
class PaperSeen final : public QPaintDevice {
public:
    /// As large as the paper that the painting is meant for; its dots are those of the screen, so that
    /// pictures of pages are played as they were recorded.
    explicit PaperSeen(const QSize& size)
        : m_engine(Texts),
          m_dpi(qRound(QGuiApplication::primaryScreen()->logicalDotsPerInch())),
          m_size(size) {}

    QList<TextSeen> Texts;

    [[nodiscard]] QPaintEngine* paintEngine() const override { return &m_engine; }

protected:
    int metric(PaintDeviceMetric metric) const override {
        constexpr double MillimetresInAnInch = 25.4;
        switch (metric) {
            case PdmWidth:
                return m_size.width();
            case PdmHeight:
                return m_size.height();
            case PdmWidthMM:
                return qRound(m_size.width() * MillimetresInAnInch / m_dpi);
            case PdmHeightMM:
                return qRound(m_size.height() * MillimetresInAnInch / m_dpi);
            case PdmDpiX:
            case PdmDpiY:
            case PdmPhysicalDpiX:
            case PdmPhysicalDpiY:
                return m_dpi;
            case PdmDevicePixelRatio:
                return 1;
            case PdmDevicePixelRatioScaled:
                return static_cast<int>(devicePixelRatioFScale());
            case PdmNumColors:
                return 0xFFFFFF;
            default:
                return 24;
        }
    }

private:
    class Engine final : public QPaintEngine {
    public:
        explicit Engine(QList<TextSeen>& texts) : QPaintEngine(AllFeatures), m_texts(texts) {}
        bool begin(QPaintDevice*) override { return true; }
        bool end() override { return true; }
        void updateState(const QPaintEngineState& now) override {
            if (now.state().testFlag(DirtyTransform)) {
                m_transform = now.transform();
            }
            if (now.state().testFlag(DirtyPen)) {
                m_ink = now.pen().color();
            }
        }
        void drawTextItem(const QPointF& base, const QTextItem& item) override {
            const QRectF place(base.x(), base.y() - item.ascent(), item.width(),
                               item.ascent() + item.descent());
            m_texts.append({item.text(), m_transform.mapRect(place), m_ink});
        }
        void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
        void drawPath(const QPainterPath&) override {}
        void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
        [[nodiscard]] Type type() const override { return User; }

    private:
        QList<TextSeen>& m_texts;
        QTransform m_transform;
        QColor m_ink;
    };

    mutable Engine m_engine;
    int m_dpi;
    QSize m_size;
};
