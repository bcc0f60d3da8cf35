#include "app/textures/ftooltextures.h"

#include "app/colour/pickcolour.h"
#include "app/panels/picturebits.h"
#include "app/settings/settings.h"
#include "app/toolpanels.h"
#include "document/dialogs.h"
#include "document/host.h"

#include <QDir>
#include <QFileInfo>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QLabel>
#include <QListWidget>
#include <QPainter>
#include <QSignalBlocker>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace ostrivex {

namespace {

constexpr int kThumb = 36;

// A thumbnail: a small texture is shown tiled (as it paints), a large one scaled down.
QIcon thumbnail(const QImage& picture) {
    QPixmap pm(kThumb, kThumb);
    QPainter p(&pm);
    if (picture.width() <= kThumb / 2 && picture.height() <= kThumb / 2)
        p.fillRect(pm.rect(), QBrush(picture));
    else
        p.drawImage(pm.rect(), picture.scaled(kThumb, kThumb, Qt::KeepAspectRatioByExpanding,
                                              Qt::SmoothTransformation));
    p.setPen(QColor(0, 0, 0, 90));
    p.drawRect(pm.rect().adjusted(0, 0, -1, -1));
    p.end();
    return QIcon(pm);
}

} // namespace

std::function<QString(QWidget*)> fToolTextures::AskText = [](QWidget* parent) {
    return QInputDialog::getText(parent, "Text Texture", "Text:");
};

QImage TextTexture(const QString& text, int32_t ink, int32_t paper) {
    if (text.isEmpty()) return {};
    QFont font;
    font.setPixelSize(20);
    font.setBold(true);
    // Grey edges only, so that every pixel lies between the two colours.
    font.setStyleStrategy(QFont::NoSubpixelAntialias);
    const QFontMetrics metrics(font);
    constexpr int kMargin = 6;
    const int w = std::max(1, metrics.horizontalAdvance(text)) + 2 * kMargin;
    const int h = metrics.height() + 2 * kMargin;
    QImage img(std::min(w, 1024), h, QImage::Format_RGB32);
    img.fill(QColor::fromRgb(BgrToQRgb(paper)));
    QPainter p(&img);
    p.setFont(font);
    p.setPen(QColor::fromRgb(BgrToQRgb(ink)));
    p.drawText(kMargin, kMargin + metrics.ascent(), text);
    p.end();
    return img;
}

fToolTextures::fToolTextures(DocumentHost& host, QWidget* parent) : QWidget(parent), host_(host) {
    setObjectName("fToolTextures");
    list_ = new QListWidget(this);
    list_->setObjectName("lstTextures");
    list_->setViewMode(QListView::IconMode);
    list_->setIconSize(QSize(kThumb, kThumb));
    list_->setGridSize(QSize(kThumb + 6, kThumb + 6));
    list_->setMovement(QListView::Static);
    list_->setResizeMode(QListView::Adjust);
    list_->setUniformItemSizes(true);
    list_->setSpacing(0);

    add_ = new QToolButton(this);
    add_->setObjectName("cmdAddTexture");
    add_->setText("Add...");
    add_->setToolTip("Add a texture from a picture file");
    text_ = new QToolButton(this);
    text_->setObjectName("cmdTextTexture");
    text_->setText("Text...");
    text_->setToolTip("Make a texture from a line of text");
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(text_);
    row->addWidget(add_);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(4, 4, 4, 4);
    all->setSpacing(3);
    all->addWidget(list_, 1);
    all->addLayout(row);

    connect(list_, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { ChooseTexture(list_->row(item)); });
    connect(add_, &QToolButton::clicked, this, &fToolTextures::askForFile);
    connect(text_, &QToolButton::clicked, this, [this] { AddTextTexture(AskText(window())); });
}

void fToolTextures::FillTextures(const QString& folder) {
    const QSignalBlocker block(list_);
    list_->clear();
    current_ = -1;
    for (const QString& name : PatternFiles(folder, kTexturePattern)) {
        const QString path = QDir(folder).filePath(name);
        const QImage picture = ReadSmallPicture(path);
        if (picture.isNull()) continue;
        auto* item = new QListWidgetItem(thumbnail(picture), QString(), list_);
        item->setToolTip(QFileInfo(name).completeBaseName());
        item->setData(Qt::UserRole, path);
    }
    if (list_->count() > 0) ChooseTexture(0);
}

bool fToolTextures::ChooseTexture(int row) {
    QListWidgetItem* item = list_->item(row);
    if (!item) return false;
    const QString path = item->data(Qt::UserRole).toString();
    const QImage picture =
        path.isEmpty() ? item->data(Qt::UserRole + 1).value<QImage>() : ReadSmallPicture(path);
    if (picture.isNull()) {
        // Back to the texture that is still current.
        const QSignalBlocker block(list_);
        list_->setCurrentRow(current_);
        return false;
    }
    host_.TextureBits = ImageToBits(picture);
    current_ = row;
    const QSignalBlocker block(list_);
    list_->setCurrentRow(row);
    return true;
}

bool fToolTextures::AddTextureFile(const QString& path) {
    const QImage picture = ReadSmallPicture(path);
    if (picture.isNull()) return false;
    addImage(picture, QFileInfo(path).completeBaseName(), path);
    return true;
}

bool fToolTextures::AddTextTexture(const QString& text) {
    const QImage picture = TextTexture(text, Settings.ColorPrimary, Settings.ColorSecondary);
    if (picture.isNull()) return false;
    addImage(picture, text, QString());
    return true;
}

// A new last item, made current at once. A texture with no file keeps its picture in the
// item.
void fToolTextures::addImage(const QImage& picture, const QString& tip, const QString& path) {
    auto* item = new QListWidgetItem(thumbnail(picture), QString(), list_);
    item->setToolTip(tip);
    item->setData(Qt::UserRole, path);
    if (path.isEmpty()) item->setData(Qt::UserRole + 1, picture);
    host_.TextureBits = ImageToBits(picture);
    current_ = list_->count() - 1;
    const QSignalBlocker block(list_);
    list_->setCurrentRow(current_);
}

QString fToolTextures::CurrentTextureFile() const {
    QListWidgetItem* item = list_->item(current_);
    return item ? item->data(Qt::UserRole).toString() : QString();
}

void fToolTextures::askForFile() {
    const QString path = DocumentDialogs::AskOpenName(
        window(), "Add Texture", QString::fromLocal8Bit(AppFolder().c_str()) + "/Textures",
        "Pictures|*.bmp;*.png;*.jpg;*.jpeg;*.gif");
    if (path.isEmpty()) return;
    if (!AddTextureFile(path))
        DocumentDialogs::Inform(window(), "Unexpected error loading image", "Ostrivex");
}

} // namespace ostrivex
