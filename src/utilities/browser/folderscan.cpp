#include "utilities/browser/folderscan.h"

#include <QFile>

#include <algorithm>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace ostrivex {

namespace {

QDateTime fromStatx(const statx_timestamp& t) {
    return QDateTime::fromMSecsSinceEpoch(int64_t(t.tv_sec) * 1000 + t.tv_nsec / 1000000);
}

} // namespace

const QStringList& BrowserFormats() {
    static const QStringList formats{
        "bmp", "bw",  "cur",  "cut",  "dcx", "dds", "dib", "emf",   "gif", "icb", "iff",
        "jng", "jpeg", "jpg", "koa",  "lbm", "lif", "lmp", "mdl",   "mng", "pbm", "pcd",
        "pcx", "pdd", "pgm",  "pic",  "pix", "png", "pnm", "ppm",   "psd", "psp", "pxr",
        "ras", "raw", "rgb",  "rgba", "rle", "olf", "sgi", "targa", "tga", "tif", "tiff",
        "vda", "vst", "wal",  "wbmp", "wmf", "xpm"};
    return formats;
}

bool IsBrowserImage(const QString& lowerExtension) {
    return !lowerExtension.isEmpty() && BrowserFormats().contains(lowerExtension);
}

QString AttributeCode(bool readOnly, bool hidden, bool system, bool archive) {
    if (!readOnly && !hidden && !system) return archive ? QStringLiteral("F,N,A") : QStringLiteral("F,N");
    QString code = QStringLiteral("F");
    if (archive) code += QStringLiteral(",A");
    if (readOnly) code += QStringLiteral(",R");
    if (hidden) code += QStringLiteral(",H");
    if (system) code += QStringLiteral(",S");
    return code;
}

QString SizeText(int64_t bytes) {
    const int64_t kb = bytes <= 0 ? 0 : (bytes + 1023) / 1024;
    return QString::number(kb) + QStringLiteral(" KB");
}

bool NameLess(const FileEntry& a, const FileEntry& b) {
    const int c = a.name.compare(b.name, Qt::CaseInsensitive);
    return c != 0 ? c < 0 : a.path < b.path;
}

bool ScanFolder(const QByteArray& folder, const std::function<bool()>& cancelled,
                const std::function<void(std::vector<FileEntry>&&)>& batch, int batchSize) {
    DIR* dir = opendir(folder.constData());
    if (!dir) return false;
    const int dirFd = dirfd(dir);
    QByteArray base = folder;
    if (!base.endsWith('/')) base += '/';
    const QString location = QFile::decodeName(folder);
    std::vector<FileEntry> pending;
    pending.reserve(size_t(std::max(1, batchSize)));
    while (dirent* d = readdir(dir)) {
        if (cancelled && cancelled()) break;
        // Folders, devices and the like are known from the entry without a look at the file.
        if (d->d_type != DT_REG && d->d_type != DT_LNK && d->d_type != DT_UNKNOWN) continue;
        const char* name = d->d_name;
        struct statx st {};
        // Through a link to what it names; a broken link fails here and is left out.
        if (statx(dirFd, name, AT_STATX_SYNC_AS_STAT,
                  STATX_TYPE | STATX_MODE | STATX_SIZE | STATX_MTIME | STATX_ATIME | STATX_BTIME,
                  &st) != 0)
            continue;
        if (!S_ISREG(st.stx_mode)) continue;
        FileEntry e;
        e.path = base + name;
        e.name = QFile::decodeName(name);
        e.folder = location;
        const char* dot = std::strrchr(name, '.');
        if (dot && dot != name && dot[1]) e.extension = QFile::decodeName(dot + 1).toLower();
        e.size = int64_t(st.stx_size);
        e.mtime = int64_t(st.stx_mtime.tv_sec);
        e.created = (st.stx_mask & STATX_BTIME) ? fromStatx(st.stx_btime) : fromStatx(st.stx_mtime);
        e.accessed = fromStatx(st.stx_atime);
        e.readOnly = (st.stx_mode & S_IWUSR) == 0;
        e.hidden = name[0] == '.';
        e.image = IsBrowserImage(e.extension);
        pending.push_back(std::move(e));
        if (int(pending.size()) >= batchSize) {
            batch(std::move(pending));
            pending.clear();
        }
    }
    closedir(dir);
    if (!pending.empty()) batch(std::move(pending));
    return true;
}

} // namespace ostrivex
