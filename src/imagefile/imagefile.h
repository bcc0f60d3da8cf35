// Image files by extension: from a file name to pixels and back.
//
// Two libraries serve most formats: FreeImage, and DevIL for the formats FreeImage lacks.
// Their decoders crash or hang on some files, so they run in a child process (the helper
// program `ostrivex-devil`, installed next to `ostrivex`) with a time limit; the helper
// hands the pixels back through an anonymous memory file, never a file in a folder. The
// formats that the program decodes itself or through well-fuzzed libraries (PNM and BMP
// of its own, JPEG through libjpeg-turbo, PNG through libpng) are decoded in this process,
// where they are several times faster (docs/decisions.md has the measurements).
//
// Only regular files are read. Every decoder takes the picture's size from the file's
// header first and refuses, before any pixel is decoded, a picture whose buffer would
// pass the memory budget (`ImageMemoryBudget`) or that holds far more pixels than a file
// of its length could honestly carry. Files cut short, of another format, or of no
// format at all end in the load error. A few formats (gif, wmf, emf, dib, bmp) also go
// through the platform picture loader (`LoadPictureFile`): Qt for gif, the program's own
// reader for bmp and dib, libwmf for WMF, libemf2svg + Qt SVG for EMF.
//
// Nothing here shows a message box: every load or save returns an `ImageFileResult`
// whose `message` the caller shows, titled `kImageFileMessageTitle`, when `ok` is false.
// The functions need no QApplication (a headless tool may call them).
#pragma once

#include "pixel/bits.h"

#include <cstdint>
#include <string>

