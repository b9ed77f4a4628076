#include "controls/Contrast.h"
#include "controls/PopupControl.h"
#include "shell/MainWindow.h"
#include "shell/StatusPoll.h"

#include <QPainter>

namespace {

/// pucFeedback with one delivered message on it, looked at as a picture.
class PopupLook : public ::testing::Test {
public:
    MainWindow Window;

    PopupLook() {
        Window.Open();
        Window.Context.MessageTracker.RefreshInterval = 0;
    }
    ~PopupLook() override { Look::Apply(QStringLiteral("light")); }

    [[nodiscard]] PopupControl& Popup() { return *Window.Find<PopupControl>("pucFeedback"); }
    void Tell(const QString& name = QStringLiteral("Aoife Brennan"),
              const QString& number = QStringLiteral("+353865550101"),
              const QString& text = QStringLiteral("See you at five")) {
        const qint32 id = Window.Machine.Office.AddMessageRow(
            {{QStringLiteral("msgRecipient"), QStringLiteral("A")}, {QStringLiteral("msgStatus"), 5}});
        Window.Context.MessageTracker.Track(id, name, number, text);
        Window.Form->findChild<StatusPoll*>()->Check();
        ASSERT_TRUE(Popup().isVisible());
    }
    /// As a screen of this scale shows it.
    [[nodiscard]] QImage Picture(int scale) {
        QImage picture(Popup().size() * scale, QImage::Format_RGB32);
        picture.setDevicePixelRatio(scale);
        QPainter painter(&picture);
        Popup().render(&painter);
        return picture;
    }
    /// A rectangle of the popup in pixels of a picture.
    [[nodiscard]] static QRect Pixels(const QImage& picture, const QRect& place) {
        const int scale = qRound(picture.devicePixelRatio());
        return {place.topLeft() * scale, place.size() * scale};
    }
    [[nodiscard]] static QColor Ground(const QImage& picture) {
        return picture.pixelColor(picture.width() - 20, 10);
    }
    /// How many pixels of an area are not the ground, and the best contrast that one of them has to it.
    struct Drawn {
        int Pixels = 0;
        double Contrast = 1;
    };
    [[nodiscard]] static Drawn DrawnIn(const QImage& picture, const QRect& area) {
        Drawn drawn;
        const QColor ground = Ground(picture);
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x) {
                const QColor pixel = picture.pixelColor(x, y);
                drawn.Pixels += pixel != ground ? 1 : 0;
                drawn.Contrast = std::max(drawn.Contrast, Contrast(pixel, ground));
            }
        }
        return drawn;
    }
    /// Where line `number` stands, from 1.
    [[nodiscard]] QRect LinePlace(int number) {
        const PopupItem& item = Popup().Item(number);
        return {40, item.Top(), std::min(item.Width(), Popup().width() - 50), item.Height()};
    }
    const QRect IconPlace{5, 17, 30, 30};
};

TEST_F(PopupLook, InBothPalettesAndAtTwiceTheScaleLinesAndIconStandOutFromTheGround) {
    for (const QString& scheme : {QStringLiteral("light"), QStringLiteral("dark")}) {
        Look::Apply(scheme);
        QCoreApplication::processEvents();
        ASSERT_EQ(Popup().palette().color(QPalette::Window), QApplication::palette().color(QPalette::Window));
        Tell();
        for (const int scale : {1, 2}) {
            const QImage picture = Picture(scale);
            const std::string where = scheme.toStdString() + " x" + std::to_string(scale);
            const QColor words = Popup().palette().color(QPalette::WindowText);
            EXPECT_GE(Contrast(words, Ground(picture)), 4.5) << where;
            for (int line = 1; line <= 3; ++line) {
                const Drawn drawn = DrawnIn(picture, Pixels(picture, LinePlace(line)));
                EXPECT_GE(drawn.Contrast, 4.5) << where << " line " << line;
                EXPECT_GT(drawn.Pixels, 100 * scale) << where << " line " << line;
            }
            const Drawn icon = DrawnIn(picture, Pixels(picture, IconPlace));
            EXPECT_GT(icon.Pixels, 300 * scale * scale) << where;
            EXPECT_GE(icon.Contrast, 4.5) << where;
        }
    }
}

TEST_F(PopupLook, AtTwiceTheScaleItIsDrawnAnewAndNotBlownUp) {
    Tell();
    QImage blownUp = Picture(1);
    blownUp.setDevicePixelRatio(1);
    blownUp = blownUp.scaled(blownUp.size() * 2);
    QImage drawn = Picture(2);
    drawn.setDevicePixelRatio(1);
    const QRect icon(IconPlace.topLeft() * 2, IconPlace.size() * 2);
    EXPECT_NE(drawn.copy(icon), blownUp.copy(icon));
    EXPECT_NE(drawn.copy(QRect(80, 34, 200, 30)), blownUp.copy(QRect(80, 34, 200, 30)));
}

TEST_F(PopupLook, WithALargeFontEveryLineHasItsHeightAndStaysInside) {
    QFont large = Popup().font();
    large.setPointSize(26);
    Popup().setFont(large);
    Tell(QString(60, u'W'), QString(60, u'8'), QString(50, u'W'));
    int bottom = 0;
    for (int line = 1; line <= 3; ++line) {
        const PopupItem& item = Popup().Item(line);
        EXPECT_GE(item.Top(), bottom) << "line " << line << " runs into the one above";
        EXPECT_GE(item.Height(), QFontMetrics(large).height()) << line;
        bottom = item.Top() + item.Height();
    }
    EXPECT_EQ(Popup().height(), bottom + 10);
    EXPECT_EQ(Popup().width(), 320);
    const QImage picture = Picture(1);
    const QColor ground = Ground(picture);
    for (int y = 20; y < bottom; ++y) {
        for (int x = 311; x < 318; ++x) {
            ASSERT_EQ(picture.pixelColor(x, y), ground) << x << ", " << y;
        }
    }
    const PopupItem& start = Popup().Item(3);
    EXPECT_EQ(start.Width(), 260);
    EXPECT_EQ(DrawnIn(picture, QRect(301, start.Top(), 15, start.Height())).Pixels, 0);
}

}  // namespace
