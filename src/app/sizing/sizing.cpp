#include "app/sizing/sizing.h"

#include "app/commands/menu_table.h"
#include "app/fmain.h"
#include "app/globals.h"
#include "app/sizing/fcanvas.h"
#include "app/sizing/forientation.h"
#include "app/sizing/frotate.h"
#include "app/sizing/fsize.h"
#include "document/fimage.h"
#include "model/undostore.h"
#include "pixel/bitfilter.h"
#include "pixel/vbmath.h"

#include <QCoreApplication>
#include <QDialog>

#include <algorithm>
#include <cmath>

namespace ostrivex {

std::function<int(QDialog&)> SizingDialogs::Exec = [](QDialog& dialog) { return dialog.exec(); };

namespace {

// The active document with a picture on show in its Enhanced view, or null.
fImage* activePicture() {
    if (!GetActiveDocument(ActiveDocument)) return nullptr;
    return ActiveDocument->PictureExists() && ActiveDocument->Model().Target().IsEnhanced()
               ? ActiveDocument
               : nullptr;
}

// Degrees to radians as ROTATE takes them, and its single-precision cosine and sine.
constexpr double kDegToRad = 0.0174533;
void rotateFactors(int32_t degrees, float& c, float& s) {
    const float a = float(degrees * kDegToRad);
    c = float(std::cos(double(a)));
    s = float(std::sin(double(a)));
}

} // namespace

QString SizingLabel(const QString& word) {
    const MenuEntry* entry = FindMenuWord(word.toStdString());
    return entry && !LastCommandCaption.isEmpty() ? LastCommandCaption : word;
}

void TakeSizedBits(fMain& main, fImage& doc, const QString& label) {
    // The commit resizes the document, resets its selection to the whole new image (the
    // old one does not fit the new canvas), files the step, shows the new size and gives
    // cFilter the pixels back.
    doc.Model().Commit(EditTarget::Enhanced(), main.Filter().TakeBits(), label);
    QCoreApplication::processEvents();
}

// --- Scaling --------------------------------------------------------------------------------

void ZoomedSize(int32_t w, int32_t h, int32_t factor, int32_t divideFlag, int32_t& newW,
                int32_t& newH) {
    if (divideFlag < kZoomMultiply) {
        newW = vbRound(double(w) / factor);
        newH = vbRound(double(h) / factor);
    } else {
        newW = w * factor;
        newH = h * factor;
    }
}

void ZoomImage(fMain& main, int32_t factor, int32_t divideFlag, bool quality,
               const QString& label) {
    fImage* doc = activePicture();
    if (!doc || factor < 1) return;
    int32_t w = 0, h = 0;
    ZoomedSize(doc->PictureWidth(), doc->PictureHeight(), factor, divideFlag, w, h);
    // A shrink below one pixel has nothing to make; the dialogs' limit of 2 is theirs.
    if (w < 1 || h < 1) return;
    ResizeImage(main, w, h, quality, label);
}

void ResizeImage(fMain& main, int32_t w, int32_t h, bool interpolate, const QString& label) {
    fImage* doc = activePicture();
    if (!doc || w < 1 || h < 1) return;
    cBitFilter& filter = main.Filter();
    filter.SetBits(doc->bits()); // 3.
    if (interpolate)             // 4.
        filter.BitsResample(filter.bits(), w, h);
    else
        filter.BitsResize(filter.bits(), w, h);
    TakeSizedBits(main, *doc, label);
}

// --- Canvas and orientation -----------------------------------------------------------------

void ResizeCanvas(fMain& main, int32_t w, int32_t h, int32_t left, int32_t top,
                  const QString& label) {
    fImage* doc = activePicture();
    if (!doc || w < 1 || h < 1) return;
    cBitFilter& filter = main.Filter();
    const Bits old = doc->bits();
    // The blank canvas goes to the filter; the whole of it may be written.
    filter.SetBits(Bits(w, h));
    filter.BitsRegion(nullptr);
    // Opacity 0 and no key colour: the old pixels are copied as they are.
    filter.SetBits(filter.TileMask(old, left, top, false, 0, -1));
    TakeSizedBits(main, *doc, label);
}

void ChangeOrientation(fMain& main, bool turn, bool flipHorizontal, bool flipVertical,
                       const QString& label) {
    fImage* doc = activePicture();
    if (!doc || (!turn && !flipHorizontal && !flipVertical)) return;
    cBitFilter& filter = main.Filter();
    filter.SetBits(doc->bits());
    if (turn) filter.BitsRotate90(filter.bits());
    if (flipHorizontal || flipVertical) filter.SetBits(filter.Flip(flipHorizontal, flipVertical));
    TakeSizedBits(main, *doc, label);
}

// --- Free turns -----------------------------------------------------------------------------

// The growth: the turned W x H image needs a box of W|c| + H|s| by W|s| + H|c|. The working
// canvas must hold the image both before and after the turn, so each side is the larger of
// the two, plus one pixel all round: ROTATE turns about the integer centre
// ((0 + last) \ 2), half a pixel off the true centre on an even side, and the margin keeps
// the turned image whole. The image is laid in the middle of it, the canvas is turned, and
// the result is cut to the box of the output pixels whose source (by ROTATE's own mapping
// and rounding) lies in the image. A quarter turn thus gives exactly H x W with every pixel
// moved and none lost; other angles give the box of the turned image, black in the corners.
void TurnOnGrownCanvas(cBitFilter& filter, const Bits& source, int32_t degrees, bool antialias) {
    const int32_t w = source.width(), h = source.height();
    float c = 0, s = 0;
    rotateFactors(degrees, c, s);
    const double ac = std::fabs(double(c)), as = std::fabs(double(s));
    // The small allowance keeps a product like 3 * 0.9999999 from adding a column.
    const int32_t turnedW = int32_t(std::ceil(w * ac + h * as - 0.01));
    const int32_t turnedH = int32_t(std::ceil(w * as + h * ac - 0.01));
    const int32_t cw = std::max(w, turnedW) + 2, ch = std::max(h, turnedH) + 2;
    const int32_t left = (cw - w) / 2, top = (ch - h) / 2;

    filter.SetBits(Bits(cw, ch));
    filter.BitsRegion(nullptr);
    filter.SetBits(filter.TileMask(source, left, top, false, 0, -1));
    filter.SetBits(antialias ? filter.RotateSmooth(degrees, true) : filter.ROTATE(degrees, true));

    // The box of the covered pixels, with ROTATE's centre, products and rounding.
    const int32_t cx = (cw - 1) >> 1, cy = (ch - 1) >> 1;
    int32_t x0 = cw, y0 = ch, x1 = -1, y1 = -1;
    for (int32_t y = 0; y < ch; ++y) {
        const double dy = double(y - cy);
        const double dys = dy * s, dyc = dy * c;
        for (int32_t x = 0; x < cw; ++x) {
            const double dx = double(x - cx);
            const int32_t sx = vbRound(dx * c - dys + cx);
            const int32_t sy = vbRound(dx * s + dyc + cy);
            if (sx < left || sx >= left + w || sy < top || sy >= top + h) continue;
            x0 = std::min(x0, x);
            x1 = std::max(x1, x);
            y0 = std::min(y0, y);
            y1 = std::max(y1, y);
        }
    }
    if (x1 < x0 || y1 < y0) return; // nothing covered (an empty source)
    filter.BitsCrop(filter.bits(), x0, y0, x1 + 1, y1 + 1);
}

void RotateImage(fMain& main, int32_t degrees, bool antialias, const QString& label) {
    fImage* doc = activePicture();
    if (!doc || degrees % 360 == 0) return;
    cBitFilter& filter = main.Filter();
    TurnOnGrownCanvas(filter, doc->bits(), degrees, antialias);
    TakeSizedBits(main, *doc, label);
}

// --- The state the document opened with ----------------------------------------------------

namespace {
// Undo slot 0: the state at open (or the oldest kept, once the history has run past its
// limit and shifted). False when its file is missing or unreadable.
bool readOriginal(const fImage& doc, Bits& out) {
    return UndoStore::ReadSlotFile(doc.History().SlotFileName(0), out);
}
} // namespace

void OriginalSize(fMain& main, const QString& label) {
    fImage* doc = activePicture();
    if (!doc) return;
    Bits original;
    if (!readOriginal(*doc, original)) return;
    if (original.width() == doc->PictureWidth() && original.height() == doc->PictureHeight())
        return;
    // Nearest neighbour: after the integer zooms ("200 %" and the others) it gives back the
    // very pixels the image had.
    ResizeImage(main, original.width(), original.height(), false, label);
}

void RestoreOriginal(fMain& main) {
    fImage* doc = activePicture();
    if (!doc) return;
    Bits original;
    if (!readOriginal(*doc, original)) return;
    main.Filter().SetBits(std::move(original));
    TakeSizedBits(main, *doc, kRestoreOriginalCaption);
}

// --- The words ------------------------------------------------------------------------------

bool RunSizingDialog(fMain& main, const QString& word) {
    if (word != "IMAGESIZE" && word != "CANVASSIZE" && word != "IMAGEORIENTATION" &&
        word != "IMAGEROTATE")
        return false;
    fImage* doc = activePicture();
    if (!doc) return true;
    const QString label = SizingLabel(word);
    const int32_t w = doc->PictureWidth(), h = doc->PictureHeight();
    QWidget* parent = main.DialogParent();
    if (word == "IMAGESIZE") {
        fSize dialog(w, h, parent);
        if (SizingDialogs::Exec(dialog) != QDialog::Accepted) return true;
        ResizeImage(main, dialog.NewWidth(), dialog.NewHeight(), dialog.Interpolate(), label);
    } else if (word == "CANVASSIZE") {
        fCanvas dialog(doc->Picture(), parent);
        if (SizingDialogs::Exec(dialog) != QDialog::Accepted) return true;
        ResizeCanvas(main, dialog.NewWidth(), dialog.NewHeight(), dialog.Left(), dialog.Top(),
                     label);
    } else if (word == "IMAGEORIENTATION") {
        fOrientation dialog(w, h, parent);
        if (SizingDialogs::Exec(dialog) != QDialog::Accepted) return true;
        ChangeOrientation(main, dialog.Turn(), dialog.FlipHorizontal(), dialog.FlipVertical(),
                          label);
    } else {
        fRotate dialog(parent);
        if (SizingDialogs::Exec(dialog) != QDialog::Accepted) return true;
        RotateImage(main, dialog.Degrees(), dialog.Antialias(), label);
    }
    return true;
}

bool RunZoomWord(fMain& main, const QString& word) {
    int32_t factor = 0, flag = kZoomMultiply;
    bool quality = false;
    bool ok = false;
    const int32_t number = word.toInt(&ok);
    if (ok && number >= 200 && number <= 700 && number % 100 == 0) {
        // "200 %" to "700 %": the percent as a multiplying factor.
        factor = number / 100;
    } else if (ok && (number == 50 || number == 33 || number == 25 || number == 20 ||
                      number == 15 || number == 10)) {
        // The percent of a division: 50 halves, 33 thirds, ... 15 divides by
        // Round(100 / 15) = 7 and 10 by 10.
        factor = vbRound(100.0 / number);
        flag = 0;
    } else if (word.size() == 2 && word[1] == QLatin1Char('x') && word[0] >= QLatin1Char('2') &&
               word[0] <= QLatin1Char('5')) {
        factor = word[0].digitValue(); // "2x" .. "5x": grow, smoothed
        quality = true;
    } else if (word.size() == 2 && word[0] == QLatin1Char('x') && word[1] >= QLatin1Char('2') &&
               word[1] <= QLatin1Char('5')) {
        factor = word[1].digitValue(); // "x2" .. "x5": shrink, smoothed
        flag = 0;
        quality = true;
    } else if (word != "ORIGINAL" && word != "RESTORE") {
        return false;
    }
    fImage* doc = activePicture();
    if (!doc) return true;
    // The scaling works on the image at 1 : 1.
    if (doc->ZoomFactor() != 1) doc->SetZoomFactor(1);
    if (word == "ORIGINAL")
        OriginalSize(main, SizingLabel(word));
    else if (word == "RESTORE")
        RestoreOriginal(main);
    else
        ZoomImage(main, factor, flag, quality, SizingLabel(word));
    return true;
}

bool RunRotateWord(fMain& main, const QString& word) {
    static const struct {
        const char* word;
        int32_t degrees;
        bool antialias;
    } kTurns[] = {{"N90", 90, false},  {"N180", 180, false}, {"N270", 270, false},
                  {"N45", 45, false},  {"A90", 90, true},    {"A180", 180, true},
                  {"A270", 270, true}, {"A45", 45, true}};
    for (const auto& t : kTurns)
        if (word == QLatin1String(t.word)) {
            RotateImage(main, t.degrees, t.antialias, SizingLabel(word));
            return true;
        }
    return false;
}

} // namespace ostrivex
