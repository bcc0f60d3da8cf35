// The commands that change the size of the active document: the four dialogs "Image size",
// "Canvas size", "Orientation" and "Rotate", the zoom and quality-sizing words, "Original
// Size", "Restore Original", and the quarter and eighth turns.
//
// Every one of them ends the same way (TakeSizedBits): the result lies in cFilter and is
// committed to the document under the command's caption, which resizes it, resets the
// selection to the whole new image (cFilter works on RegionMain), shows "W x H" in the
// "Pixel" status panel and files the state in the undo history.
#pragma once

#include "pixel/bits.h"

#include <QString>

#include <cstdint>
#include <functional>

class QDialog;

namespace ostrivex {

class cBitFilter;
class fImage;
class fMain;

// How the sizing dialogs are run: QDialog::exec by default. Tests replace it to fill in the
// controls and press a button; the return value is the dialog's result code.
struct SizingDialogs {
    static std::function<int(QDialog& dialog)> Exec;
};

// The undo and status caption of a word: the caption of the menu entry that sent it (kept
// in LastCommandCaption), or the word itself when no entry sends it.
QString SizingLabel(const QString& word);

// The steps after the operation: the filter's Bits are committed to the document under
// label, which resizes it, resets its selection to the whole new image, shows the new size
// in the "Pixel" panel and files the undo step.
void TakeSizedBits(fMain& main, fImage& doc, const QString& label);

// --- The operations on the active document (each does nothing without one) ---------------

// The flag value at and above which ZoomImage multiplies instead of dividing.
inline constexpr int32_t kZoomMultiply = 65535;
// The size ZoomImage makes from w x h: Round(w / factor) by Round(h / factor) with the flag
// below kZoomMultiply, else w * factor by h * factor.
void ZoomedSize(int32_t w, int32_t h, int32_t factor, int32_t divideFlag, int32_t& newW,
                int32_t& newH);
// `ZoomImage`: BitsResample (quality) or BitsResize to the zoomed size. A size that leaves
// no pixel in a direction changes nothing.
void ZoomImage(fMain& main, int32_t factor, int32_t divideFlag, bool quality,
               const QString& label);

// "Image size": BitsResample (interpolate) or BitsResize to w x h.
void ResizeImage(fMain& main, int32_t w, int32_t h, bool interpolate, const QString& label);
// "Canvas size": a blank w x h canvas with the old image laid on it at (left, top).
void ResizeCanvas(fMain& main, int32_t w, int32_t h, int32_t left, int32_t top,
                  const QString& label);
// "Orientation": a quarter turn to the left when `turn`, then the mirror. Nothing when no
// change is asked for.
void ChangeOrientation(fMain& main, bool turn, bool flipHorizontal, bool flipVertical,
                       const QString& label);

// `RotateImage`: turns the image by `degrees` (counter-clockwise on screen, as ROTATE does)
// on a canvas grown to hold it; see TurnOnGrownCanvas. A whole number of full turns changes
// nothing.
void RotateImage(fMain& main, int32_t degrees, bool antialias, const QString& label);
// The pixel work of RotateImage, on `filter`: lays `source` on a blank working canvas with a
// margin round it (TileMask), turns the canvas with RotateSmooth (antialias) or ROTATE,
// black behind, and crops to the box of the pixels that the turned image covers. The result
// is left as the filter's buffer, with the filter's region set to the whole of it.
void TurnOnGrownCanvas(cBitFilter& filter, const Bits& source, int32_t degrees, bool antialias);

// "Original Size": scales the image back to the size of the state the document opened with
// (undo slot 0), nearest neighbour. Nothing when the size is already that one.
void OriginalSize(fMain& main, const QString& label);
// "Restore Original": the state the document opened with (undo slot 0) comes back, size and
// pixels, as a new undo step.
void RestoreOriginal(fMain& main);
inline constexpr const char* kRestoreOriginalCaption = "Restore Original";

// --- The words of MenuExec -------------------------------------------------------------

// IMAGESIZE, CANVASSIZE, IMAGEORIENTATION, IMAGEROTATE: shows the dialog and, on OK, runs its
// operation. True if the word is one of them.
bool RunSizingDialog(fMain& main, const QString& word);
// The zoom words "200".."700", "2x".."5x", "x2".."x5", "50", "33", "25", "20", "15", "10",
// and ORIGINAL, RESTORE. The document's zoom is brought to 1 first. True if the word is
// one of them.
bool RunZoomWord(fMain& main, const QString& word);
// N90, N180, N270, N45 (ROTATE) and A90, A180, A270, A45 (RotateSmooth). True if the word
// is one of them.
bool RunRotateWord(fMain& main, const QString& word);

} // namespace ostrivex
