// The open dialogs with their preview.
#include "imagefile/openDialog.h"
#include "imagefile/imagefile.h"
#include "imagefile/imageproperties.h"

#include <QFileInfo>
#include <QGridLayout>
#include <QImage>
#include <QLabel>
#include <QPixmap>
#include <QVBoxLayout>

namespace ostrivex {

namespace {

// "*.jpg" -> "*.[jJ][pP][gG]".
QString bothCases(const QString& pattern) {
    QString out;
    for (QChar c : pattern) {
        if (c.isLetter() && c.toLower() != c.toUpper())
            out += QString("[%1%2]").arg(c.toLower()).arg(c.toUpper());
        else
            out += c;
    }
    return out;
}

constexpr int kPreviewSide = 200;

// The preview picture: the loaded pixels scaled into the pane, ratio kept.
QPixmap previewPixmap(const Bits& bits) {
    QImage img(bits.width(), bits.height(), QImage::Format_RGB32);
    for (int y = 0; y < bits.height(); ++y) {
        const uint8_t* src = bits.row(y);
        QRgb* dst = reinterpret_cast<QRgb*>(img.scanLine(y));
        for (int x = 0; x < bits.width(); ++x, src += 4)
            dst[x] = qRgb(src[2], src[1], src[0]);
    }
    if (img.width() > kPreviewSide || img.height() > kPreviewSide)
        img = img.scaled(kPreviewSide, kPreviewSide, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return QPixmap::fromImage(img);
}

} // namespace

QStringList NameFilters(const std::string& filterText) {
    const QStringList parts = QString::fromStdString(filterText).split('|');
    QStringList filters;
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        QStringList patterns;
        for (const QString& p : parts[i + 1].split(';', Qt::SkipEmptyParts)) {
            const QString trimmed = p.trimmed();
            if (!trimmed.isEmpty()) patterns << bothCases(trimmed);
        }
        filters << QString("%1 (%2)").arg(parts[i].trimmed(), patterns.join(' '));
    }
    return filters;
}

OpenImageDialog::OpenImageDialog(Kind kind, const QString& startFolder, QWidget* parent)
    : QFileDialog(parent) {
    // The desktop's own dialog has no room for the preview.
    setOption(QFileDialog::DontUseNativeDialog, true);
    // The labels name their patterns already; the case-doubled patterns stay out of sight.
    setOption(QFileDialog::HideNameFilterDetails, true);
    setFileMode(QFileDialog::ExistingFile);
    setAcceptMode(QFileDialog::AcceptOpen);
    // The program gives File > Open no title of its own; "Open" names the command.
    setWindowTitle(kind == Kind::Layer ? kLayerOpenTitle : "Open");
    setLabelText(QFileDialog::Accept, "Open");
    setLabelText(QFileDialog::Reject, "Cancel");
    setNameFilters(NameFilters(kind == Kind::Layer ? kLayerOpenFilter : kOpenFilter));
    if (!startFolder.isEmpty()) setDirectory(startFolder);
    // The default name in the name field: "*.bmp" for Open, "*.jpg" for a layer.
    selectFile(kind == Kind::Layer ? kLayerOpenDefaultPattern : kOpenDefaultPattern);

    preview_ = new QLabel(this);
    preview_->setObjectName("preview");
    preview_->setFixedSize(kPreviewSide, kPreviewSide);
    preview_->setAlignment(Qt::AlignCenter);
    preview_->setFrameShape(QFrame::StyledPanel);
    caption_ = new QLabel(this);
    caption_->setObjectName("previewCaption");
    caption_->setAlignment(Qt::AlignCenter);
    auto* pane = new QVBoxLayout;
    pane->addWidget(preview_);
    pane->addWidget(caption_);
    pane->addStretch();
    if (auto* grid = qobject_cast<QGridLayout*>(layout()))
        grid->addLayout(pane, 0, grid->columnCount(), grid->rowCount(), 1);

    connect(this, &QFileDialog::currentChanged, this, &OpenImageDialog::ShowPreview);
}

void OpenImageDialog::ShowPreview(const QString& path) {
    preview_->clear();
    caption_->clear();
    previewPath_ = path;
    previewLoaded_ = false;
    loaded = ImageFileResult();
    const QFileInfo info(path);
    if (!info.isFile()) return;
    const std::string file = path.toStdString();
    const std::string ext = ExtensionOf(file);
    // A layered file is read by the layer code when it is opened; it shows no preview.
    if (ext == "olf") {
        caption_->setText(QString::fromStdString(SizeText(uint64_t(info.size()))));
        return;
    }
    loaded = LoadDocumentImage(file, ext);
    if (!loaded.ok) return;
    previewLoaded_ = true;
    preview_->setPixmap(previewPixmap(loaded.pixels));
    caption_->setText(QString("%1 x %2, %3")
                          .arg(loaded.pixels.width())
                          .arg(loaded.pixels.height())
                          .arg(QString::fromStdString(SizeText(uint64_t(info.size())))));
}

} // namespace ostrivex
