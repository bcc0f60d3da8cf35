#include "app/shell/compactpath.h"

#include <QApplication>
#include <QFontMetrics>
#include <QStringList>

namespace ostrivex {

namespace {
const QString kDots = QStringLiteral("...");
}

QString CompactPath(const QString& pathIn, int width,
                    const std::function<int(const QString&)>& measure) {
    QString path = pathIn;
    const qsizetype nul = path.indexOf(QChar(u'\0'));
    if (nul >= 0) path.truncate(nul);
    if (measure(path) <= width) return path;

    const qsizetype slash = path.lastIndexOf(u'/');
    const QString name = slash >= 0 ? path.mid(slash + 1) : path;
    if (slash > 0) {
        // Keep as many leading folders as fit: head + "/.../" + name.
        QString head = path.left(slash);
        while (!head.isEmpty()) {
            const qsizetype cut = head.lastIndexOf(u'/');
            head.truncate(cut < 0 ? 0 : cut);
            const QString candidate =
                head + QStringLiteral("/") + kDots + QStringLiteral("/") + name;
            if (measure(candidate) <= width) return candidate;
        }
    }
    // The name alone is too wide: cut it at its end.
    const QString lead =
        slash > 0 ? QStringLiteral("/") + kDots + QStringLiteral("/") : path.left(slash + 1);
    QString cutName = name;
    while (!cutName.isEmpty()) {
        cutName.chop(1);
        const QString candidate = lead + cutName + kDots;
        if (measure(candidate) <= width) return candidate;
    }
    return measure(kDots) <= width ? kDots : QString();
}

QString CompactPath(const QString& path, int width) {
    const QFontMetrics fm(QApplication::font("QMenu"));
    return CompactPath(path, width, [&fm](const QString& s) { return fm.horizontalAdvance(s); });
}

} // namespace ostrivex
