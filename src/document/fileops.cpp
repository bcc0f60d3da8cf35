#include "document/fileops.h"

#include "app/settings/settings.h"
#include "document/dialogs.h"
#include "document/fimage.h"
#include "document/host.h"
#include "imagefile/imagefile.h"
#include "imagefile/openDialog.h"
#include "pixel/bitfilter.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <exception>

namespace ostrivex {

std::function<fImage*(const QString&)> DocumentFiles::OpenLayeredFile;
std::function<bool(fImage*, const QString&)> DocumentFiles::SaveLayeredFile;
std::function<QString()> DocumentFiles::OptimizedFileExtension;
std::function<bool(const QString&)> DocumentFiles::ExtractOptimized;

namespace {

QWidget* dialogParent() {
    DocumentHost* h = GetDocumentHost();
    return h ? h->DialogParent() : nullptr;
}

fImage* loadFailed() {
    DocumentDialogs::Inform(dialogParent(), kLoadErrorText, kImageFileMessageTitle);
    return nullptr;
}

bool saveFailed() {
    DocumentDialogs::Inform(dialogParent(), kSaveErrorText, kImageFileMessageTitle);
    return false;
}

QString lowerExtension(const QString& path) {
    return QString::fromStdString(ExtensionOf(path.toStdString()));
}

// A document made by File > New carries the bare name "New.bmp": it has no file yet.
bool hasFile(const fImage* doc) { return doc->Model().File.FileName.contains('/'); }

QString saveFolder() { return QString::fromStdString(FieldText(Settings.SaveFolder)); }

} // namespace

QString FolderOf(const QString& path) {
    const qsizetype slash = path.lastIndexOf('/');
    return slash < 0 ? QString() : path.left(slash + 1);
}

fImage* loadBitmap(const QString& path, const QString& extension, bool reload,
                   std::optional<ImageFileResult> loaded) {
    DocumentHost* host = GetDocumentHost();
    if (!reload && host) {
        // Compared as absolute, cleaned paths: "./a.png" and "/home/u/a.png" are one file.
        const QString wanted = QFileInfo(path).absoluteFilePath();
        for (fImage* doc : host->Documents())
            if (doc && !doc->Model().File.FileName.isEmpty() &&
                QFileInfo(doc->Model().File.FileName).absoluteFilePath() == wanted) {
                DocumentDialogs::Inform(dialogParent(), kAlreadyOpenedText, kAlreadyOpenedTitle);
                return nullptr;
            }
    }
    const QString ext = extension.toLower();
    if (ext == "olf") {
        fImage* doc = DocumentFiles::OpenLayeredFile ? DocumentFiles::OpenLayeredFile(path) : nullptr;
        if (!doc) return loadFailed();
        // Layered files join the recent list too (its entries test for "olf").
        AddRecentFile(path.toStdString());
        if (host) host->FillRecent();
        SetFieldText(Settings.OpenFolder, FolderOf(path).toStdString());
        return doc;
    }
    if (!loaded) {
        const std::string file = path.toStdString(), type = ext.toStdString();
        loaded = IsPictureExtension(type) ? LoadPictureFile(file, type) : LoadImageFile(file, type);
    }
    Bits& pixels = loaded->pixels;
    if (!loaded->ok || pixels.empty() || pixels.width() < 1 || pixels.height() < 1)
        return loadFailed();

    // Any failure while the document is made (a buffer too large to allocate) ends in the
    // load error, with no document left behind.
    fImage* doc = nullptr;
    try {
        doc = new fImage;
        doc->BeginDocument(path);
        doc->Model().File.FileName = path;
        doc->Model().File.FileExtension = ext;
        // The state shown at open is the first undo level.
        doc->Model().Start(std::move(pixels), QStringLiteral("Original"));
    } catch (const std::exception&) {
        delete doc;
        return loadFailed();
    }
    if (host) host->AddDocumentWindow(doc);

    // The Optimize Box previews the current image from its BMP work file.
    SaveImageFile(doc->bits(), TempBitmapName(), "bmp");
    if (host) host->ReloadOptimizePreview();

    AddRecentFile(path.toStdString());
    if (host) host->FillRecent();
    SetFieldText(Settings.OpenFolder, FolderOf(path).toStdString());
    return doc;
}

fImage* OpenCommand(QWidget* parent) {
    OpenImageDialog dialog(OpenImageDialog::Kind::Open,
                           QString::fromStdString(FieldText(Settings.OpenFolder)), parent);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return nullptr;
    QCoreApplication::processEvents();
    return OpenChosenFile(dialog.selectedFiles().first(), dialog.previewPath(),
                          std::move(dialog.loaded));
}

fImage* OpenChosenFile(QString path, const QString& previewPath, ImageFileResult preview) {
    if (!path.isEmpty() && !FileExists(path.toStdString())) path.chop(1);
    const QString ext = lowerExtension(path);
    if (preview.ok && previewPath == path && ext != "olf" && !IsPictureExtension(ext.toStdString()))
        return loadBitmap(path, ext, false, std::move(preview));
    return OpenImageFile(path);
}

fImage* NewDocument(int32_t w, int32_t h, bool transparent, uint32_t colour) {
    if (w < 1 || h < 1) return nullptr;
    DocumentHost* host = GetDocumentHost();
    auto* doc = new fImage;
    doc->BeginDocument(QString());
    doc->Model().File.FileName = QStringLiteral("New.bmp");
    doc->Model().File.FileExtension = QStringLiteral("bmp");
    Bits pixels(w, h);
    if (host) {
        host->ActionLabel = QStringLiteral("New Image Document");
        if (!transparent) {
            // cFilter's NewDoc fills the whole new image with the colour.
            cBitFilter& filter = host->Filter();
            const Region all = Region::rect(0, 0, w, h);
            filter.SetBits(std::move(pixels));
            filter.BitsRegion(&all);
            pixels = filter.NewDoc(uint8_t(colour), uint8_t(colour >> 8), uint8_t(colour >> 16));
            filter.BitsRegion(nullptr);
        }
    }
    doc->Model().Start(std::move(pixels), QStringLiteral("New Image Document"));
    if (host) {
        host->Filter().SetBits(doc->bits());
        doc->GiveFilterRegion(true);
        host->AddDocumentWindow(doc);
    }
    return doc;
}

fImage* OpenImageFile(QString path) {
    if (!path.isEmpty() && !FileExists(path.toStdString())) path.chop(1);
    return loadBitmap(path, lowerExtension(path), false);
}

bool SaveEnhanced(fImage* document) {
    if (!document || !document->PictureExists()) return false;
    const QString ext = document->Model().File.FileExtension.toLower();
    if (hasFile(document) && IsQuickSaveExtension(ext.toStdString()))
        return document->save(document->Model().File.FileName, ext);
    return SaveEnhancedAs(document);
}

bool SaveEnhancedAs(fImage* document) {
    if (!document || !document->PictureExists()) return false;
    const QString name = DocumentDialogs::AskSaveName(dialogParent(), kSaveAsTitle, saveFolder(),
                                                      kSaveFilter, document->Model().File.FileName);
    if (name.isEmpty()) return false; // cancelled
    SetFieldText(Settings.SaveFolder, FolderOf(name).toStdString());
    FileInfo& file = document->Model().File;
    file.FileName = name;
    file.FileExtension = lowerExtension(name);
    document->SetCaption(name);
    return document->save(name, file.FileExtension);
}

bool SaveLayered(fImage* document) {
    if (!document) return false;
    if (hasFile(document) && document->Model().File.FileExtension.toLower() == "olf")
        return DocumentFiles::SaveLayeredFile ? DocumentFiles::SaveLayeredFile(document, document->Model().File.FileName)
                                              : saveFailed();
    return SaveLayeredAs(document);
}

bool SaveLayeredAs(fImage* document) {
    if (!document) return false;
    const QString name = DocumentDialogs::AskSaveName(dialogParent(), kSaveLayeredTitle, saveFolder(),
                                                      kLayeredSaveFilter, kSaveLayeredDefaultPattern);
    if (name.isEmpty()) return false;
    SetFieldText(Settings.SaveFolder, FolderOf(name).toStdString());
    if (!DocumentFiles::SaveLayeredFile) return saveFailed();
    return DocumentFiles::SaveLayeredFile(document, name);
}

// The Optimize Box's result has no file name of its own, so its save always asks.
bool SaveOptimized(fImage* document) { return SaveOptimizedAs(document); }

bool SaveOptimizedAs(fImage* document) {
    if (!document) return false;
    if (!DocumentFiles::OptimizedFileExtension || !DocumentFiles::ExtractOptimized)
        return saveFailed();
    const QString ext = DocumentFiles::OptimizedFileExtension();
    if (ext.isEmpty()) return false; // nothing optimized yet
    const QString filter = QString::fromStdString(OptimizedSaveFilter(ext.toStdString()));
    const QString name =
        DocumentDialogs::AskSaveName(dialogParent(), kSaveOptimizedTitle, saveFolder(), filter, QString());
    if (name.isEmpty()) return false;
    SetFieldText(Settings.SaveFolder, FolderOf(name).toStdString());
    return DocumentFiles::ExtractOptimized(name) ? true : saveFailed();
}

} // namespace ostrivex
