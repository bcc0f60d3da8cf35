// Shortening paths for the "Recent" captions.
#include "app/shell/compactpath.h"

#include <QApplication>
#include <QFontMetrics>

#include <gtest/gtest.h>

namespace ostrivex::test {
namespace {

// One unit per character, so that widths read as character counts.
int chars(const QString& s) {
    return int(s.size());
}

QString compact(const char* path, int width) {
    return CompactPath(QString::fromUtf8(path), width, chars);
}

TEST(CompactPath, TakesFoldersAwayFromTheEndOfTheFolderPart) {
    // 41 characters: "/home" 5, "/ann" 9, "/pictures" 18, "/2024" 23, "/holiday" 31, name 41.
    const char* p = "/home/ann/pictures/2024/holiday/beach.png";
    EXPECT_EQ(compact(p, 100), QString::fromUtf8(p));
    EXPECT_EQ(compact(p, 41), QString::fromUtf8(p));
    EXPECT_EQ(compact(p, 40), "/home/ann/pictures/2024/.../beach.png"); // 37
    EXPECT_EQ(compact(p, 36), "/home/ann/pictures/.../beach.png");      // 32
    EXPECT_EQ(compact(p, 31), "/home/ann/.../beach.png");               // 23
    EXPECT_EQ(compact(p, 20), "/home/.../beach.png");                   // 19
    EXPECT_EQ(compact(p, 18), "/.../beach.png");                        // 14
    EXPECT_EQ(compact(p, 14), "/.../beach.png");
}

TEST(CompactPath, CutsTheNameWhenNothingElseIsLeft) {
    const char* p = "/home/ann/pictures/2024/holiday/beach.png";
    EXPECT_EQ(compact(p, 13), "/.../beach..."); // 5 + 5 + 3
    EXPECT_EQ(compact(p, 9), "/.../b...");
    EXPECT_EQ(compact(p, 8), "/.../...");
    EXPECT_EQ(compact(p, 7), "...");
    EXPECT_EQ(compact(p, 2), "");
    // A name straight under the root keeps its one slash.
    EXPECT_EQ(compact("/verylongname.txt", 10), "/verylo...");
    EXPECT_EQ(compact("/verylongname.txt", 17), "/verylongname.txt");
}

TEST(CompactPath, StopsAtTheFirstNul) {
    const QString withNul = QString::fromUtf8("/a/b.png") + QChar(u'\0') + QStringLiteral("junk");
    EXPECT_EQ(CompactPath(withNul, 100, chars), "/a/b.png");
    EXPECT_EQ(CompactPath(withNul, 8, chars), "/a/b.png");
}

TEST(CompactPath, MenuFontPixels) {
    const QFontMetrics fm(QApplication::font("QMenu"));
    const QString shortPath = QStringLiteral("/tmp/a.png");
    ASSERT_LE(fm.horizontalAdvance(shortPath), 400);
    EXPECT_EQ(CompactPath(shortPath, 400), shortPath);

    QString longPath;
    for (int i = 0; i < 40; ++i)
        longPath += QStringLiteral("/folder%1").arg(i);
    longPath += QStringLiteral("/picture.png");
    const QString got = CompactPath(longPath, 400);
    EXPECT_LE(fm.horizontalAdvance(got), 400);
    EXPECT_TRUE(got.startsWith(QStringLiteral("/folder0/"))) << got.toStdString();
    EXPECT_TRUE(got.endsWith(QStringLiteral("/.../picture.png"))) << got.toStdString();
}

} // namespace
} // namespace ostrivex::test
