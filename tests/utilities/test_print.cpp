// Printing through the main window's words, to PDF files: the pages are rendered back with
// pdftoppm and the picture is found where it belongs, fitted and centred or at the size
// its file's resolution gives.
#include "app/app_test_util.h"
#include "document/fileops.h"
#include "messages.h"
#include "utilities/print/printing.h"

#include <QImage>
#include <QPageLayout>
#include <QPrinter>
#include <QProcess>
#include <QRegularExpression>

#include <cmath>

using namespace ostrivex;
using ostrivex::testing::OpenDocument;

namespace {

// Pages of A4 with 10 mm margins, rendered at 36 dpi: the printable area starts 10 mm in.
constexpr double kRenderDpi = 36.0;
constexpr double kMarginPx = 10.0 / 25.4 * kRenderDpi;
constexpr double kPageW = 210.0 / 25.4 * kRenderDpi, kPageH = 297.0 / 25.4 * kRenderDpi;

// The picture: 200 x 100, its quarters red, green (top right), blue (bottom left), black.
Bits quarters() {
    Bits b(200, 100);
    for (int y = 0; y < 100; ++y)
        for (int x = 0; x < 200; ++x) {
            uint8_t* p = b.pixel(x, y);
            const bool right = x >= 100, bottom = y >= 50;
            p[2] = !right && !bottom ? 255 : 0; // red
            p[1] = right && !bottom ? 255 : 0;  // green
            p[0] = !right && bottom ? 255 : 0;  // blue
        }
    return b;
}

struct Found {
    QRect box;         // the rendered picture's pixels (anything not near white)
    QRgb tl, tr, bl, br; // the colours at the middle of its quarters
};

class PrintTest : public ostrivex::testing::WithMainWindow {
  protected:
    void SetUp() override {
        WithMainWindow::SetUp();
        ASSERT_TRUE(dir_.isValid());
        saved_ = {PrintDialogs::AskPageSetup, PrintDialogs::AskPrint, PrintDialogs::ShowPreview};
        PrintDialogs::AskPrint = [this](QPrinter& p, PrintLayout& layout, QWidget*) {
            ++asked_;
            orientation_ = p.pageLayout().orientation();
            toPdf(p);
            layout.actualSize = actualSize_;
            return accept_;
        };
    }
    void TearDown() override {
        std::tie(PrintDialogs::AskPageSetup, PrintDialogs::AskPrint, PrintDialogs::ShowPreview) = saved_;
        WithMainWindow::TearDown();
    }
    QString pdf() const { return dir_.filePath("out.pdf"); }
    void toPdf(QPrinter& p) const {
        p.setOutputFormat(QPrinter::PdfFormat);
        p.setOutputFileName(pdf());
        p.setPageSize(QPageSize(QPageSize::A4));
        p.setPageMargins(QMarginsF(10, 10, 10, 10), QPageLayout::Millimeter);
    }
    // The only page of the PDF, rendered, and what is on it.
    Found render() {
        QProcess info;
        info.start("pdfinfo", {pdf()});
        EXPECT_TRUE(info.waitForFinished(30000));
        EXPECT_TRUE(QString::fromUtf8(info.readAllStandardOutput()).contains(QRegularExpression("Pages:\\s+1\\n")));
        const QString base = dir_.filePath("page");
        EXPECT_EQ(QProcess::execute("pdftoppm", {"-r", QString::number(kRenderDpi), "-png", "-singlefile",
                                                 pdf(), base}),
                  0);
        const QImage page(base + ".png");
        EXPECT_FALSE(page.isNull());
        Found f;
        for (int y = 0; y < page.height(); ++y)
            for (int x = 0; x < page.width(); ++x) {
                const QRgb c = page.pixel(x, y);
                if (qRed(c) < 200 || qGreen(c) < 200 || qBlue(c) < 200) f.box |= QRect(x, y, 1, 1);
            }
        const QPoint c = f.box.center();
        const int qx = f.box.width() / 4, qy = f.box.height() / 4;
        f.tl = page.pixel(c.x() - qx, c.y() - qy);
        f.tr = page.pixel(c.x() + qx, c.y() - qy);
        f.bl = page.pixel(c.x() - qx, c.y() + qy);
        f.br = page.pixel(c.x() + qx, c.y() + qy);
        return f;
    }
    // The box's edges within 1.5 pixels of those given (fractions of the render's pixels).
    static void expectBox(const QRect& box, double left, double top, double right, double bottom) {
        EXPECT_NEAR(box.left(), left, 1.5);
        EXPECT_NEAR(box.top(), top, 1.5);
        EXPECT_NEAR(box.right() + 1, right, 1.5);
        EXPECT_NEAR(box.bottom() + 1, bottom, 1.5);
    }
    // The quarters' colours, exactly (the PDF carries the picture's own pixels) or, where
    // the render shrinks the picture, within `slack` of them.
    static void expectQuarters(const Found& f, int slack = 0) {
        const auto near = [slack](QRgb got, QRgb want) {
            return std::abs(qRed(got) - qRed(want)) <= slack &&
                   std::abs(qGreen(got) - qGreen(want)) <= slack &&
                   std::abs(qBlue(got) - qBlue(want)) <= slack;
        };
        EXPECT_TRUE(near(f.tl, qRgb(255, 0, 0))) << std::hex << f.tl;
        EXPECT_TRUE(near(f.tr, qRgb(0, 255, 0))) << std::hex << f.tr;
        EXPECT_TRUE(near(f.bl, qRgb(0, 0, 255))) << std::hex << f.bl;
        EXPECT_TRUE(near(f.br, qRgb(0, 0, 0))) << std::hex << f.br;
    }

