// The desktop's shared thumbnail cache, as the freedesktop Thumbnail Managing Standard
// lays it out: $XDG_CACHE_HOME/thumbnails (else ~/.cache/thumbnails), a folder per size
// ("normal" 128 pixels, "large" 256), files named by the MD5 of the picture's file URI,
// PNG with the keys Thumb::URI and Thumb::MTime, which say whether an entry is still the
// picture's. Entries written by file managers and other viewers are read as they are;
// ours carry the picture's own size (Thumb::Image::Width, Thumb::Image::Height) as well.
// Files that no loader could read are noted under "fail/ostrivex-<version>", so a second
// visit skips them at once.
//
// Every function may be called from any thread.
#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

#include <cstdint>

namespace ostrivex {

class ThumbnailCache {
  public:
    enum class Size { Normal, Large };

    // An empty root means the default, DefaultRoot().
    explicit ThumbnailCache(const QString& root = QString());
    static QString DefaultRoot();
    const QString& Root() const { return root_; }

    // 128 or 256: the larger side of an entry of that size.
    static int Side(Size size);
    // The smallest size whose entries fill a thumbnail box of w x h.
    static Size SizeFor(int w, int h);

    // "file://" and the absolute path, escaped as GLib escapes it (every byte but letters,
    // digits and !$&'()*+,-./:=@_~ as %XX), so that other programs find the same entry.
    static QByteArray FileUri(const QByteArray& absolutePath);
    // The entry's file name: 32 lower-case hex digits of the URI's MD5, and ".png".
    static QString EntryName(const QByteArray& uri);
    QString EntryPath(Size size, const QByteArray& uri) const;
    QString FailurePath(const QByteArray& uri) const;
    // True for a path inside the cache, whose files are never given thumbnails.
    bool Holds(const QByteArray& absolutePath) const;

    struct Entry {
        QImage picture;
        int width = 0;  // the picture's own size; 0 when the entry does not say
        int height = 0;
    };
    // The entry of the file with this URI and modification time (seconds); false when
    // there is none, it belongs to another URI or an older file, or it cannot be read.
    bool Read(Size size, const QByteArray& uri, int64_t mtime, Entry& out) const;
    // Writes the entry (mode 0600, through a temporary file, so a reader never sees half
    // of one). `fileSize` is the picture file's size in bytes.
    bool Write(Size size, const QByteArray& uri, int64_t mtime, int64_t fileSize,
               const Entry& entry) const;
    bool HasFailure(const QByteArray& uri, int64_t mtime) const;
    bool WriteFailure(const QByteArray& uri, int64_t mtime) const;

  private:
    bool save(const QString& path, const QImage& picture) const;
    QString root_;
};

} // namespace ostrivex
