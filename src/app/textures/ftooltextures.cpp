#include "app/textures/ftooltextures.h"

#include "app/panels/picturebits.h"
#include "app/settings/settings.h"
#include "app/toolpanels.h"
#include "document/dialogs.h"
#include "document/host.h"

#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPainter>
#include <QSignalBlocker>
#include <QToolButton>
#include <QVBoxLayout>

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
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(add_);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(4, 4, 4, 4);
    all->setSpacing(3);
    all->addWidget(list_, 1);
    all->addLayout(row);

    connect(list_, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { ChooseTexture(list_->row(item)); });
    connect(add_, &QToolButton::clicked, this, &fToolTextures::askForFile);
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
    const QImage picture = ReadSmallPicture(item->data(Qt::UserRole).toString());
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
    auto* item = new QListWidgetItem(thumbnail(picture), QString(), list_);
    item->setToolTip(QFileInfo(path).completeBaseName());
    item->setData(Qt::UserRole, path);
    return ChooseTexture(list_->count() - 1);
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