    QTemporaryDir dir_;
    std::tuple<decltype(PrintDialogs::AskPageSetup), decltype(PrintDialogs::AskPrint),
               decltype(PrintDialogs::ShowPreview)>
        saved_;
    int asked_ = 0;
    bool accept_ = true, actualSize_ = false;
    QPageLayout::Orientation orientation_ = QPageLayout::Portrait;
};

TEST_F(PrintTest, TheImageIsFittedToThePrintableAreaAndCentred) {
    OpenDocument(*main_, quarters());
    main_->MenuExec("PRINT");
    EXPECT_EQ(main_->LastRoute(), "Print");
    EXPECT_EQ(asked_, 1);
    const Found f = render();
    // 2 : 1 on a portrait page: the printable width decides; centred up and down.
    const double w = kPageW - 2 * kMarginPx, h = w / 2;
    expectBox(f.box, kMarginPx, (kPageH - h) / 2, kPageW - kMarginPx, (kPageH + h) / 2);
    expectQuarters(f);

    // Printer Set up changes the session's printer: the next print is on a landscape page,
    // where the printable height decides.
    PrintDialogs::AskPageSetup = [](QPrinter& p, QWidget*) {
        p.setPageOrientation(QPageLayout::Landscape);
        return true;
    };
    main_->MenuStatic("PRINTERSETUP");
    EXPECT_EQ(main_->LastRoute(), "PrinterSetup");
    main_->MenuExec("PRINT");
    EXPECT_EQ(orientation_, QPageLayout::Landscape);
    const Found l = render();
    const double lh = kPageW - 2 * kMarginPx, lw = std::min(2 * lh, kPageH - 2 * kMarginPx);
    expectBox(l.box, (kPageH - lw) / 2, (kPageW - lw / 2) / 2, (kPageH + lw) / 2, (kPageW + lw / 2) / 2);
    expectQuarters(l);
}

TEST_F(PrintTest, ActualSizeFollowsTheFilesResolutionElse72) {
    // A file that states 100 dpi: 200 x 100 pixels are 2 x 1 inches.
    QImage file(200, 100, QImage::Format_RGB32);
    const Bits q = quarters();
    for (int y = 0; y < 100; ++y)
        for (int x = 0; x < 200; ++x) {
            const uint8_t* p = q.pixel(x, y);
            file.setPixel(x, y, qRgb(p[2], p[1], p[0]));
        }
    file.setDotsPerMeterX(3937);
    file.setDotsPerMeterY(3937);
    const QString path = dir_.filePath("hundred.png");
    ASSERT_TRUE(file.save(path));
    EXPECT_EQ(FileDpi(path), QPointF(100, 100));
    EXPECT_EQ(FileDpi(dir_.filePath("missing.png")), QPointF(72, 72));
    ASSERT_NE(OpenImageFile(path), nullptr);

    actualSize_ = true;
    main_->MenuExec("PRINT");
    const Found f = render();
    const double w = 2 * kRenderDpi, h = 1 * kRenderDpi;
    const double cx = kPageW / 2, cy = kPageH / 2;
    expectBox(f.box, cx - w / 2, cy - h / 2, cx + w / 2, cy + h / 2);
    expectQuarters(f, 2); // 200 pixels drawn on 72

    // A picture made in the program has no file: 72 dpi.
    OpenDocument(*main_, quarters());
    main_->MenuExec("PRINT");
    const double w72 = 200.0 / 72 * kRenderDpi, h72 = 100.0 / 72 * kRenderDpi;
    expectBox(render().box, cx - w72 / 2, cy - h72 / 2, cx + w72 / 2, cy + h72 / 2);
}

TEST_F(PrintTest, PreviewCancelAndNoDocument) {
    // No document: no dialog, no file.
    test::RecordMessages messages;
    main_->MenuExec("PRINT");
    int previews = 0;
    PrintDialogs::ShowPreview = [&](QPrinter&, PrintLayout&, QWidget*,
                                    const std::function<void(QPrinter*)>& paint) {
        ++previews;
        QPrinter target(QPrinter::HighResolution);
        toPdf(target);
        paint(&target);
    };
    main_->MenuExec("PRINTPREVIEW");
    EXPECT_EQ(asked_, 0);
    EXPECT_EQ(previews, 0);
    EXPECT_FALSE(QFile::exists(pdf()));

    // Cancel prints nothing.
    OpenDocument(*main_, quarters());
    accept_ = false;
    main_->MenuExec("PRINT");
    EXPECT_EQ(asked_, 1);
    EXPECT_FALSE(QFile::exists(pdf()));

    // The preview draws the page the print would.
    main_->MenuExec("PRINTPREVIEW");
    EXPECT_EQ(main_->LastRoute(), "Print");
    EXPECT_EQ(previews, 1);
    const Found f = render();
    const double w = kPageW - 2 * kMarginPx, h = w / 2;
    expectBox(f.box, kMarginPx, (kPageH - h) / 2, kPageW - kMarginPx, (kPageH + h) / 2);
    expectQuarters(f);
    EXPECT_TRUE(messages.texts.isEmpty());
}

} // namespace
