#include "utilities/browser/thumbcache.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>
#include <QSaveFile>

#include <cstdlib>
#include <cstring>

namespace ostrivex {

namespace {

// The largest entry read from the cache: the standard's biggest size is 1024.
constexpr int kMaxEntrySide = 1024;

const char* folderOf(ThumbnailCache::Size size) {
    return size == ThumbnailCache::Size::Large ? "large" : "normal";
}

QString failFolder() {
    return QStringLiteral("fail/ostrivex-" OSTRIVEX_VERSION);
}

// A whole number written in a key, or -1.
int64_t keyNumber(const QString& text) {
    bool ok = false;
    const qlonglong v = text.trimmed().toLongLong(&ok);
    if (ok) return v;
    // Some programs have written the time with a fraction.
    const double d = text.trimmed().toDouble(&ok);
    return ok && d >= 0 ? int64_t(d) : -1;
}

bool makeFolder(const QString& path) {
    if (QFileInfo(path).isDir()) return true;
    if (!QDir().mkpath(path)) return false;
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return true;
}

} // namespace

ThumbnailCache::ThumbnailCache(const QString& root) : root_(root.isEmpty() ? DefaultRoot() : root) {}

QString ThumbnailCache::DefaultRoot() {
    const QByteArray cache = qgetenv("XDG_CACHE_HOME");
    if (!cache.isEmpty() && cache.startsWith('/')) return QFile::decodeName(cache) + "/thumbnails";
    return QDir::homePath() + "/.cache/thumbnails";
}

int ThumbnailCache::Side(Size size) {
    return size == Size::Large ? 256 : 128;
}

ThumbnailCache::Size ThumbnailCache::SizeFor(int w, int h) {
    return w <= 128 && h <= 128 ? Size::Normal : Size::Large;
}

QByteArray ThumbnailCache::FileUri(const QByteArray& absolutePath) {
    static const char hex[] = "0123456789ABCDEF";
    QByteArray uri("file://");
    uri.reserve(absolutePath.size() * 3 / 2 + 8);
    for (const char ch : absolutePath) {
        const auto c = static_cast<unsigned char>(ch);
        const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                           (c >= '0' && c <= '9') || std::strchr("!$&'()*+,-./:=@_~", c) != nullptr;
        if (plain && c != 0) {
            uri += char(c);
        } else {
            uri += '%';
            uri += hex[c >> 4];
            uri += hex[c & 15];
        }
    }
    return uri;
}

QString ThumbnailCache::EntryName(const QByteArray& uri) {
    return QString::fromLatin1(QCryptographicHash::hash(uri, QCryptographicHash::Md5).toHex()) +
           QStringLiteral(".png");
}

QString ThumbnailCache::EntryPath(Size size, const QByteArray& uri) const {
    return root_ + '/' + folderOf(size) + '/' + EntryName(uri);
}

QString ThumbnailCache::FailurePath(const QByteArray& uri) const {
    return root_ + '/' + failFolder() + '/' + EntryName(uri);
}

bool ThumbnailCache::Holds(const QByteArray& absolutePath) const {
    const QByteArray root = QFile::encodeName(root_) + '/';
    return absolutePath.startsWith(root);
}

bool ThumbnailCache::Read(Size size, const QByteArray& uri, int64_t mtime, Entry& out) const {
    out = Entry();
    QImageReader reader(EntryPath(size, uri), "png");
    reader.setDecideFormatFromContent(false);
    const QSize s = reader.size();
    if (!s.isValid() || s.width() > kMaxEntrySide || s.height() > kMaxEntrySide) return false;
    // The keys are taken from the picture read: the reader's own text lookup splits keys at
    // their first colon, and every key here has two.
    QImage picture;
    if (!reader.read(&picture) || picture.isNull()) return false;
    if (picture.text(QStringLiteral("Thumb::URI")).toUtf8() != uri) return false;
    if (keyNumber(picture.text(QStringLiteral("Thumb::MTime"))) != mtime) return false;
    const int64_t w = keyNumber(picture.text(QStringLiteral("Thumb::Image::Width")));
    const int64_t h = keyNumber(picture.text(QStringLiteral("Thumb::Image::Height")));
    out.picture = std::move(picture);
    if (w > 0 && h > 0 && w <= INT32_MAX && h <= INT32_MAX) {
        out.width = int(w);
        out.height = int(h);
    }
    return true;
}

bool ThumbnailCache::save(const QString& path, const QImage& picture) const {
    if (!makeFolder(QFileInfo(path).path())) return false;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) return false;
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    QImageWriter writer(&file, "png");
    if (!writer.write(picture)) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}

bool ThumbnailCache::Write(Size size, const QByteArray& uri, int64_t mtime, int64_t fileSize,
                           const Entry& entry) const {
    if (entry.picture.isNull()) return false;
    QImage picture = entry.picture;
    picture.setText(QStringLiteral("Thumb::URI"), QString::fromUtf8(uri));
    picture.setText(QStringLiteral("Thumb::MTime"), QString::number(mtime));
    picture.setText(QStringLiteral("Thumb::Size"), QString::number(fileSize));
    if (entry.width > 0 && entry.height > 0) {
        picture.setText(QStringLiteral("Thumb::Image::Width"), QString::number(entry.width));
        picture.setText(QStringLiteral("Thumb::Image::Height"), QString::number(entry.height));
    }
    picture.setText(QStringLiteral("Software"), QStringLiteral("Ostrivex"));
    return save(EntryPath(size, uri), picture);
}

bool ThumbnailCache::HasFailure(const QByteArray& uri, int64_t mtime) const {
    QImageReader reader(FailurePath(uri), "png");
    reader.setDecideFormatFromContent(false);
    const QSize s = reader.size();
    QImage mark;
    if (!s.isValid() || s.width() > kMaxEntrySide || s.height() > kMaxEntrySide ||
        !reader.read(&mark))
        return false;
    return mark.text(QStringLiteral("Thumb::URI")).toUtf8() == uri &&
           keyNumber(mark.text(QStringLiteral("Thumb::MTime"))) == mtime;
}

bool ThumbnailCache::WriteFailure(const QByteArray& uri, int64_t mtime) const {
    QImage mark(1, 1, QImage::Format_ARGB32);
    mark.fill(Qt::transparent);
    mark.setText(QStringLiteral("Thumb::URI"), QString::fromUtf8(uri));
    mark.setText(QStringLiteral("Thumb::MTime"), QString::number(mtime));
    mark.setText(QStringLiteral("Software"), QStringLiteral("Ostrivex"));
    return save(FailurePath(uri), mark);
}

} // namespace ostrivex
