#include "controls/ReportPrinter.h"

#include "controls/Icons.h"
#include "controls/ReportControl.h"
#include "controls/ReportRecords.h"
#include "support/PaperSeen.h"
#include "support/RecordingDoor.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QGraphicsItem>
#include <QGraphicsView>
#include <QHeaderView>
#include <QPageSetupDialog>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>
#include <QStyleOptionGraphicsItem>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

/// The pages that a preview shows, read and looked at.
class PreviewPages {
public:
    explicit PreviewPages(QDialog& dialog) : m_preview(dynamic_cast<QPrintPreviewDialog&>(dialog)) { Read(); }

    QPrintPreviewDialog& Dialog() { return m_preview; }
    [[nodiscard]] QPageLayout Layout() const { return m_preview.printer()->pageLayout(); }
    void SetLayout(const QPageLayout& layout) {
        m_preview.printer()->setPageLayout(layout);
        m_preview.findChild<QPrintPreviewWidget*>()->updatePreview();
        Read();
    }
    /// Anew after something has changed the pages.
    void Read() {
        m_items = m_preview.findChild<QGraphicsView*>()->scene()->items(Qt::AscendingOrder);
        std::stable_sort(m_items.begin(), m_items.end(), [](QGraphicsItem* one, QGraphicsItem* other) {
            return std::pair(one->pos().y(), one->pos().x()) < std::pair(other->pos().y(), other->pos().x());
        });
    }
    [[nodiscard]] int Count() const { return static_cast<int>(m_items.size()); }
    [[nodiscard]] QRect Paper() const { return Layout().fullRectPixels(Dpi()); }
    /// The paper without its margins.
    [[nodiscard]] QRect Inside() const { return Layout().paintRectPixels(Dpi()); }
    [[nodiscard]] QList<TextSeen> Texts(int page) const {
        PaperSeen paper(Paper().size());
        Paint(page, paper, 1);
        return paper.Texts;
    }
    /// All texts of a page, one behind the other.
    [[nodiscard]] QString Words(int page) const {
        QString words;
        const QList<TextSeen> texts = Texts(page);
        for (const TextSeen& text : texts) {
            words += text.Text + u'|';
        }
        return words;
    }
    /// A page at 120 dots an inch.
    [[nodiscard]] QImage Picture(int page) const {
        QImage picture(Paper().size() * Scale(), QImage::Format_RGB32);
        picture.fill(Qt::white);
        Paint(page, picture, Scale());
        return picture;
    }
    [[nodiscard]] double Scale() const { return 120.0 / Dpi(); }

private:
    [[nodiscard]] int Dpi() const { return m_preview.printer()->resolution(); }
    void Paint(int page, QPaintDevice& device, double scale) const {
        QPainter painter(&device);
        painter.scale(scale, scale);
        QStyleOptionGraphicsItem option;
        option.exposedRect = Paper();
        m_items[page]->paint(&painter, &option, nullptr);
    }

    QPrintPreviewDialog& m_preview;
    QList<QGraphicsItem*> m_items;
};

/// No text and no colour stands in the margins of any page.
void ExpectMarginsAreKept(const PreviewPages& pages) {
    const QRectF inside = pages.Inside();
    for (int page = 0; page < pages.Count(); ++page) {
        const QList<TextSeen> texts = pages.Texts(page);
        for (const TextSeen& text : texts) {
            EXPECT_TRUE(inside.adjusted(-1, -1, 1, 1).contains(text.Place))
                << "page " << page << ": " << text.Text.toStdString();
        }
        const QImage picture = pages.Picture(page);
        const QRect printed = QRectF(inside.topLeft() * pages.Scale(), inside.size() * pages.Scale())
                                  .toAlignedRect()
                                  .adjusted(-1, -1, 1, 1);
        int soiled = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                soiled += !printed.contains(x, y) && picture.pixelColor(x, y) != Qt::white ? 1 : 0;
            }
        }
        EXPECT_EQ(soiled, 0) << "page " << page;
    }
}

