#include "text/textcontrols.h"

#include "app/settings/settings.h"
#include "document/dialogs.h"
#include "document/fileops.h"
#include "imagefile/imagefile.h"
#include "text/draw/textrecord.h"
#include "text/draw/textstamp.h"

#include <QColorDialog>
#include <QComboBox>
#include <QDir>
#include <QImageReader>
#include <QPainter>
#include <QRegularExpression>

#include <algorithm>
#include <limits>

namespace ostrivex {

namespace {

QColor qcolour(int32_t c) {
    return QColor(c & 0xFF, (c >> 8) & 0xFF, (c >> 16) & 0xFF);
}

QIcon swatch(int32_t colour) {
    QPixmap pm(18, 14);
    pm.fill(qcolour(colour));
    QPainter p(&pm);
    p.setPen(Qt::black);
    p.drawRect(0, 0, pm.width() - 1, pm.height() - 1);
    return QIcon(pm);
}

} // namespace

std::function<bool(QWidget*, int32_t&)> TextDialogHooks::ChooseColour = [](QWidget* parent,
                                                                           int32_t& colour) {
    const QColor c = QColorDialog::getColor(qcolour(colour), parent);
    if (!c.isValid()) return false;
    colour = int32_t(uint32_t(c.red()) | uint32_t(c.green()) << 8 | uint32_t(c.blue()) << 16);
    return true;
};

std::function<QString()> TextDialogHooks::TexturesFolder = [] {
    return QString::fromStdString(AppFolder()) + QStringLiteral("/Textures");
};

ColourWell::ColourWell(int32_t colour, QWidget* parent) : QToolButton(parent) {
    setColour(colour);
    setAutoRaise(false);
    setIconSize(QSize(18, 14));
    connect(this, &QToolButton::clicked, this, &ColourWell::pick);
}

void ColourWell::setColour(int32_t colour) {
    const bool changed = colour != colour_ || icon().isNull();
    colour_ = colour & 0xFFFFFF;
    setIcon(swatch(colour_));
    if (changed) emit colourChanged(colour_);
}

void ColourWell::pick() {
    int32_t c = colour_;
    if (TextDialogHooks::ChooseColour && TextDialogHooks::ChooseColour(this, c)) setColour(c);
}

void mFonts(QComboBox* list, const QString& current, QWidget* messageParent) {
    const QSignalBlocker block(list);
    list->clear();
    const QStringList families = InstalledFontFamilies();
    if (families.isEmpty()) {
        DocumentDialogs::Inform(messageParent, QString::fromLatin1(kFontInfoFailedText),
                                QStringLiteral("Ostrivex"));
        return;
    }
    list->addItems(families);
    int index = current.isEmpty() ? -1 : list->findText(current, Qt::MatchFixedString);
    if (index < 0) index = list->findText(QFont().family(), Qt::MatchFixedString);
    list->setCurrentIndex(std::max(index, 0));
}

QStringList TextureFiles(const QString& folder, const QString& patterns) {
    QStringList filters;
    for (const QString& p : patterns.split(';', Qt::SkipEmptyParts))
        filters << p.trimmed();
    QDir dir(folder);
    if (!dir.exists()) return {};
    QStringList names =
        dir.entryList(filters, QDir::Files | QDir::Readable, QDir::Name | QDir::IgnoreCase);
    return names;
}

Bits ReadTexturePicture(const QString& path) {
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    const QSize size = reader.size();
    if (size.isValid() && (size.width() > 4096 || size.height() > 4096)) return {};
    QImage img = reader.read();
    if (img.isNull() || img.width() > 4096 || img.height() > 4096) return {};
    QImage onWhite(img.size(), QImage::Format_RGB32);
    onWhite.fill(Qt::white);
    {
        QPainter p(&onWhite);
        p.drawImage(0, 0, img);
    }
    Bits b(onWhite.width(), onWhite.height());
    for (int y = 0; y < onWhite.height(); ++y) {
        const auto* s = reinterpret_cast<const QRgb*>(onWhite.constScanLine(y));
        uint8_t* d = b.row(y);
        for (int x = 0; x < onWhite.width(); ++x, d += 4) {
            d[0] = uint8_t(qBlue(s[x]));
            d[1] = uint8_t(qGreen(s[x]));
            d[2] = uint8_t(qRed(s[x]));
        }
    }
    return b;
}

QImage BitsImage(const Bits& bits) {
    QImage img(std::max(bits.width(), 1), std::max(bits.height(), 1), QImage::Format_RGB32);
    img.fill(Qt::white);
    for (int y = 0; y < bits.height(); ++y) {
        auto* d = reinterpret_cast<QRgb*>(img.scanLine(y));
        const uint8_t* s = bits.row(y);
        for (int x = 0; x < bits.width(); ++x, s += 4)
            d[x] = qRgb(s[2], s[1], s[0]);
    }
    return img;
}

bool SaveTextPictureAs(QWidget* parent, const Bits& picture, const QString& title) {
    const QString folder = QString::fromStdString(FieldText(Settings.SaveFolder));
    QString name = DocumentDialogs::AskSaveName(parent, title, folder,
                                                QString::fromLatin1(kSaveFilter), QString());
    if (name.isEmpty()) return false; // cancelled
    std::string ext = ExtensionOf(name.toStdString());
    if (ext.empty()) { // a name typed without one is saved as a bitmap
        name += QStringLiteral(".bmp");
        ext = "bmp";
    }
    SetFieldText(Settings.SaveFolder, FolderOf(name).toStdString());
    const ImageFileResult r = SaveImageFile(picture, name.toStdString(), ext);
    if (!r.ok) {
        DocumentDialogs::Inform(parent, QString::fromStdString(r.message),
                                QString::fromLatin1(kImageFileMessageTitle));
        return false;
    }
    return true;
}

int FieldNumber(const QString& text, int fallback) {
    int64_t v = 0;
    return ParseWholeNumber(text, std::numeric_limits<int32_t>::min(),
                            std::numeric_limits<int32_t>::max(), v)
               ? int(v)
               : fallback;
}

} // namespace ostrivex
