// Printing of the active document's Enhanced image: "Printer Set up" (the page set-up),
// "Print" (the print dialog, then the page) and PRINTPREVIEW (the print preview).
//
// The picture goes on one page: by default fitted to the printable area, its aspect kept
// and centred; or at its actual size, by the resolution its file states (72 dpi when the
// file states none or there is no file), centred and cut to the printable area. The
// printer and its settings, and that choice, last for the session.
#pragma once

#include <QImage>
#include <QObject>
#include <QPointF>
#include <QRectF>
#include <QSize>
#include <QString>

#include <functional>
#include <memory>

class QPrinter;
class QWidget;

namespace ostrivex {

class fImage;

// The resolution a picture without a stated one is printed at.
inline constexpr double kDefaultImageDpi = 72.0;

struct PrintLayout {
    bool actualSize = false; // false: fitted to the printable area
};

// Where the picture goes, in device units of a printable area `area` with resolution
// `deviceDpi`: fitted (the largest rectangle of the picture's aspect inside the area) or at
// actual size (pixels / imageDpi inches), centred in the area either way.
QRectF ImagePlacement(QSize pixels, QPointF imageDpi, const QRectF& area, QPointF deviceDpi,
                      bool actualSize);

// The resolution the file at `path` states, in dots per inch; kDefaultImageDpi on both
// axes when it states none, cannot be read, or `path` is no file.
QPointF FileDpi(const QString& path);

// Paints `picture` on one page of `printer` (which must be set up and valid).
bool PrintImage(QPrinter& printer, const QImage& picture, QPointF imageDpi,
                const PrintLayout& layout);

// The dialogs, replaceable so that tests (and a run without a display) can answer them.
// The defaults show QPageSetupDialog, QPrintDialog with an "Image" tab for the layout,
// and QPrintPreviewDialog with an "Actual Size" toggle in its tool bar.
struct PrintDialogs {
    // True when the user accepted; the printer holds the choices.
    static std::function<bool(QPrinter& printer, QWidget* parent)> AskPageSetup;
    static std::function<bool(QPrinter& printer, PrintLayout& layout, QWidget* parent)> AskPrint;
    // Shows the preview; `paint` draws the pages on the printer it is given.
    static std::function<void(QPrinter& printer, PrintLayout& layout, QWidget* parent,
                              const std::function<void(QPrinter*)>& paint)>
        ShowPreview;
};

// The printer of the session and the layout choice: one per main window, made on first use.
class PrintSession : public QObject {
    Q_OBJECT
  public:
    static PrintSession& For(QWidget* mainWindow);
    explicit PrintSession(QObject* parent);
    ~PrintSession() override;

    QPrinter& printer();
    PrintLayout layout;

    // "Printer Set up": the page set-up dialog on the session's printer.
    void PrinterSetup(QWidget* parent);
    // "Print": the print dialog, then the document's Enhanced image on one page. False when
    // cancelled or when nothing could be printed.
    bool Print(fImage& document, QWidget* parent);
    // PRINTPREVIEW: the preview of that page.
    void PrintPreview(fImage& document, QWidget* parent);

  private:
    // The picture's resolution, read from its file once per file and its change time.
    QPointF documentDpi(const fImage& document);

    std::unique_ptr<QPrinter> printer_;
    QString defaultPdf_; // the PDF file name the program last offered
    QString dpiFile_;
    qint64 dpiStamp_ = -1;
    QPointF dpi_{kDefaultImageDpi, kDefaultImageDpi};
};

} // namespace ostrivex