namespace ostrivex {

// --- Messages --------------------------------------------------------------------------
inline constexpr const char* kImageFileMessageTitle = "Ostrivex";
inline constexpr const char* kLoadErrorText = "Unexpected error loading image";
inline constexpr const char* kSaveErrorText = "Unexpected error saving image";

// Outcome of a load or a save. On failure `message` is the text to show (the load or
// the save error above); on success it is empty. A successful load hands back what it
// loaded; a failed one has no pixels, so no document is ever made from another file's.
struct ImageFileResult {
    bool ok = false;
    std::string message;
    // The pixels of a load: blue, green, red in channels 0..2, channel 3 zero.
    Bits pixels;
    // Bits per pixel of the decoded file as the library reported them (before the
    // conversion to 24 bits): 1, 4, 8, 16, 24, 32...
    int16_t bpp = 0;
    // The resolution in dots per inch as the file states it (FreeImage reports 72 for files
    // that state none; metafiles are drawn at 96).
    int32_t dpiX = 0;
    int32_t dpiY = 0;
    explicit operator bool() const { return ok; }
};

// --- Loading ---------------------------------------------------------------------------
// Loads `path` by its extension (compared in lower case; the table's first match wins)
// and hands back the pixels. The rows of DevIL's list go to DevIL, except xpm (FreeImage's
// reader: DevIL's crashes on every file), dcx (the first page, by FreeImage's PCX reader)
// and the SGI names (the program's own reader, which gets 16-bit colours right); bmp,
// jpg, png and the PNM names are read in this process, the other rows by FreeImage.
// Alpha is dropped (the stored colour stays) except in bmp, whose alpha is laid over
// white as the platform picture shows it; 16-bit samples are rounded to 8 bits.
// Extensions outside the table (jpe, jif, rle, sun, ico, gif, wmf, emf, dib, olf,
// anything else) yield no bitmap: the result is the load error.
ImageFileResult LoadImageFile(const std::string& path, const std::string& extension);

// The platform picture loader for gif, wmf, emf, dib and bmp: Qt for gif (its first
// frame), the program's own reader for bmp and dib, libwmf for WMF, libemf2svg + Qt SVG
// for EMF; transparent parts and metafiles (at their own size) on white. Hands back the
// pixels like `LoadImageFile` (bpp is the file's own depth for raster files, 24 for
// metafiles). Any other extension is the load error. EMF needs a
// QGuiApplication (an offscreen one will do); without one it is the load error.
ImageFileResult LoadPictureFile(const std::string& path, const std::string& extension);

// True for the extensions that `loadBitmap` takes through `LoadPictureFile`.
bool IsPictureExtension(const std::string& extension);
// True for the extensions some loader reads (a row of the load table, or the picture
// loader's); "olf", which the layered file reader takes, is not among them.
bool IsReadableExtension(const std::string& extension);

// The load that a document is made from: `LoadPictureFile` for gif, wmf, emf and dib,
// `LoadImageFile` for everything else (bmp included: both loaders read it alike). "olf" is
// not a picture (the layered file reader makes that document) and is the load error here.
ImageFileResult LoadDocumentImage(const std::string& path, const std::string& extension);

// --- Saving ----------------------------------------------------------------------------
// Writes channels 0..2 of `picture` (W x H, guard band ignored) to `path` in the format of
// `extension` (lower-cased first), 24 bits: png (libpng, compression chosen from the
// picture), jpg/jpeg (libjpeg-turbo, best quality), ppm (the program's own), bmp, tif/
// tiff and tga/vda/vst/icb/targa (FreeImage); pbm and pgm as 8-bit grey PNM (FreeImage);
// psd, sgi/bw/rgb/rgba, raw and pcx by DevIL in the helper, from a BMP in memory.
// The new file replaces `path` only once it is whole, so a failed save leaves an old file
// of that name as it was.
// "gif" is written by the web optimizer (`SaveGifFile`): with the Optimize Box's settings
// while it shows a GIF preset, else 256 colours "Optimal".
// Any other extension, an empty picture or a failed write is the save error.
ImageFileResult SaveImageFile(const Bits& picture, const std::string& path,
                              const std::string& extension);

// Loads `source` with DevIL (by its extension) and saves it as `target` in DevIL format
// `type` (an IL_ type number such as 0x0428 for PCX), in the helper process. True when
// the target was written; a failure leaves an old target as it was.
bool DevilConvert(const std::string& source, const std::string& target, int type);

// --- Work files ------------------------------------------------------------------------
// The private per-user temporary folder, created on first use with mode 0700:
// $XDG_RUNTIME_DIR/ostrivex, else ($TMPDIR or /tmp)/ostrivex-<uid>. No trailing "/".
std::string TempFolder();
// TempFolder() + "/t65s8s98": the BMP of the current image for the Optimize box.
std::string TempBitmapName();

// --- Limits ----------------------------------------------------------------------------
// The largest pixel buffer a decoded picture may need, in bytes (4 bytes a pixel with the
// guard band); a larger picture is refused from its header with the load error. By
// default an eighth of the machine's memory (or of the control group's limit), at least
// 256 MB; $OSTRIVEX_MAX_IMAGE_MB sets it in megabytes, `SetImageMemoryBudget` in bytes
// (0 restores the default).
uint64_t ImageMemoryBudget();
void SetImageMemoryBudget(uint64_t bytes);
// Runs every decoder in the helper, the program's own and the hardened libraries too
// (also $OSTRIVEX_ISOLATE_DECODERS=1). Off by default.
void SetIsolateAllDecoders(bool isolate);
bool IsolateAllDecoders();

// --- The helper ------------------------------------------------------------------------
// Where the helper program is: $OSTRIVEX_DEVIL_HELPER if set, else "ostrivex-devil" in the
// folder of the running executable. `SetDevilHelperPath` overrides both ("" restores).
std::string DevilHelperPath();
void SetDevilHelperPath(const std::string& path);
// Time limit of one helper run in milliseconds (default 10000). A run past the limit is
// killed and counts as a failed load or save. Raise it for very large pictures.
void SetDevilTimeLimit(int milliseconds);
int DevilTimeLimit();

// --- Dialog filters --------------------------------------------------------------------
// The filter texts in "label|patterns|label|patterns..." form, exactly as the dialogs of
// the program use them.
extern const char* const kOpenFilter;        // File > Open
extern const char* const kLayerOpenFilter;   // Open Image as Layer
extern const char* const kSaveFilter;        // Save as
extern const char* const kLayeredSaveFilter; // Save Layered Image as
inline constexpr const char* kLayerOpenTitle = "Open Image as Layer";
inline constexpr const char* kOpenDefaultPattern = "*.bmp";
inline constexpr const char* kLayerOpenDefaultPattern = "*.jpg";
inline constexpr const char* kSaveAsTitle = "Save as";
inline constexpr const char* kSaveLayeredTitle = "Save Layered Image as";
inline constexpr const char* kSaveLayeredDefaultPattern = "*.olf";
inline constexpr const char* kSaveOptimizedTitle = "Save Optimized as";
// "*.<ext>|*.<ext>": the filter of Save Optimized as for the Optimize box's format.
std::string OptimizedSaveFilter(const std::string& extension);
// The extensions that SAVE writes without asking for a name first.
bool IsQuickSaveExtension(const std::string& extension);

// --- Small helpers ---------------------------------------------------------------------
// ASCII lower case.
std::string LowerExtension(const std::string& extension);
// The extension of a path without the dot, lower-cased ("" if none).
std::string ExtensionOf(const std::string& path);

} // namespace ostrivex
