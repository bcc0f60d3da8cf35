// From a file to a shown document, and from a document back to a file.
//
// `loadBitmap` makes a document from the pixels a load handed back (LoadImageFile, or the
// platform picture loader for gif, wmf, emf, dib and bmp), or hands an "olf" file to the
// layered file reader. The three save families write the Enhanced image, the
// layered file, or the Optimize Box's result, each asking for a name when it has none.
//
// The layered file and the Optimize Box are other parts of the program: they plug in
// through the hooks of DocumentFiles. While a hook is unset its command ends in the
// load or save error message.
#pragma once

#include "imagefile/imagefile.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <optional>

class QWidget;

namespace ostrivex {

class fImage;

struct DocumentFiles {
    // Opens a layered file as a new document (`OpenLayeredFile`); nullptr on failure.
    static std::function<fImage*(const QString& path)> OpenLayeredFile;
    // Writes the document's Layers view and layers to a layered file; true on success.
    static std::function<bool(fImage* document, const QString& path)> SaveLayeredFile;
    // The extension of the Optimize Box's last result ("gif", "jpg"...).
    static std::function<QString()> OptimizedFileExtension;
    // Writes the Optimize Box's last result (`ExtractOptimized`); true on success.
    static std::function<bool(const QString& path)> ExtractOptimized;
};

inline constexpr const char* kAlreadyOpenedText = "File Already Opened!";
inline constexpr const char* kAlreadyOpenedTitle = "Opened";

// `loadBitmap`. With reload false, a file that an open document already holds is refused
// with "File Already Opened!" (title "Opened"). Returns the new document, or nullptr.
// A reload skips that refusal and makes a further document of the file. `loaded` is a load
// of the file made already (the open dialog's preview); without one the file is loaded
// here (LoadImageFile, or LoadPictureFile for the platform's picture extensions).
fImage* loadBitmap(const QString& path, const QString& extension, bool reload,
                   std::optional<ImageFileResult> loaded = std::nullopt);

// The end of File > Open once the dialog closed on path: a name the file system does not
// know loses its last character (a trailing terminator from the dialog), the extension is
// lower-cased, and `loadBitmap` loads the file and makes the document. The Recent entries
// and the Browser Box use it too.
fImage* OpenImageFile(QString path);

// The OPEN command: the open dialog with its preview at `OpenFolder`; on Open, the chosen
// file goes to OpenChosenFile. Cancel does nothing.
fImage* OpenCommand(QWidget* parent);
// The end of OPEN for the chosen path. The dialog's preview has normally loaded that very
// file already (previewPath, its load `preview`); only then are the preview's pixels used
// as they are, otherwise the file is loaded again, so a document is never made from the
// pixels of another file.
fImage* OpenChosenFile(QString path, const QString& previewPath, ImageFileResult preview);

// A blank document of w x h from the new-image dialog: named "New.bmp" (no folder, so
// SAVE asks for a name), captioned from the document counter, filled with `colour`
// (0x00BBGGRR) through cFilter's NewDoc unless `transparent`, saved as undo slot 0 under
// "New Image Document", and put into the MDI area. nullptr for a size below 1.
fImage* NewDocument(int32_t w, int32_t h, bool transparent, uint32_t colour);

// `OpenFolder` after a successful open: the path up to and including its last "/".
QString FolderOf(const QString& path);

// The Save Enhanced family: `SAVE` writes at once when the document has a file name with
// a folder and one of the extensions bmp, gif, jpg, tga, tif, png, pcx; otherwise it runs
// `SAVEAS`, which asks for a name ("Save as"), stores the chosen folder in `SaveFolder`,
// gives the document the name and extension, and writes.
bool SaveEnhanced(fImage* document);
bool SaveEnhancedAs(fImage* document);
// The Save Layered family: `SAVELAYEREDIMAGE` writes at once only for an "olf" document;
// otherwise `SAVELAYEREDIMAGEAS` asks ("Save Layered Image as", default "*.olf").
bool SaveLayered(fImage* document);
bool SaveLayeredAs(fImage* document);
// The Save Optimized family: always asks ("Save Optimized as") with the filter made from
// the Optimize Box's extension, then writes the box's result.
bool SaveOptimized(fImage* document);
bool SaveOptimizedAs(fImage* document);

} // namespace ostrivex
