// The file dialog of File > Open and of Open Image as Layer: a Qt file dialog (not the
// desktop's, which offers no preview) with a preview pane. A change of the selected file
// loads it at once (`LoadImageFile`, or `LoadPictureFile` for gif, wmf, emf and dib) and
// shows it with its size, so the pixels are at hand when the user presses Open.
#pragma once

#include "imagefile/imagefile.h"

#include <QFileDialog>

#include <string>

class QLabel;

namespace ostrivex {

// "label|patterns|label|patterns..." as Qt name filters. Each label keeps its text, its
// patterns (split at ';', kept as they stand otherwise, so "*.rgb,*.rgba" stays one
// pattern that matches nothing) are given letter by letter in both cases, since file names
// are case-sensitive here and ".JPG" files must show.
QStringList NameFilters(const std::string& filterText);

class OpenImageDialog : public QFileDialog {
    Q_OBJECT
  public:
    enum class Kind { Open, Layer };
    // `startFolder` is the folder to show first (the caller's OpenFolder).
    OpenImageDialog(Kind kind, const QString& startFolder, QWidget* parent = nullptr);

    // The file that the preview last loaded, and whether that load succeeded: the caller
    // uses the preview's pixels only if this is the chosen file, else loads again.
    const QString& previewPath() const { return previewPath_; }
    bool previewLoaded() const { return previewLoaded_; }
    // The preview's load, pixels and all.
    ImageFileResult loaded;

    // The preview pane and its caption ("<w> x <h>, <n> KB").
    QLabel* preview() const { return preview_; }
    QLabel* previewCaption() const { return caption_; }

    // Runs the preview for `path` as a change of selection does.
    void ShowPreview(const QString& path);

  private:
    QLabel* preview_ = nullptr;
    QLabel* caption_ = nullptr;
    QString previewPath_;
    bool previewLoaded_ = false;
};

} // namespace ostrivex
