// The files of a folder as the Browser Box lists them: names as the file system has them
// (bytes, so a name that is not valid UTF-8 can still be opened by the helper), sizes,
// dates and the short attribute codes of the details list. No widgets.
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>
#include <vector>

namespace ostrivex {

struct FileEntry {
    QByteArray path;    // folder + "/" + name, bytes as the file system has them
    QString name;       // the name for display (not valid UTF-8: shown with replacements)
    QString folder;     // for the "Location" column
    QString extension;  // lower case, without the dot ("" when none)
    int64_t size = 0;   // bytes
    int64_t mtime = 0;  // seconds, the thumbnail cache's key
    QDateTime created;  // birth time where the file system keeps one, else modification
    QDateTime accessed;
    bool readOnly = false; // the owner may not write
    bool hidden = false;   // a leading dot
    bool image = false;    // the extension is one of BrowserFormats()
};

// `lFormat`: the extensions that count as pictures, in their listed order.
const QStringList& BrowserFormats();
bool IsBrowserImage(const QString& lowerExtension);

// The "Attributes" code of a file: F for file, then N for none, A archive, R read-only,
// H hidden, S system, in the order of the codes the details list knows ("F,N", "F,R",
// "F,A,R,H,S", ...). Linux files carry no archive or system flag.
QString AttributeCode(bool readOnly, bool hidden, bool system, bool archive);
// "Size (KB)": whole kilobytes, a part rounded up, and " KB" ("0 KB" for an empty file).
QString SizeText(int64_t bytes);

// Reads `folder` (bytes) and hands its files over in batches of `batchSize`, in the order
// the file system gives them. Only regular files count, reached directly or through a link:
// folders, broken links, FIFOs, devices and sockets are left out (a FIFO named like a
// picture would block whoever opened it). `cancelled` is asked between entries. False when
// the folder cannot be read.
bool ScanFolder(const QByteArray& folder, const std::function<bool()>& cancelled,
                const std::function<void(std::vector<FileEntry>&&)>& batch, int batchSize = 512);

// Name order of the browser: case-insensitive, then by bytes.
bool NameLess(const FileEntry& a, const FileEntry& b);

} // namespace ostrivex
