// Shortening a path for a menu caption ("Recent" entries).
#pragma once

#include <QString>

#include <functional>

namespace ostrivex {

// Shortens `path` so that it fits `width` as measured by `measure`. The rule is the classic
// path-compacting one: the path is cut at the first NUL; if it fits, it stands as it is;
// otherwise folders are taken away from the end of the folder part and replaced by "...",
// keeping the file name whole ("/home/ann/.../photo.png"); when even "/.../name" is too
// wide, the name itself is cut at its end and closed by "...".
QString CompactPath(const QString& path, int width,
                    const std::function<int(const QString&)>& measure);

// The same, measured in pixels of the menu font. The "Recent" entries use a width of 400.
QString CompactPath(const QString& path, int width);

} // namespace ostrivex