/// Works the dialog in which the user chooses the paper; it comes up behind this call.
void AnswerPageSetup(const std::function<void(QWidget&)>& choose) {
    QTimer::singleShot(0, qApp, [choose] {
        auto* setup = qobject_cast<QPageSetupDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(setup, nullptr);
        choose(*setup);
        setup->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
    });
}

void PressPageSetup(QPrintPreviewDialog& preview) {
    const QList<QAction*> actions = preview.findChildren<QAction*>();
    const auto found = std::find_if(actions.cbegin(), actions.cend(), [](const QAction* action) {
        return action->text() == QStringLiteral("Page setup");
    });
    ASSERT_NE(found, actions.cend());
    (*found)->trigger();
}

/// A grid with rows, and what its preview shows.
class ReportPrinterTest : public ::testing::Test {
public:
    ReportControl Grid;
    RecordingDoor Door;

    ReportPrinterTest() {
        Grid.AddColumn(QString(), 32, false, Qt::AlignHCenter);
        Grid.AddColumn(QStringLiteral("Number"), 80, true);
        Grid.AddColumn(QStringLiteral("Name"), 120, true);
        Grid.SetImages({Icons::Get(QStringLiteral("history-delivered"))});
        Grid.SetPreviewMode(true);
        Grid.SizeLastColumn(4);
        Grid.resize(400, 300);
        Grid.show();
    }
    void Fill(int count) {
        for (int i = 0; i < count; ++i) {
            Grid.AddRecord(RecordNamed(QStringLiteral("Row %1;").arg(i), i));
        }
        Grid.Populate();
    }
    void Preview(const std::function<void(PreviewPages&)>& look,
                 const QString& title = QStringLiteral("My Report")) {
        Door.ExpectDialog([&](QDialog& dialog) {
            PreviewPages pages(dialog);
            look(pages);
            dialog.hide();
        });
        Grid.Print(Door, title, true);
    }
};

}  // namespace

TEST_F(ReportPrinterTest, EveryRecordStandsOnceAndWholeOnAPageInTheOrderOfTheRows) {
    Fill(200);
    Preview([](PreviewPages& pages) {
        EXPECT_GE(pages.Count(), 4);
        QString words;
        for (int page = 0; page < pages.Count(); ++page) {
            words += pages.Words(page);
            const QList<TextSeen> texts = pages.Texts(page);
            EXPECT_TRUE(texts.last().Text.startsWith(QStringLiteral("Preview of")))
                << "a record is torn: the page ends with " << texts.last().Text.toStdString();
            EXPECT_LE(texts.last().Place.bottom(), pages.Inside().bottom() + 1);
        }
        qsizetype place = 0;
        for (int row = 0; row < 200; ++row) {
            const QString record = QStringLiteral("|%1|Row %1;|Preview of Row %1;|").arg(row);
            EXPECT_EQ(words.count(record), 1) << row;
            EXPECT_GE(words.indexOf(record), place) << row;
            place = words.indexOf(record);
        }
    });
}

TEST_F(ReportPrinterTest, EachPageHasTheTitleItsNumberAndTheColumnHeads) {
    Fill(100);
    Preview([](PreviewPages& pages) {
        ASSERT_GE(pages.Count(), 3);
        for (int page = 0; page < pages.Count(); ++page) {
            const QString words = pages.Words(page);
            for (const QString& part :
                 {QStringLiteral("My Report|"), QStringLiteral("|Number|"), QStringLiteral("|Name|"),
                  QStringLiteral("|Page %1 of %2|").arg(page + 1).arg(pages.Count())}) {
                EXPECT_TRUE(words.contains(part)) << page << ": " << part.toStdString();
            }
        }
    });
}

TEST_F(ReportPrinterTest, TheMarginsAreKeptOnEveryPage) {
    Fill(60);
    Preview([](PreviewPages& pages) { ExpectMarginsAreKept(pages); });
}

