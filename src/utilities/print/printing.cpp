#include "utilities/print/printing.h"

#include "document/dialogs.h"
#include "document/fimage.h"
#include "imagefile/imagefile.h"

#include <QAction>
#include <QApplication>
#include <QButtonGroup>
#include <QDir>
#include <QFileInfo>
#include <QPageSetupDialog>
#include <QPainter>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QPrinterInfo>
#include <QRadioButton>
#include <QStandardPaths>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace ostrivex {

namespace {

constexpr const char* kPrintTitle = "Ostrivex";
constexpr const char* kPrintFailedText = "The picture could not be printed.";

// The load state of the last opened file, kept aside while a file is read for its
// resolution (the open dialog's preview may still rely on it).
class KeepLoadState {
  public:
    KeepLoadState()
        : bitmap_(std::move(LoadedBitmap)), w_(LoadedWidth), h_(LoadedHeight), bpp_(LoadedBpp),
          dx_(LoadedDpiX), dy_(LoadedDpiY) {}
    ~KeepLoadState() {
        LoadedBitmap = std::move(bitmap_);
        LoadedWidth = w_;
        LoadedHeight = h_;
        LoadedBpp = bpp_;
        LoadedDpiX = dx_;
        LoadedDpiY = dy_;
    }
    KeepLoadState(const KeepLoadState&) = delete;
    KeepLoadState& operator=(const KeepLoadState&) = delete;

  private:
    Bits bitmap_;
    int16_t w_, h_, bpp_;
    int32_t dx_, dy_;
};

// The dialog's "Image" tab: how the picture lies on the page.
QWidget* layoutTab(const PrintLayout& layout, QRadioButton*& actual) {
    auto* tab = new QWidget;
    tab->setWindowTitle(QStringLiteral("Image"));
    auto* fit = new QRadioButton(QStringLiteral("Fit to the page"), tab);
    actual = new QRadioButton(QStringLiteral("Actual size (by the image's resolution)"), tab);
    fit->setObjectName(QStringLiteral("optFit"));
    actual->setObjectName(QStringLiteral("optActualSize"));
    (layout.actualSize ? actual : fit)->setChecked(true);
    auto* box = new QVBoxLayout(tab);
    box->addWidget(fit);
    box->addWidget(actual);
    box->addStretch(1);
    return tab;
}

bool defaultAskPageSetup(QPrinter& printer, QWidget* parent) {
    QPageSetupDialog dialog(&printer, parent);
    dialog.setWindowTitle(QStringLiteral("Printer Set up"));
    return dialog.exec() == QDialog::Accepted;
}

bool defaultAskPrint(QPrinter& printer, PrintLayout& layout, QWidget* parent) {
    QPrintDialog dialog(&printer, parent);
    dialog.setWindowTitle(QStringLiteral("Print"));
    QRadioButton* actual = nullptr;
    dialog.setOptionTabs({layoutTab(layout, actual)});
    if (dialog.exec() != QDialog::Accepted) return false;
    layout.actualSize = actual->isChecked();
    return true;
}

void defaultShowPreview(QPrinter& printer, PrintLayout& layout, QWidget* parent,
                        const std::function<void(QPrinter*)>& paint) {
    QPrintPreviewDialog dialog(&printer, parent);
    QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, &dialog, paint);
    // The layout can be switched here too; it is the session's, so a print from the
    // preview or later keeps it.
    if (auto* bar = dialog.findChild<QToolBar*>()) {
        bar->addSeparator();
        QAction* actual = bar->addAction(QStringLiteral("Actual Size"));
        actual->setCheckable(true);
        actual->setChecked(layout.actualSize);
        actual->setToolTip(QStringLiteral("Print at the size the image's resolution gives"));
        QObject::connect(actual, &QAction::toggled, &dialog, [&dialog, &layout](bool on) {
            layout.actualSize = on;
            if (auto* view = dialog.findChild<QPrintPreviewWidget*>()) view->updatePreview();
        });
    }
    dialog.exec();
}

} // namespace

std::function<bool(QPrinter&, QWidget*)> PrintDialogs::AskPageSetup = defaultAskPageSetup;
std::function<bool(QPrinter&, PrintLayout&, QWidget*)> PrintDialogs::AskPrint = defaultAskPrint;
std::function<void(QPrinter&, PrintLayout&, QWidget*, const std::function<void(QPrinter*)>&)>
    PrintDialogs::ShowPreview = defaultShowPreview;

QRectF ImagePlacement(QSize pixels, QPointF imageDpi, const QRectF& area, QPointF deviceDpi,
                      bool actualSize) {
    if (pixels.isEmpty() || area.isEmpty()) return QRectF();
    QSizeF size;
    if (actualSize) {
        const double dx = imageDpi.x() > 0 ? imageDpi.x() : kDefaultImageDpi;
        const double dy = imageDpi.y() > 0 ? imageDpi.y() : kDefaultImageDpi;
        size = QSizeF(pixels.width() / dx * deviceDpi.x(), pixels.height() / dy * deviceDpi.y());
    } else {
        const double scale = std::min(area.width() / pixels.width(), area.height() / pixels.height());
        size = QSizeF(pixels.width() * scale, pixels.height() * scale);
    }
    const QPointF corner(area.center().x() - size.width() / 2, area.center().y() - size.height() / 2);
    return QRectF(corner, size);
}

