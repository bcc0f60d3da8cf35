// The dialog filter texts as data, their conversion to Qt name filters, and the small
// extension rules.
#include "imagefile_test_util.h"

#include "imagefile/openDialog.h"

#include <QString>

namespace ostrivex::test {
namespace {

int pairs(const char* filter) {
    int bars = 0;
    for (const char* p = filter; *p; ++p)
        bars += *p == '|';
    return (bars + 1) / 2;
}

TEST(Filters, TextsKeepTheirPairsAndOddities) {
    EXPECT_EQ(pairs(kOpenFilter), 35);
    EXPECT_EQ(pairs(kLayerOpenFilter), 34);
    EXPECT_EQ(pairs(kSaveFilter), 14);
    EXPECT_EQ(pairs(kLayeredSaveFilter), 14);
    const std::string open = kOpenFilter;
    EXPECT_EQ(open.rfind("All Supported Picture Formats|*.olf;*.psp;", 0), 0u);
    EXPECT_NE(open.find(";*.rgb,*.rgba;*.bmp;"), std::string::npos);
    EXPECT_NE(open.find("|Commodore 64 Koala format (*.KOA)| *.koa|"), std::string::npos);
    EXPECT_NE(
        open.find("|X Pixel Map (XPM)|*.xpm|Paint Shop Pro (*.PSP)|*.psp|Raw Data (*.RAW)|*.raw"),
        std::string::npos);
    // The layer filter: no olf, no ico, no layered pair, and the XPM label with its star.
    const std::string layer = kLayerOpenFilter;
    EXPECT_EQ(layer.find("olf"), std::string::npos);
    EXPECT_EQ(layer.find("OLF"), std::string::npos);
    EXPECT_EQ(layer.find("*.ico"), std::string::npos);
    EXPECT_EQ(layer.rfind("All Supported Picture Formats|*.psp;*.pic;", 0), 0u);
    EXPECT_NE(layer.find(";*.ppm;*.psd;*.jng;"), std::string::npos);
    EXPECT_NE(layer.find("|X Pixel Map (*.XPM)|*.xpm|Paint Shop Pro (*.PSP)|"), std::string::npos);
    // "*.olf;", ";*.ico" and the 37 characters of the layered pair gone; "*." added.
    EXPECT_EQ(layer.size(), open.size() - 6 - 6 - 37 + 2);
    const std::string save = kSaveFilter;
    EXPECT_EQ(save.rfind("All Supported graphic formats |*.bmp;*.dib;*.rle;*.gif;", 0), 0u);
    EXPECT_NE(save.find("|Independent JPEG Group (*.JPG;*.JPEG)|*.jpg;*.jpeg;|"),
              std::string::npos);
    EXPECT_TRUE(save.ends_with("|PhotoShop (PSD)|*.psd|Silicon Graphics (SGI,BW,RGB,RGBA)|"
                               "*.sgi;*.bw;*.rgb;*.rgba|Raw Data (RAW)|*.raw"));
    const std::string layered = kLayeredSaveFilter;
    EXPECT_EQ(layered.rfind("All Supported graphic formats |*.olf;*.bmp;*.gif;", 0), 0u);
    EXPECT_TRUE(layered.ends_with("|PhotoShop (PSD)|*.psd|Silicon Graphics (SGI,BW,RGB,RGBA)|"
                                  "*.sgi;*.bw;*.rgb;*.rgba"));
    EXPECT_EQ(OptimizedSaveFilter("gif"), "*.gif|*.gif");
    EXPECT_EQ(OptimizedSaveFilter("jpg"), "*.jpg|*.jpg");
}

TEST(Filters, QtNameFiltersMatchBothCases) {
    const QStringList f = NameFilters("Pictures (*.JPG)|*.jpg; *.Ab|Odd|*.rgb,*.rgba|Koala| *.koa");
    ASSERT_EQ(f.size(), 3);
    EXPECT_EQ(f[0], "Pictures (*.JPG) (*.[jJ][pP][gG] *.[aA][bB])");
    // The comma stays inside one pattern, which therefore matches no file.
    EXPECT_EQ(f[1], "Odd (*.[rR][gG][bB],*.[rR][gG][bB][aA])");
    EXPECT_EQ(f[2], "Koala (*.[kK][oO][aA])");
    EXPECT_EQ(NameFilters(kOpenFilter).size(), 35);
    EXPECT_EQ(NameFilters(kSaveFilter).size(), 14);
}

TEST(Filters, QuickSaveAndExtensionHelpers) {
    for (const char* ext : {"bmp", "gif", "jpg", "tga", "tif", "png", "pcx", "PNG"})
        EXPECT_TRUE(IsQuickSaveExtension(ext)) << ext;
    // A document from a psd (or a jpeg, tiff...) goes to Save as first.
    for (const char* ext : {"psd", "jpeg", "tiff", "olf", "ppm", ""})
        EXPECT_FALSE(IsQuickSaveExtension(ext)) << ext;
    EXPECT_EQ(ExtensionOf("/a/b.c/photo.JPG"), "jpg");
    EXPECT_EQ(ExtensionOf("/a/b.c/photo"), "");
    EXPECT_EQ(ExtensionOf("archive.tar.GZ"), "gz");
    EXPECT_EQ(LowerExtension("TaRgA"), "targa");
}

} // namespace
} // namespace ostrivex::test
