// Cut, copy and paste of a document's selection, and the document's way to and from the
// platform clipboard.
//
// A cut or copy takes the selection's bounding box out of the document with the pixels that
// the selection leaves out marked in channel 3 (255: skip when pasting), puts it into the
// application's `ClipBuffer` and stores it in the clip history of the History Box. The
// platform clipboard carries whole pictures only, as an image without alpha.
//
// Each routine works on one document and the host; a change of the document's pixels is
// committed to its model under the caption the command dispatch gives.
#pragma once

#include "pixel/bits.h"

#include <QString>

class QImage;

namespace ostrivex {

class DocumentHost;
class fImage;

inline constexpr const char* kClipboardTitle = "Ostrivex";
inline constexpr const char* kMinimumCutText = "Minimum cut size: 2 x 2";
inline constexpr const char* kMinimumCopyText = "Minimum copy size: 2 x 2";

// A picture's pixels as a Bits (blue, green, red; channel 3 is 0, as the platform's 32-bit
// device pixels read).
Bits BitsFromImage(const QImage& picture);

// `CutBits`: copies the selection like CopyBits, then blanks it (all four channels 0) in the
// document, committed under caption. A box narrower or lower than 2 pixels (or no selection
// at all) shows the "Minimum cut size: 2 x 2" box and changes nothing. True when the
// document's pixels changed.
bool CutBits(fImage& document, DocumentHost& host, const QString& caption);
// `CopyBits`: the selection's box, masked, into ClipBuffer and a clip slot; the box
// "Minimum copy size: 2 x 2" under 2 x 2. True when a clip was taken.
bool CopyBits(fImage& document, DocumentHost& host);

// The PASTE command: with pixels in ClipBuffer and a picture in the document, the paste is
// set pending (the pixels follow the mouse until a click fixes or cancels them) and the
// action label becomes "Paste". cFilter is given the document's pixels first: they are what
// the moving paste is drawn over. False when nothing was set up.
bool PasteBits(fImage& document, DocumentHost& host);

// `BitsCopyToClipboard`: the whole image, without its guard band and without channel 3, as
// the platform clipboard's image. False without a picture.
bool BitsCopyToClipboard(const fImage& document);
// `PasteFromClipboard`: if the clipboard holds an image, it becomes the document's picture,
// committed under "Paste". False when the clipboard has none.
bool PasteFromClipboard(fImage& document);

// Create New Copy: a new document holding a copy of the document's pixels (channel 3 too).
fImage* CreateNewCopy(const fImage& document, DocumentHost& host);
// Create From Clipboard: a new document from the clipboard's image; nullptr (and no
// document) when the clipboard holds none.
fImage* CreateFromClipboard(DocumentHost& host);

// Crop: the document becomes the selection's bounding box (the whole rectangle, pixels
// outside the selection included), committed under caption; the selection then covers the
// new image. Nothing without a selection. True when the document changed.
bool CropToSelection(fImage& document, DocumentHost& host, const QString& caption);
// Create Crop as New Image: a new document of the selection's bounding box; the source
// stays as it is. nullptr without a selection.
fImage* NewImageFromCrop(const fImage& document, DocumentHost& host);

} // namespace ostrivex