TEST_F(ReportPrinterTest, TextsThatAreTooLongEndInAnEllipsisInsideTheMargins) {
    Grid.AddRecord(RecordNamed(QString(500, u'w'), 1));
    Grid.Populate();
    Preview(
        [](PreviewPages& pages) {
            ExpectMarginsAreKept(pages);
            int cut = 0;
            double numberLeft = 0;
            double titleRight = 0;
            const QList<TextSeen> texts = pages.Texts(0);
            for (const TextSeen& text : texts) {
                cut += text.Text.endsWith(u'\u2026') ? 1 : 0;
                numberLeft = text.Text.startsWith(QStringLiteral("Page ")) ? text.Place.left() : numberLeft;
                titleRight = text.Text.startsWith(u'T') ? text.Place.right() : titleRight;
            }
            EXPECT_EQ(cut, 3) << "title, name and preview";
            EXPECT_LT(titleRight, numberLeft) << "the title runs into the page's number";
        },
        QString(500, u'T'));
}

TEST_F(ReportPrinterTest, LettersOfOtherLanguagesArriveOnThePaper) {
    const QString name = QString::fromUtf8("J\u00f6rg M\u00fc\u00dfig \u0141\u00f3d\u017a \u20ac");
    Grid.AddRecord(RecordNamed(name, 1));
    Grid.Populate();
    Preview([&](PreviewPages& pages) {
        const QString words = pages.Words(0).remove(u'|');
        EXPECT_EQ(words.count(name), 2) << words.toStdString();
    });
}

TEST_F(ReportPrinterTest, OnPaperADarkPalettePrintsDarkOnWhite) {
    const QPalette before = QApplication::palette();
    QPalette dark(QColor(0x2B, 0x2E, 0x33));
    dark.setColor(QPalette::Base, QColor(0x1E, 0x21, 0x25));
    dark.setColor(QPalette::Text, Qt::white);
    QApplication::setPalette(dark);
    Grid.setPalette(dark);
    ReportRecord record = RecordNamed(QStringLiteral("Ann"), 1);
    record.Items[2].TextColour = QColor(0, 128, 0);
    record.Items[2].BackColour = Qt::white;
    Grid.AddRecord(record);
    Grid.Populate();
    ASSERT_LT(Grid.palette().color(QPalette::Base).lightness(), 128) << "the palette is not dark";
    Preview([](PreviewPages& pages) {
        const QList<TextSeen> texts = pages.Texts(0);
        EXPECT_GE(texts.size(), 7);
        for (const TextSeen& text : texts) {
            EXPECT_LT(text.Ink.lightness(), 90) << text.Text.toStdString();
        }
        const QImage picture = pages.Picture(0);
        int white = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                white += picture.pixelColor(x, y) == Qt::white ? 1 : 0;
            }
        }
        EXPECT_GT(white, picture.width() * picture.height() * 95 / 100);
    });
    QApplication::setPalette(before);
}

TEST_F(ReportPrinterTest, TheImageOfARowStandsInItsColumnAndBesideItsText) {
    Fill(1);
    Preview([](PreviewPages& pages) {
        const QImage picture = pages.Picture(0);
        const TextSeen number = pages.Texts(0)[4];
        const int right = qRound(number.Place.left() * pages.Scale());
        const int top = qRound(number.Place.top() * pages.Scale());
        int coloured = 0;
        for (int y = top; y < top + 40; ++y) {
            for (int x = 0; x < right; ++x) {
                coloured += picture.pixelColor(x, y).saturation() > 60 ? 1 : 0;
            }
        }
        EXPECT_GT(coloured, 200);
    });
}

TEST_F(ReportPrinterTest, ColumnsThatAreWiderThanThePaperGiveWayAndNoneIsLost) {
    Grid.resize(1700, 300);
    Grid.header()->resizeSection(1, 1500);
    Fill(1);
    Preview([](PreviewPages& pages) {
        pages.SetLayout(QPageLayout(QPageSize(QPageSize::A6), QPageLayout::Portrait,
                                    QMarginsF(10, 10, 10, 10), QPageLayout::Millimeter));
        ExpectMarginsAreKept(pages);
        const QString words = pages.Words(0);
        EXPECT_TRUE(words.contains(QStringLiteral("|Name|"))) << words.toStdString();
        EXPECT_TRUE(words.contains(QStringLiteral("|Row 0;|"))) << words.toStdString();
    });
}

