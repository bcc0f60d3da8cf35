#include "document/clipboard.h"

#include "document/dialogs.h"
#include "document/fimage.h"
#include "document/fpaste.h"
#include "document/host.h"
#include "pixel/bitfilter.h"

#include <QApplication>
#include <QClipboard>
#include <QCursor>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>

#include <algorithm>
#include <cstring>

namespace ostrivex {

namespace {

// The busy cursor for the length of one command; nothing without a GUI application.
class BusyCursor {
public:
    BusyCursor() : on_(qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr) {
        if (on_) QApplication::setOverrideCursor(Qt::WaitCursor);
    }
    ~BusyCursor() {
        if (on_) QApplication::restoreOverrideCursor();
    }
    BusyCursor(const BusyCursor&) = delete;
    BusyCursor& operator=(const BusyCursor&) = delete;

private:
    bool on_;
};

// The box of the selection, as BoundRect leaves it: with no selection the four values stay
// 0, so the size test below fails and the box is shown.
struct Box {
    int32_t left = 0, top = 0, right = 0, bottom = 0;
};

Box selectionBox(const fImage& document) {
    Box b;
    document.Region().BoundRect(b.left, b.top, b.right, b.bottom);
    return b;
}

// The box cut to the picture (a selection loaded from a file may reach past it). False when
// nothing of the picture is left in it.
bool boxInPicture(const fImage& document, Box& b) {
    b.left = std::max(b.left, 0);
    b.top = std::max(b.top, 0);
    b.right = std::min(b.right, document.PictureWidth());
    b.bottom = std::min(b.bottom, document.PictureHeight());
    return b.right > b.left && b.bottom > b.top;
}

// The steps that cut and copy share, up to the clip in ClipBuffer. False (after the box)
// when the selection is under 2 x 2.
bool takeClip(fImage& document, DocumentHost& host, const char* tooSmallText) {
    ClipHistory* clips = host.HistoryBox() ? host.HistoryBox()->Clips() : nullptr;
    if (clips) clips->ClipChanged = true;
    const Box b = selectionBox(document);
    if (b.right - b.left < 2 || b.bottom - b.top < 2) {
        DocumentDialogs::Inform(host.DialogParent(), QString::fromLatin1(tooSmallText),
                                QString::fromLatin1(kClipboardTitle));
        return false;
    }
    // A selection wholly outside the picture leaves no clip.
    Box inPicture = b;
    if (!boxInPicture(document, inPicture)) return false;
    // The mask needs the selection itself as the region (the size test above found one). A
    // filter of its own takes the clip, so that cFilter stays loaded with the document.
    cBitFilter cropper;
    cropper.BitsRegion(&*document.Region().Region());
    cropper.BitsCropMasked(document.bits(), b.left, b.top, b.right, b.bottom);
    host.ClipBuffer = cropper.GetBits();
    return true;
}

// The clip goes to the clip history (when the History Box exists).
void storeClip(DocumentHost& host) {
    if (fPaste* box = host.HistoryBox()) box->Clips()->StoreClip(host.ClipBuffer);
}

// A new document shown in the document area, with `pixels` as its picture and its first
// undo state "Original". Such a document has no file yet: it is named like a new blank
// image, so that Save asks for a name and offers the bmp format.
fImage* newDocument(DocumentHost& host, Bits&& pixels) {
    auto* doc = new fImage;
    doc->BeginDocument(QString());
    doc->Model().File.FileName = QStringLiteral("New.bmp");
    doc->Model().File.FileExtension = QStringLiteral("bmp");
    doc->Model().Start(std::move(pixels), QStringLiteral("Original"));
    host.AddDocumentWindow(doc);
    return doc;
}

} // namespace

bool CutBits(fImage& document, DocumentHost& host, const QString& caption) {
    if (!document.PictureExists()) return false;
    {
        BusyCursor busy;
        if (!takeClip(document, host, kMinimumCutText)) return false;
        // The selection is blanked in cFilter, whose pixels then go to the document.
        cBitFilter& filter = host.Filter();
        filter.SetBits(document.bits());
        document.GiveFilterRegion(true);
        filter.BitsBlack();
        document.Model().Commit(EditTarget::Enhanced(), filter.TakeBits(), caption);
    }
    storeClip(host);
    return true;
}

bool CopyBits(fImage& document, DocumentHost& host) {
    if (!document.PictureExists()) return false;
    {
        BusyCursor busy;
        if (!takeClip(document, host, kMinimumCopyText)) return false;
    }
    storeClip(host);
    return true;
}

bool PasteBits(fImage& document, DocumentHost& host) {
    if (!document.PictureExists() || host.ClipBuffer.empty() || host.ClipBuffer.width() < 1 ||
        host.ClipBuffer.height() < 1)
        return false;
    host.Filter().SetBits(document.bits());
    host.ActionLabel = QStringLiteral("Paste");
    host.PendingPaste = true;
    return true;
}

bool BitsCopyToClipboard(const fImage& document) {
    if (!document.PictureExists()) return false;
    // Picture() is the image without the guard band, every pixel opaque: channel 3 stays
    // behind. Qt offers the image to other programs in the common image formats.
    QGuiApplication::clipboard()->setImage(document.Picture());
    return true;
}

Bits BitsFromImage(const QImage& picture) {
    if (picture.isNull()) return Bits();
    const QImage src = picture.convertToFormat(QImage::Format_RGB32);
    Bits b(src.width(), src.height());
    for (int y = 0; y < src.height(); ++y) {
        const uint8_t* in = src.constScanLine(y);
        uint8_t* out = b.row(y);
        std::memcpy(out, in, size_t(src.width()) * 4u);
        for (int x = 0; x < src.width(); ++x) out[x * 4 + 3] = 0;
    }
    return b;
}

bool PasteFromClipboard(fImage& document) {
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    if (!data || !data->hasImage()) return false;
    const QImage picture = QGuiApplication::clipboard()->image();
    if (picture.isNull()) return false;
    document.Model().Commit(EditTarget::Enhanced(), BitsFromImage(picture), QStringLiteral("Paste"));
    return true;
}

fImage* CreateNewCopy(const fImage& document, DocumentHost& host) {
    if (!document.PictureExists()) return nullptr;
    return newDocument(host, Bits(document.bits()));
}

fImage* CreateFromClipboard(DocumentHost& host) {
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    if (!data || !data->hasImage()) return nullptr;
    const QImage picture = QGuiApplication::clipboard()->image();
    if (picture.isNull() || picture.width() < 1 || picture.height() < 1) return nullptr;
    return newDocument(host, BitsFromImage(picture));
}

bool CropToSelection(fImage& document, DocumentHost& host, const QString& caption) {
    if (!document.PictureExists()) return false;
    Box b = selectionBox(document);
    if (!boxInPicture(document, b)) return false;
    BusyCursor busy;
    // The crop is cut to the filter's image rectangle: the filter gets the document first.
    cBitFilter& filter = host.Filter();
    filter.SetBits(document.bits());
    filter.BitsCrop(document.bits(), b.left, b.top, b.right, b.bottom);
    // Pixels of another size resize the document and reset its selection to the whole new
    // image; cFilter gets the cropped pixels back with that region.
    document.Model().Commit(EditTarget::Enhanced(), filter.TakeBits(), caption);
    return true;
}

fImage* NewImageFromCrop(const fImage& document, DocumentHost& host) {
    if (!document.PictureExists()) return nullptr;
    Box b = selectionBox(document);
    if (!boxInPicture(document, b)) return nullptr;
    // A filter of its own, so that cFilter stays loaded with the source document; the crop is cut to the filter's image rectangle, which the document's pixels set.
    cBitFilter cropper;
    cropper.SetBits(document.bits());
    cropper.BitsCrop(document.bits(), b.left, b.top, b.right, b.bottom);
    return newDocument(host, cropper.TakeBits());
}

} // namespace ostrivex