QPointF FileDpi(const QString& path) {
    const QPointF none(kDefaultImageDpi, kDefaultImageDpi);
    if (path.isEmpty() || !QFileInfo(path).isFile()) return none;
    const KeepLoadState keep;
    const std::string file = path.toStdString();
    if (!LoadDocumentImage(file, ExtensionOf(file)).ok) return none;
    return QPointF(LoadedDpiX > 0 ? LoadedDpiX : kDefaultImageDpi,
                   LoadedDpiY > 0 ? LoadedDpiY : kDefaultImageDpi);
}

bool PrintImage(QPrinter& printer, const QImage& picture, QPointF imageDpi,
                const PrintLayout& layout) {
    if (picture.isNull()) return false;
    QPainter painter;
    if (!painter.begin(&printer)) return false;
    // The painter's origin is the corner of the printable area; its units are the
    // printer's device pixels.
    const QRectF area(0, 0, printer.width(), printer.height());
    const QPointF deviceDpi(printer.logicalDpiX(), printer.logicalDpiY());
    const QRectF target = ImagePlacement(picture.size(), imageDpi, area, deviceDpi, layout.actualSize);
    painter.setClipRect(area);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    // The picture's own pixels: a PDF file would otherwise carry them as JPEG when that
    // is smaller.
    painter.setRenderHint(QPainter::LosslessImageRendering);
    painter.drawImage(target, picture);
    return painter.end();
}

PrintSession& PrintSession::For(QWidget* mainWindow) {
    if (auto* s = mainWindow->findChild<PrintSession*>(QString(), Qt::FindDirectChildrenOnly))
        return *s;
    return *new PrintSession(mainWindow);
}

PrintSession::PrintSession(QObject* parent) : QObject(parent) {}

PrintSession::~PrintSession() = default;

QPrinter& PrintSession::printer() {
    if (!printer_) {
        printer_ = std::make_unique<QPrinter>(QPrinter::HighResolution);
        // Without a printer the dialog can still print to a PDF file.
        if (QPrinterInfo::availablePrinterNames().isEmpty())
            printer_->setOutputFormat(QPrinter::PdfFormat);
    }
    return *printer_;
}

void PrintSession::PrinterSetup(QWidget* parent) { PrintDialogs::AskPageSetup(printer(), parent); }

QPointF PrintSession::documentDpi(const fImage& document) {
    const QFileInfo file(document.FileName);
    // A document made in the program ("New.bmp") has no file to ask.
    if (!document.FileName.contains('/') || !file.isFile())
        return QPointF(kDefaultImageDpi, kDefaultImageDpi);
    const qint64 stamp = file.lastModified().toMSecsSinceEpoch();
    if (file.absoluteFilePath() != dpiFile_ || stamp != dpiStamp_) {
        dpi_ = FileDpi(file.absoluteFilePath());
        dpiFile_ = file.absoluteFilePath();
        dpiStamp_ = stamp;
    }
    return dpi_;
}

bool PrintSession::Print(fImage& document, QWidget* parent) {
    if (!document.PictureExists()) return false;
    QPrinter& p = printer();
    p.setDocName(document.Caption());
    // A PDF file is named after the document, unless the user chose another name.
    if (p.outputFormat() == QPrinter::PdfFormat &&
        (p.outputFileName().isEmpty() || p.outputFileName() == defaultPdf_)) {
        // The user's documents folder where it exists, else the home folder.
        QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
        if (folder.isEmpty() || !QDir(folder).exists()) folder = QDir::homePath();
        const QString name = QFileInfo(document.Caption()).completeBaseName();
        defaultPdf_ =
            QDir(folder).filePath((name.isEmpty() ? QStringLiteral("Ostrivex") : name) + ".pdf");
        p.setOutputFileName(defaultPdf_);
    }
    if (!PrintDialogs::AskPrint(p, layout, parent)) return false;
    const QPointF dpi = layout.actualSize ? documentDpi(document)
                                          : QPointF(kDefaultImageDpi, kDefaultImageDpi);
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const bool ok = PrintImage(p, document.Picture(), dpi, layout);
    QApplication::restoreOverrideCursor();
    if (!ok)
        DocumentDialogs::Inform(parent, QString::fromLatin1(kPrintFailedText),
                                QString::fromLatin1(kPrintTitle));
    return ok;
}

void PrintSession::PrintPreview(fImage& document, QWidget* parent) {
    if (!document.PictureExists()) return;
    QPrinter& p = printer();
    p.setDocName(document.Caption());
    const QImage picture = document.Picture();
    PrintDialogs::ShowPreview(p, layout, parent, [this, &document, picture](QPrinter* target) {
        const QPointF dpi = layout.actualSize ? documentDpi(document)
                                              : QPointF(kDefaultImageDpi, kDefaultImageDpi);
        PrintImage(*target, picture, dpi, layout);
    });
}

} // namespace ostrivex
