#include "shell/FormTexts.h"

#include "controls/Contrast.h"
#include "controls/ListView.h"
#include "controls/TabControl.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QGroupBox>
#include <QHash>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QStyleOptionGroupBox>

#include <algorithm>

namespace {

constexpr int Fineness = 4;
constexpr double TextContrast = 4.5;
constexpr double PictureContrast = 3;
/// What the frame of a button or of a box takes, with its focus ring.
constexpr int FrameWidth = 4;

QRect InsideFrame(const QWidget& widget) {
    return widget.rect().adjusted(FrameWidth, FrameWidth, -FrameWidth, -FrameWidth);
}

/// The part of a group box that its title is written on.
class TitlePlace : public QGroupBox {
public:
    static QRect Of(const QGroupBox& box) {
        QStyleOptionGroupBox option;
        static_cast<const TitlePlace&>(box).initStyleOption(&option);
        return box.style()->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxLabel, &box);
    }
};

bool IsPicture(const QWidget& widget) {
    const auto* label = qobject_cast<const QLabel*>(&widget);
    return label != nullptr && !label->pixmap(Qt::ReturnByValue).isNull();
}

QList<QRect> PlacesOn(const QWidget& widget) {
    if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
        return label->text().isEmpty() && !IsPicture(widget) ? QList<QRect>() : QList{label->contentsRect()};
    }
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
        return button->text().isEmpty() ? QList<QRect>() : QList{InsideFrame(widget)};
    }
    if (const auto* line = qobject_cast<const QLineEdit*>(&widget)) {
        return line->displayText().isEmpty() && line->placeholderText().isEmpty()
                   ? QList<QRect>()
                   : QList{InsideFrame(widget)};
    }
    if (const auto* group = qobject_cast<const QGroupBox*>(&widget)) {
        return {TitlePlace::Of(*group)};
    }
    QList<QRect> places;
    if (const auto* tabs = dynamic_cast<const TabControl*>(&widget)) {
        for (int tab = 0; tab < tabs->Count(); ++tab) {
            const QRect place = tabs->TabRect(tab);
            places.append(place.adjusted(place.height() / 3, 2, -place.height() / 3, -2));
        }
    }
    if (const auto* list = dynamic_cast<const ListView*>(&widget)) {
        for (int row = 0; row < std::min(list->Rows().Count(), 3); ++row) {
            const QRect place = list->visualRect(list->model()->index(row, 0));
            const QPoint corner = list->viewport()->mapTo(list, QPoint());
            places.append(place.translated(corner).adjusted(30, 3, -FrameWidth, -3));
        }
    }
    return places;
}

}  // namespace

QList<FormText> TextsOf(QWidget& form) {
    QList<FormText> texts;
    const auto all = form.findChildren<QWidget*>();
    for (const QWidget* widget : all) {
        if (!widget->isVisible() || !widget->isEnabled()) {
            continue;
        }
        const bool isInner = widget->objectName().isEmpty() || widget->objectName().startsWith(u"qt_");
        const QString owner = isInner ? widget->parentWidget()->objectName() : widget->objectName();
        for (const QRect& place : PlacesOn(*widget)) {
            texts.append({owner, place.translated(widget->mapTo(&form, QPoint())),
                          IsPicture(*widget) ? PictureContrast : TextContrast});
        }
    }
    return texts;
}

QChar MnemonicOf(const QWidget& widget) {
    const auto* label = qobject_cast<const QLabel*>(&widget);
    const bool isOwner = label == nullptr ? qobject_cast<const QAbstractButton*>(&widget) != nullptr
                                          : label->buddy() != nullptr;
    const QString text = isOwner ? widget.property("text").toString() : widget.property("title").toString();
    static const QRegularExpression mark(QStringLiteral("&(.)"));
    for (auto match = mark.globalMatch(text); match.hasNext();) {
        const QChar letter = match.next().captured(1).at(0);
        if (letter != u'&') {
            return letter.toUpper();
        }
    }
    return {};
}

QImage FinePictureOf(QWidget& form) {
    QImage picture(form.size() * Fineness, QImage::Format_RGB32);
    picture.setDevicePixelRatio(Fineness);
    form.render(&picture);
    return picture;
}

double ContrastIn(const QImage& picture, const QRect& place) {
    QHash<QRgb, int> pixels;
    const QRect fine = QRect(place.topLeft() * Fineness, place.size() * Fineness) & picture.rect();
    for (int y = fine.top(); y <= fine.bottom(); ++y) {
        for (int x = fine.left(); x <= fine.right(); ++x) {
            ++pixels[picture.pixel(x, y)];
        }
    }
    const auto ground =
        std::max_element(pixels.cbegin(), pixels.cend(), [](int one, int other) { return one < other; });
    double contrast = 1;
    for (auto pixel = pixels.cbegin(); pixel != pixels.cend(); ++pixel) {
        contrast = std::max(contrast, Contrast(QColor(pixel.key()), QColor(ground.key())));
    }
    return contrast;
}