TEST_F(ReportPrinterTest, AnotherPaperChosenInThePreviewLaysTheRecordsOutAnew) {
    Fill(100);
    Preview([](PreviewPages& pages) {
        const int before = pages.Count();
        AnswerPageSetup([](QWidget& setup) {
            auto* size = setup.findChild<QComboBox*>(QStringLiteral("pageSizeCombo"));
            size->setCurrentIndex(size->findText(QStringLiteral("A5"), Qt::MatchContains));
            ASSERT_GE(size->currentIndex(), 0);
            setup.findChild<QRadioButton*>(QStringLiteral("landscape"))->click();
            setup.findChild<QDoubleSpinBox*>(QStringLiteral("leftMargin"))->setValue(25);
        });
        PressPageSetup(pages.Dialog());
        pages.Read();
        EXPECT_EQ(pages.Layout().orientation(), QPageLayout::Landscape);
        EXPECT_EQ(pages.Layout().pageSize().id(), QPageSize::A5);
        EXPECT_GT(pages.Inside().left(), pages.Paper().width() / 20);
        EXPECT_GT(pages.Count(), 2 * before) << "less than half of the height";
        ExpectMarginsAreKept(pages);
        QString words;
        for (int page = 0; page < pages.Count(); ++page) {
            words += pages.Words(page);
        }
        for (int row = 0; row < 100; ++row) {
            EXPECT_EQ(words.count(QStringLiteral("|Row %1;|Preview of Row %1;|").arg(row)), 1) << row;
        }
    });
}

TEST_F(ReportPrinterTest, OnlyThePagesThatWereAskedForArePrinted) {
    Fill(200);
    Preview([](PreviewPages& pages) {
        const int all = pages.Count();
        ASSERT_GE(all, 4);
        const auto print = [&](int from, int to) {
            pages.Dialog().printer()->setFromTo(from, to);
            pages.SetLayout(pages.Layout());
        };
        print(2, 3);
        ASSERT_EQ(pages.Count(), 2);
        EXPECT_TRUE(pages.Words(0).contains(QStringLiteral("|Page 2 of %1|").arg(all)));
        EXPECT_TRUE(pages.Words(1).contains(QStringLiteral("|Page 3 of %1|").arg(all)));
        print(all, all + 7);
        ASSERT_EQ(pages.Count(), 1) << "pages that there are not";
        EXPECT_TRUE(pages.Words(0).contains(QStringLiteral("|Page %1 of %1|").arg(all)));
    });
}

TEST_F(ReportPrinterTest, AnEmptyGridPrintsOnePageWithItsTitle) {
    Preview([](PreviewPages& pages) {
        ASSERT_EQ(pages.Count(), 1);
        EXPECT_TRUE(pages.Words(0).contains(QStringLiteral("|Page 1 of 1|")));
    });
}

TEST_F(ReportPrinterTest, PrintingWithAPreviewShowsThePagesFirst) {
    Fill(3);
    Preview([](PreviewPages& pages) { EXPECT_TRUE(pages.Dialog().isVisible()); });
    EXPECT_EQ(Door.Dialogs, QStringList{QStringLiteral("My Report")});
}

/// Pages are counted by what a PDF says of itself.
TEST_F(ReportPrinterTest, AFileHoldsAsManyPagesAsThePreview) {
    Fill(200);
    int shown = 0;
    QPageLayout layout;
    Preview([&](PreviewPages& pages) {
        shown = pages.Count();
        layout = pages.Layout();
    });
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("report.pdf")));
    {
        QPdfWriter paper(file.fileName());
        paper.setPageLayout(layout);
        ReportPrinter(Grid, QStringLiteral("Title")).Render(paper);
    }
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll().count("/Type /Page\n"), shown);
}
