// The selection object: combine modes and the null-selection rules, invert, crop, offset,
// the zoomed copy with its rounding, the ant brushes, and selection files byte for byte.
// Every expected array below is worked out by hand from the shapes, not read from output.
#include "model/bitregion.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace ostrivex {
namespace {

using Data = std::vector<int32_t>;

std::string tempFile(const std::string& name) {
    const char* home = std::getenv("OSTRIVEX_HOME");
    std::filesystem::path dir = home ? home : std::filesystem::temp_directory_path();
    return (dir / name).string();
}

std::vector<uint8_t> readBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void writeBytes(const std::string& path, const std::vector<uint8_t>& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
}

// The elements as a selection file holds them: four bytes each, little-endian.
std::vector<uint8_t> elementBytes(const Data& elements) {
    std::vector<uint8_t> bytes;
    for (int32_t e : elements) {
        const uint32_t v = uint32_t(e);
        bytes.insert(bytes.end(),
                     {uint8_t(v), uint8_t(v >> 8), uint8_t(v >> 16), uint8_t(v >> 24)});
    }
    return bytes;
}

void writeElements(const std::string& path, const Data& elements) {
    writeBytes(path, elementBytes(elements));
}

TEST(BitRegion, UnionAndDifferenceBuildBandedData) {
    cBitRegion sel;
    sel.Init(0, 0, 10, 10);
    sel.CreateRect(1, 1, 5, 4, cBitRegion::ModeUnion, false);
    EXPECT_EQ(sel.GetData(), (Data{32, 1, 1, 16, 1, 1, 5, 4, 1, 1, 5, 4}));

    // Second rectangle overlapping the first lower right: three bands.
    sel.CreateRect(3, 2, 8, 6, cBitRegion::ModeUnion, false);
    EXPECT_EQ(sel.GetData(), (Data{32, 1, 3, 48, 1, 1, 8, 6, //
                                   1,  1, 5, 2,  1, 2, 8, 4, 3, 4, 8, 6}));

    // A full-height column x 2..3 cut out of every band.
    sel.CreateRect(2, 0, 4, 10, cBitRegion::ModeDifference, false);
    EXPECT_EQ(sel.GetData(), (Data{32, 1, 5, 80, 1, 1, 8, 6, //
                                   1,  1, 2, 2,  4, 1, 5, 2, //
                                   1,  2, 2, 4,  4, 2, 8, 4, //
                                   4,  4, 8, 6}));
    EXPECT_EQ(sel.GetDataCount(), 28u);
    EXPECT_TRUE(sel.Region()->contains(1, 3));
    EXPECT_FALSE(sel.Region()->contains(2, 3));
    EXPECT_FALSE(sel.Region()->contains(3, 5));

    // Crop flag: a rectangle reaching past the image corner is cut at (10, 10).
    sel.CreateRect(8, 8, 14, 12, cBitRegion::ModeUnion, true);
    int32_t l = 0, t = 0, r = 0, b = 0;
    ASSERT_TRUE(sel.BoundRect(l, t, r, b));
    EXPECT_EQ((Data{l, t, r, b}), (Data{1, 1, 10, 10}));
    EXPECT_TRUE(sel.Region()->contains(9, 9));
    EXPECT_FALSE(sel.Region()->contains(10, 9));

    // Without the flag the selection may leave the image.
    sel.CreateRect(12, 0, 13, 1, cBitRegion::ModeUnion, false);
    ASSERT_TRUE(sel.BoundRect(l, t, r, b));
    EXPECT_EQ((Data{l, t, r, b}), (Data{1, 0, 13, 10}));
}

TEST(BitRegion, NullSelectionRules) {
    cBitRegion sel;
    sel.Init(0, 0, 10, 10);
    EXPECT_FALSE(sel.Region().has_value());
    EXPECT_TRUE(sel.IsEmptyRegion());

    // A difference into nothing makes nothing: still null, no data, no scaled region.
    sel.CreateRect(1, 1, 4, 4, cBitRegion::ModeDifference, false);
    EXPECT_FALSE(sel.Region().has_value());
    EXPECT_FALSE(sel.RegionScaled().has_value());
    EXPECT_EQ(sel.GetDataCount(), 0u);
    int32_t l = -7, t = -7, r = -7, b = -7;
    EXPECT_FALSE(sel.BoundRect(l, t, r, b));
    EXPECT_EQ((Data{l, t, r, b}), (Data{-7, -7, -7, -7}));
    EXPECT_EQ(EffectiveRegion(sel), Region::rect(0, 0, 10, 10));

    // Union into nothing: the shape, cropped when asked.
    sel.CreateRect(-2, -3, 3, 2, cBitRegion::ModeUnion, true);
    EXPECT_EQ(sel.GetData(), (Data{32, 1, 1, 16, 0, 0, 3, 2, 0, 0, 3, 2}));
    EXPECT_EQ(EffectiveRegion(sel), Region::rect(0, 0, 3, 2));

    // The "new" press clears by a difference of the whole image: an empty selection that
    // exists, whose dump is the bare header, and all of the image is paintable again.
    sel.CreateRect(0, 0, 10, 10, cBitRegion::ModeDifference, false);
    ASSERT_TRUE(sel.Region().has_value());
    EXPECT_TRUE(sel.IsEmptyRegion());
    EXPECT_FALSE(sel.BoundRect(l, t, r, b));
    EXPECT_EQ(sel.GetData(), (Data{32, 1, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(EffectiveRegion(sel), Region::rect(0, 0, 10, 10));

    // Offset and Crop leave a null selection null.
    cBitRegion none;
    none.Init(0, 0, 5, 5);
    none.Offset(2, 2);
    none.Crop();
    EXPECT_FALSE(none.Region().has_value());
    EXPECT_EQ(none.GetDataCount(), 0u);

    // Before Init there is no image either: nothing is paintable.
    cBitRegion bare;
    EXPECT_TRUE(EffectiveRegion(bare).isEmpty());

    // Init drops the selection; Clear drops the image rectangle too.
    sel.CreateRect(1, 1, 2, 2, cBitRegion::ModeUnion, false);
    sel.Init(0, 0, 4, 4);
    EXPECT_FALSE(sel.Region().has_value());
    EXPECT_EQ(sel.GetDataCount(), 0u);
    EXPECT_EQ(*sel.RegionMain(), Region::rect(0, 0, 4, 4));
    sel.Clear();
    EXPECT_FALSE(sel.RegionMain().has_value());
    EXPECT_FALSE(sel.RegionScaled().has_value());
}

TEST(BitRegion, InvertCropAndOffset) {
    cBitRegion sel;
    sel.Init(0, 0, 6, 4);
    sel.Invert(); // nothing selected: all
    EXPECT_EQ(sel.GetData(), (Data{32, 1, 1, 16, 0, 0, 6, 4, 0, 0, 6, 4}));
    sel.Invert(); // all selected: empty, and the whole image is paintable
    ASSERT_TRUE(sel.Region().has_value());
    EXPECT_TRUE(sel.IsEmptyRegion());
    EXPECT_TRUE(EffectiveRegion(sel).contains(5, 3));
    EXPECT_FALSE(EffectiveRegion(sel).contains(6, 3));
    sel.Invert(); // empty box again: all
    EXPECT_EQ(*sel.Region(), Region::rect(0, 0, 6, 4));

    // A hole in the middle.
    sel.Init(0, 0, 6, 4);
    sel.CreateRect(2, 1, 4, 3, cBitRegion::ModeUnion, false);
    sel.Invert();
    EXPECT_EQ(sel.GetData(), (Data{32, 1, 4, 64, 0, 0, 6, 4, //
                                   0,  0, 6, 1,  0, 1, 2, 3, 4, 1, 6, 3, 0, 3, 6, 4}));

    // A selection hanging over the lower right corner: the XOR keeps its outside part.
    sel.Init(0, 0, 6, 4);
    sel.CreateRect(4, 2, 8, 6, cBitRegion::ModeUnion, false);
    sel.Invert();
    EXPECT_EQ(sel.GetData(), (Data{32, 1, 4, 64, 0, 0, 8, 6, //
                                   0,  0, 6, 2,  0, 2, 4, 4, 6, 2, 8, 4, 4, 4, 8, 6}));
    sel.Crop();
    EXPECT_EQ(sel.GetData(), (Data{32, 1, 2, 32, 0, 0, 6, 4, 0, 0, 6, 2, 0, 2, 4, 4}));

    sel.Offset(-1, 3);
    EXPECT_EQ(sel.GetData(), (Data{32, 1, 2, 32, -1, 3, 5, 7, -1, 3, 5, 5, -1, 5, 3, 7}));
}

TEST(BitRegion, EllipseAndPolygonShapes) {
    cBitRegion sel;
    sel.Init(0, 0, 10, 10);
    // 4x4 box, radius 2 about (2, 2): the corner pixel centres (0.5, 0.5) lie at 1.5, 1.5
    // from the centre, 1.5^2/4 * 2 = 1.125 > 1, so each corner pixel is out; (1.5, 0.5)
    // gives 0.625 and is in.
    sel.CreateEllipse(0, 0, 4, 4, cBitRegion::ModeUnion, false);
    EXPECT_EQ(sel.GetData(), (Data{32, 1, 3, 48, 0, 0, 4, 4, //
                                   1,  0, 3, 1,  0, 1, 4, 3, 1, 3, 3, 4}));

    // Fewer than two points is ignored: three elements are one point.
    cBitRegion poly;
    poly.Init(0, 0, 10, 10);
    poly.CreatePolygon({1, 1, 5}, cBitRegion::ModeUnion, false);
    EXPECT_FALSE(poly.Region().has_value());

    // Right triangle (0,0) (4,0) (0,4) with a trailing odd element: the hypotenuse x = 4 - y
    // crosses row centres at 3.5, 2.5, 1.5, 0.5; a centre on the right edge is out.
    poly.CreatePolygon({0, 0, 4, 0, 0, 4, 99}, cBitRegion::ModeUnion, false);
    EXPECT_EQ(poly.GetData(), (Data{32, 1, 3, 48, 0, 0, 3, 3, //
                                    0,  0, 3, 1,  0, 1, 2, 2, 0, 2, 1, 3}));

    // Subtracting a polygon: the top row of the triangle.
    poly.CreatePolygon({0, 0, 4, 0, 4, 1, 0, 1}, cBitRegion::ModeDifference, false);
    EXPECT_EQ(poly.GetData(), (Data{32, 1, 2, 32, 0, 1, 2, 3, 0, 1, 2, 2, 0, 2, 1, 3}));
}

TEST(BitRegion, ZoomFactorAndScaledData) {
    cBitRegion sel;
    EXPECT_EQ(sel.ZoomFactor(), 1.0f);
    sel.Init(0, 0, 20, 20);
    sel.CreateRect(5, 7, 9, 11, cBitRegion::ModeUnion, false);
    EXPECT_EQ(sel.ScaledData(), sel.GetData());

    // 2.5 -> 2, 3.5 -> 4, 4.5 -> 4, 5.5 -> 6; the header (count 1, 16 bytes) is not scaled.
    sel.SetZoomFactor(0.5f);
    EXPECT_EQ(sel.ScaledData(), (Data{32, 1, 1, 16, 2, 4, 4, 6, 2, 4, 4, 6}));
    EXPECT_EQ(*sel.RegionScaled(), Region::rect(2, 4, 4, 6));
    EXPECT_EQ(sel.GetData(), (Data{32, 1, 1, 16, 5, 7, 9, 11, 5, 7, 9, 11}));

    // 1.5: 7.5 -> 8, 10.5 -> 10, 13.5 -> 14, 16.5 -> 16.
    sel.SetZoomFactor(1.5f);
    EXPECT_EQ(sel.ScaledData(), (Data{32, 1, 1, 16, 8, 10, 14, 16, 8, 10, 14, 16}));

    // Zoom 3: the header still keeps count 1 and 16 bytes.
    sel.SetZoomFactor(3.0f);
    EXPECT_EQ(sel.ScaledData(), (Data{32, 1, 1, 16, 15, 21, 27, 33, 15, 21, 27, 33}));

    // Negative stores 0.01: every coordinate rounds to 0 and the scaled region is empty.
    sel.SetZoomFactor(-2.0f);
    EXPECT_EQ(sel.ZoomFactor(), 0.01f);
    EXPECT_EQ(sel.ScaledData(), (Data{32, 1, 1, 16, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_TRUE(sel.RegionScaled()->isEmpty());

    // Zero is stored and leaves the copy unscaled.
    sel.SetZoomFactor(0.0f);
    EXPECT_EQ(sel.ZoomFactor(), 0.0f);
    EXPECT_EQ(*sel.RegionScaled(), Region::rect(5, 7, 9, 11));

    // The zoom applies to later changes; with no selection nothing is built.
    cBitRegion z;
    z.SetZoomFactor(2.0f);
    EXPECT_FALSE(z.RegionScaled().has_value());
    z.Init(0, 0, 8, 8);
    z.CreateRect(1, 2, 3, 4, cBitRegion::ModeUnion, false);
    EXPECT_EQ(*z.RegionScaled(), Region::rect(2, 4, 6, 8));
    z.Offset(1, 0);
    EXPECT_EQ(*z.RegionScaled(), Region::rect(4, 4, 8, 8));

    // A copy through the data: later changes to the source do not reach the selection.
    Region source = Region::rect(0, 0, 3, 1);
    z.SetRegion(source);
    source.offset(5, 5);
    EXPECT_EQ(z.GetData(), (Data{32, 1, 1, 16, 0, 0, 3, 1, 0, 0, 3, 1}));
    EXPECT_EQ(*z.RegionScaled(), Region::rect(0, 0, 6, 2));
    z.SetRegion(std::nullopt);
    EXPECT_FALSE(z.Region().has_value());
    EXPECT_FALSE(z.RegionScaled().has_value());
    EXPECT_EQ(z.GetDataCount(), 0u);
}

TEST(BitRegion, AntBrushes) {
    EXPECT_EQ(cBitRegion::MakeAntBrush(0),
              (cBitRegion::AntBrush{240, 120, 60, 30, 15, 135, 195, 225}));
    EXPECT_EQ(cBitRegion::MakeAntBrush(1),
              (cBitRegion::AntBrush{120, 60, 30, 15, 135, 195, 225, 240}));
    EXPECT_EQ(cBitRegion::MakeAntBrush(7),
              (cBitRegion::AntBrush{225, 240, 120, 60, 30, 15, 135, 195}));

    cBitRegion sel;
    EXPECT_EQ(sel.AntPhase(), 0);
    for (int i = 0; i < 3; ++i)
        sel.RotateBrush();
    EXPECT_EQ(sel.AntPhase(), 3);
    EXPECT_EQ(sel.CurrentAntBrush()[0], 30);
    EXPECT_EQ(sel.CurrentAntBrush()[7], 60);
    for (int i = 0; i < 5; ++i)
        sel.RotateBrush();
    EXPECT_EQ(sel.AntPhase(), 0);
    EXPECT_EQ(sel.CurrentAntBrush()[0], 240);

    // 240 = 11110000: the four left pixels of the top row are set. 120 = 01111000.
    const cBitRegion::AntBrush& b0 = sel.AntBrushAt(0);
    EXPECT_TRUE(cBitRegion::AntBit(b0, 0, 0));
    EXPECT_TRUE(cBitRegion::AntBit(b0, 3, 0));
    EXPECT_FALSE(cBitRegion::AntBit(b0, 4, 0));
    EXPECT_FALSE(cBitRegion::AntBit(b0, 0, 1));
    EXPECT_TRUE(cBitRegion::AntBit(b0, 1, 1));
    // The pattern repeats every eight pixels, below zero too: (0, -1) is row 7, 225 =
    // 11100001, left bit set; (-1, 0) is column 7 of 240, clear.
    EXPECT_TRUE(cBitRegion::AntBit(b0, 9, 9));
    EXPECT_TRUE(cBitRegion::AntBit(b0, 0, -1));
    EXPECT_FALSE(cBitRegion::AntBit(b0, -1, 0));
}

TEST(BitRegion, SelectionFileBytes) {
    cBitRegion sel;
    sel.Init(0, 0, 10, 10);
    sel.CreateRect(1, 2, 4, 3, cBitRegion::ModeUnion, false);
    sel.CreateRect(6, 2, 7, 3, cBitRegion::ModeUnion, false);
    sel.Offset(-3, 0); // a negative coordinate, to see its bytes
    const std::string path = tempFile("two.osf");
    ASSERT_TRUE(sel.SaveToFile(path));
    // 32, 1, 2, 32, box -2 2 4 3, then (-2 2 1 3) and (3 2 4 3), little-endian.
    const std::vector<uint8_t> expected = {
        0x20, 0,    0,    0,    1, 0, 0, 0, 2, 0, 0, 0, 0x20, 0, 0, 0, //
        0xFE, 0xFF, 0xFF, 0xFF, 2, 0, 0, 0, 4, 0, 0, 0, 3,    0, 0, 0, //
        0xFE, 0xFF, 0xFF, 0xFF, 2, 0, 0, 0, 1, 0, 0, 0, 3,    0, 0, 0, //
        3,    0,    0,    0,    2, 0, 0, 0, 4, 0, 0, 0, 3,    0, 0, 0};
    EXPECT_EQ(readBytes(path), expected);

    // Reading it back gives the same selection, and writing that gives the same bytes.
    cBitRegion back;
    back.Init(0, 0, 10, 10);
    back.CreateRect(0, 0, 9, 9, cBitRegion::ModeUnion, false); // replaced, not combined
    ASSERT_TRUE(back.LoadFromFile(path));
    EXPECT_EQ(*back.Region(), *sel.Region());
    EXPECT_EQ(back.GetData(), sel.GetData());
    const std::string again = tempFile("two-again.osf");
    ASSERT_TRUE(back.SaveToFile(again));
    EXPECT_EQ(readBytes(again), expected);

    // Empty selections, null or emptied, write no bytes.
    cBitRegion none;
    none.Init(0, 0, 10, 10);
    const std::string emptyPath = tempFile("empty.osf");
    writeBytes(emptyPath, {1, 2, 3, 4});
    ASSERT_TRUE(none.SaveToFile(emptyPath));
    EXPECT_TRUE(readBytes(emptyPath).empty());
    sel.CreateRect(-10, -10, 20, 20, cBitRegion::ModeDifference, false);
    ASSERT_TRUE(sel.Region().has_value());
    ASSERT_TRUE(sel.SaveToFile(emptyPath));
    EXPECT_TRUE(readBytes(emptyPath).empty());

    // A folder that does not exist cannot be written.
    EXPECT_FALSE(back.SaveToFile(tempFile("no-such-folder/x.osf")));
}

TEST(BitRegion, LoadedSelectionIsNotCroppedAndScales) {
    cBitRegion big;
    big.Init(0, 0, 20, 20);
    big.CreateRect(10, 10, 18, 18, cBitRegion::ModeUnion, false);
    const std::string path = tempFile("big.osf");
    ASSERT_TRUE(big.SaveToFile(path));

    cBitRegion small;
    small.Init(0, 0, 8, 8);
    small.SetZoomFactor(2.0f);
    ASSERT_TRUE(small.LoadFromFile(path));
    int32_t l = 0, t = 0, r = 0, b = 0;
    ASSERT_TRUE(small.BoundRect(l, t, r, b));
    EXPECT_EQ((Data{l, t, r, b}), (Data{10, 10, 18, 18}));
    EXPECT_TRUE(EffectiveRegion(small).contains(15, 15));
    EXPECT_FALSE(EffectiveRegion(small).contains(3, 3));
    EXPECT_EQ(*small.RegionScaled(), Region::rect(20, 20, 36, 36));
    EXPECT_EQ(*small.RegionMain(), Region::rect(0, 0, 8, 8));
    // Cropping it to this image leaves nothing.
    small.Crop();
    EXPECT_TRUE(small.IsEmptyRegion());
    EXPECT_EQ(EffectiveRegion(small), Region::rect(0, 0, 8, 8));
}

TEST(BitRegion, DamagedFilesGiveNoSelection) {
    const std::string path = tempFile("damaged.osf");
    auto loadsToNothing = [&](const std::vector<uint8_t>& bytes) {
        writeBytes(path, bytes);
        cBitRegion sel;
        sel.Init(0, 0, 10, 10);
        sel.CreateRect(1, 1, 3, 3, cBitRegion::ModeUnion, false);
        const bool ok = sel.LoadFromFile(path);
        return !ok && !sel.Region().has_value() && !sel.RegionScaled().has_value() &&
               sel.GetDataCount() == 0 && EffectiveRegion(sel) == Region::rect(0, 0, 10, 10);
    };
    auto elementsLoadToNothing = [&](const Data& elements) {
        return loadsToNothing(elementBytes(elements));
    };
    const int32_t maxI = std::numeric_limits<int32_t>::max();

    EXPECT_TRUE(loadsToNothing({}));                                         // no bytes
    EXPECT_TRUE(loadsToNothing({32, 0, 0, 0}));                              // one element
    EXPECT_TRUE(loadsToNothing(std::vector<uint8_t>(30)));                   // not whole elements
    EXPECT_TRUE(elementsLoadToNothing({32, 1, 1, 16, 0, 0, 2, 2, 0, 0, 2})); // short rectangle
    EXPECT_TRUE(elementsLoadToNothing({32, 1, 1000, 16000, 0, 0, 2, 2, 0, 0, 2, 2}));
    EXPECT_TRUE(elementsLoadToNothing({32, 1, -1, 16, 0, 0, 2, 2, 0, 0, 2, 2}));
    EXPECT_TRUE(elementsLoadToNothing({32, 1, maxI, 16, 0, 0, 2, 2, 0, 0, 2, 2}));
    // Rectangles no region dump can hold: reversed, overlapping, out of band order.
    EXPECT_TRUE(elementsLoadToNothing({32, 1, 1, 16, 0, 0, 2, 2, 2, 0, 0, 2}));
    EXPECT_TRUE(elementsLoadToNothing({32, 1, 2, 32, 0, 0, 5, 2, 0, 0, 3, 2, 2, 0, 5, 2}));
    EXPECT_TRUE(elementsLoadToNothing({32, 1, 2, 32, 0, 0, 5, 4, 0, 2, 3, 4, 0, 0, 3, 2}));
    EXPECT_TRUE(elementsLoadToNothing({32, 1, 2, 32, 0, 0, 5, 3, 0, 0, 3, 2, 4, 0, 5, 3}));

    // The header is not checked beyond the count: a wrong size and type still load, and a
    // bare header loads as an empty selection.
    writeElements(path, {7, 9, 1, 0, 0, 0, 0, 0, 2, 3, 4, 5});
    cBitRegion sel;
    sel.Init(0, 0, 10, 10);
    ASSERT_TRUE(sel.LoadFromFile(path));
    EXPECT_EQ(*sel.Region(), Region::rect(2, 3, 4, 5));
    writeElements(path, {32, 1, 0, 0, 0, 0, 0, 0});
    ASSERT_TRUE(sel.LoadFromFile(path));
    EXPECT_TRUE(sel.Region().has_value());
    EXPECT_TRUE(sel.IsEmptyRegion());

    // Coordinates at the ends of the range scale without overflow: clamped.
    writeElements(path, {32, 1, 1, 16, -maxI - 1, 0, maxI, 1, -maxI - 1, 0, maxI, 1});
    sel.SetZoomFactor(15.0f);
    ASSERT_TRUE(sel.LoadFromFile(path));
    EXPECT_EQ(sel.ScaledData(),
              (Data{32, 1, 1, 16, -maxI - 1, 0, maxI, 15, -maxI - 1, 0, maxI, 15}));

    // A file that cannot be opened changes nothing.
    sel.CreateRect(0, 0, 1, 1, cBitRegion::ModeUnion, false);
    const Data before = sel.GetData();
    EXPECT_FALSE(sel.LoadFromFile(tempFile("missing.osf")));
    EXPECT_EQ(sel.GetData(), before);

    // Damage a good three-band file at random (cut it short, overwrite a few bytes):
    // never a crash, a refused file leaves no selection, an accepted one holds exactly the
    // file's elements. A fresh file each time: rewriting one file in place makes the file
    // system flush it, which is slow.
    const std::vector<uint8_t> good =
        elementBytes({32, 1, 3, 48, 1, 1, 8, 6, 1, 1, 5, 2, 1, 2, 8, 4, 3, 4, 8, 6});
    std::mt19937 rng(20261122);
    int accepted = 0, refused = 0;
    for (int i = 0; i < 600; ++i) {
        std::vector<uint8_t> bytes = good;
        if (rng() % 3 == 0) bytes.resize(rng() % bytes.size());
        for (int k = int(rng() % 3); k >= 0 && !bytes.empty(); --k)
            bytes[rng() % bytes.size()] = uint8_t(rng() % 2 ? rng() : rng() % 10);
        const std::string garbage = tempFile("garbage" + std::to_string(i) + ".osf");
        writeBytes(garbage, bytes);
        cBitRegion g;
        g.Init(0, 0, 10, 10);
        if (g.LoadFromFile(garbage)) {
            ++accepted;
            EXPECT_EQ(g.GetDataCount() * 4, bytes.size());
            EXPECT_TRUE(g.Region().has_value());
        } else {
            ++refused;
            EXPECT_FALSE(g.Region().has_value());
        }
        std::filesystem::remove(garbage);
    }
    EXPECT_GT(accepted, 0);
    EXPECT_GT(refused, 0);
}

} // namespace
} // namespace ostrivex
