// Style text: the passes of DrawStyledText against a plain painter that draws every copy
// itself, the height rule, the dialog's style list, and fonts that are not there.
#include "text/draw/styledtext.h"
#include "text/draw/textstamp.h"
#include "text/text_test_util.h"

#include <QFontMetrics>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <utility>
#include <vector>

using namespace ostrivex;
using namespace ostrivex::test;

namespace {

constexpr uint32_t kWhite = 0xFFFFFF;
constexpr int32_t kC1 = 0x0000FF, kC2 = 0x00FF00, kC3 = 0xFF0000;

// The slow, obvious drawing: each copy drawn by the painter at its own pen position.
Bits reference(int w, int h, const QFont& font, int angle,
               const std::vector<std::pair<int32_t, int>>& passes, int32_t color3, int x, int y,
               int repeat) {
    QImage img(w, h, QImage::Format_RGB32);
    img.fill(Qt::white);
    QPainter p(&img);
    p.setFont(font);
    p.setRenderHint(QPainter::TextAntialiasing, false);
    const int ascent = QFontMetrics(font).ascent();
    auto draw = [&](int px, int py, int32_t c) {
        p.save();
        p.setPen(QColor(colourR(uint32_t(c)), colourG(uint32_t(c)), colourB(uint32_t(c))));
        p.translate(px, py);
        p.rotate(-angle);
        p.drawText(QPoint(0, ascent), QStringLiteral("Ab|g"));
        p.restore();
    };
    for (const auto& [colour, offset] : passes)
        for (int k = 1; k <= repeat; ++k)
            draw(x + k * offset, y + k * offset, colour);
    if (color3 != -1) draw(x, y, color3);
    p.end();
    Bits b(w, h);
    for (int j = 0; j < h; ++j)
        for (int i = 0; i < w; ++i) {
            const QRgb c = img.pixel(i, j);
            b(0, i, j) = uint8_t(qBlue(c));
            b(1, i, j) = uint8_t(qGreen(c));
            b(2, i, j) = uint8_t(qRed(c));
        }
    return b;
}

} // namespace

TEST(StyledText, PassesOfEachStyleAtAngleZeroAndNinety) {
    const std::vector<std::pair<int32_t, int>> table[4] = {
        {{kC1, +1}, {kC2, -1}}, {{kC1, -1}, {kC2, +1}}, {{kC1, +1}}, {{kC2, -1}}};
    const float size = 18;
    const QFont font = MakeTextFont({TestFontFamily, size, 700});
    for (int angle : {0, 90}) {
        // At 90 degrees the line runs upwards from the pen point.
        const int x = angle == 0 ? 12 : 20, y = angle == 0 ? 9 : 70;
        for (int style = 0; style < 4; ++style) {
            Bits pic = Filled(90, 80, kWhite);
            DrawStyledText(pic, "Ab|g", TestFontFamily, 700, false, false, false, size, angle,
                           style, kC1, kC2, kC3, x, y, 3);
            const Bits want = reference(90, 80, font, angle, table[style], kC3, x, y, 3);
            EXPECT_EQ(pic, want) << "style " << style << " angle " << angle;
            // Each pass's colour shows, beside the text's own.
            for (const auto& pass : table[style])
                EXPECT_GT(CountColour(pic, uint32_t(pass.first)), 0) << style;
            EXPECT_GT(CountColour(pic, kC3), 0);
        }
    }
}

TEST(StyledText, SkippedPassesAndStylesOutsideTheList) {
    const QFont font = MakeTextFont({TestFontFamily, 18, 400});
    // A colour of -1 skips its pass; color3 -1 skips the last drawing.
    Bits pic = Filled(90, 50, kWhite);
    DrawStyledText(pic, "Ab|g", TestFontFamily, 400, false, false, false, 18, 0, 0, -1, kC2, -1, 10,
                   10, 2);
    EXPECT_EQ(pic, reference(90, 50, font, 0, {{kC2, -1}}, -1, 10, 10, 2));
    // Styles 4 and -1 make no passes: only color3, once, or nothing at all.
    for (int style : {4, 7, -1}) {
        Bits blank = Filled(90, 50, kWhite);
        DrawStyledText(blank, "Ab|g", TestFontFamily, 400, false, false, false, 18, 0, style, kC1,
                       kC2, -1, 10, 10, 2);
        EXPECT_EQ(blank, Filled(90, 50, kWhite)) << style;
        Bits plain = Filled(90, 50, kWhite);
        DrawStyledText(plain, "Ab|g", TestFontFamily, 400, false, false, false, 18, 0, style, kC1,
                       kC2, kC3, 10, 10, 2);
        EXPECT_EQ(plain, reference(90, 50, font, 0, {}, kC3, 10, 10, 2)) << style;
    }
}

TEST(StyledText, HeightRuleInTwips) {
    // round(size * -20 / 15), ties to even, as a character height.
    EXPECT_EQ(FontPixelHeight(12), 16);
    EXPECT_EQ(FontPixelHeight(10), 13);    // -13.33
    EXPECT_EQ(FontPixelHeight(1.875f), 2); // -2.5 goes to -2
    EXPECT_EQ(FontPixelHeight(2.625f), 4); // -3.5 goes to -4
    EXPECT_EQ(FontPixelHeight(0), 1);      // nothing smaller than a pixel
    EXPECT_EQ(MakeTextFont({TestFontFamily, 36, 400}).pixelSize(), 48);
    // The drawn line is as high as the font says.
    const QFontMetrics fm(MakeTextFont({TestFontFamily, 36, 400}));
    Bits pic = Filled(300, 120, kWhite);
    DrawStyledText(pic, "H", TestFontFamily, 400, false, false, false, 36, 0, 4, -1, -1, 0, 0, 0,
                   0);
    int top = -1, bottom = -1;
    for (int y = 0; y < 120; ++y)
        for (int x = 0; x < 300; ++x)
            if (At(pic, x, y) == 0) {
                if (top < 0) top = y;
                bottom = y;
            }
    EXPECT_EQ(bottom + 1, fm.ascent()); // "H" stands on the base line
    EXPECT_NEAR(bottom - top + 1, fm.capHeight(), 1);
}

TEST(StyledText, DialogStylesCrossEmbossAndEngrave) {
    StyleTextSettings s;
    s.fontName = TestFontFamily;
    s.text = "Mm";
    s.emboss = 0x0000FF;
    s.engrave = 0x00FF00;
    s.foreColor = 0xFF0000;
    s.depth = 2;
    auto firstInk = [](const Bits& b) { // the top-most, then left-most pixel that is not white
        for (int y = 0; y < b.height(); ++y)
            for (int x = 0; x < b.width(); ++x)
                if (At(b, x, y) != kWhite) return At(b, x, y);
        return kWhite;
    };
    // "Emboss": the engrave colour only, to the upper left.
    s.style = int(TextStyle::Emboss);
    Bits pic = DrawStyleTextLayer(s);
    EXPECT_EQ(Colours(pic), (std::set<uint32_t>{kWhite, 0x00FF00, 0xFF0000}));
    EXPECT_EQ(firstInk(pic), 0x00FF00u);
    // "Engrave": the emboss colour only, to the lower right.
    s.style = int(TextStyle::Engrave);
    pic = DrawStyleTextLayer(s);
    EXPECT_EQ(Colours(pic), (std::set<uint32_t>{kWhite, 0x0000FF, 0xFF0000}));
    EXPECT_EQ(firstInk(pic), 0xFF0000u);
    // "Both": the two, the engrave colour above.
    s.style = int(TextStyle::Both);
    pic = DrawStyleTextLayer(s);
    EXPECT_EQ(Colours(pic), (std::set<uint32_t>{kWhite, 0x0000FF, 0x00FF00, 0xFF0000}));
    EXPECT_EQ(firstInk(pic), 0x00FF00u);
    // "Plain": the text's colour at the start position, not turned.
    s.style = int(TextStyle::Plain);
    s.angle = 45;
    pic = DrawStyleTextLayer(s);
    EXPECT_EQ(Colours(pic), (std::set<uint32_t>{kWhite, 0xFF0000}));
    Bits straight = Filled(s.width, s.height, kWhite);
    DrawStyledText(straight, s.text, s.fontName, 400, false, false, false, s.fontSize, 0, 4, -1, -1,
                   0xFF0000, s.left, s.right, 0);
    EXPECT_EQ(pic, straight);
    // An index past the list leaves the layer blank, in its background.
    s.style = 4;
    s.background = 0x123456;
    EXPECT_EQ(DrawStyleTextLayer(s), Filled(s.width, s.height, 0x123456));
}

TEST(StyledText, OddFontsAndSizesGivePictures) {
    // A face that is not installed falls back to another one without complaint.
    Bits pic = Filled(200, 60, kWhite);
    DrawStyledText(pic, "Text", "No Such Face 4711", 400, false, false, false, 24, 0, 4, -1, -1, 0,
                   5, 5, 0);
    EXPECT_GT(CountColour(pic, 0), 20);
    // One pixel high: at most a few dots, no failure.
    pic = Filled(200, 60, kWhite);
    DrawStyledText(pic, "Text", TestFontFamily, 400, false, false, false, 0.75f, 0, 2, 0, 0, 0, 5,
                   5, 3);
    EXPECT_LT(CountColour(pic, 0), 200);
    // 30,000 pixels asked for: drawn at the engine's largest size, 16384. The layer lies
    // inside the stem of an "l" whose middle is at the layer's middle, so it is all text.
    const QFont huge = MakeTextFont({TestFontFamily, 22500, 400});
    EXPECT_EQ(huge.pixelSize(), 16384);
    const QFontMetrics fm(huge);
    const QPoint mid = fm.boundingRect("l").center() + QPoint(0, fm.ascent());
    pic = Filled(200, 60, kWhite);
    DrawStyledText(pic, "l", TestFontFamily, 400, false, false, false, 22500, 0, 0, 0x0000FF,
                   0x00FF00, 0, 100 - mid.x(), 30 - mid.y(), 1000);
    EXPECT_EQ(CountColour(pic, 0), 200 * 60);
    // An empty text draws nothing.
    pic = Filled(50, 20, kWhite);
    DrawStyledText(pic, "", TestFontFamily, 400, false, false, false, 12, 0, 0, 1, 2, 3, 0, 0, 5);
    EXPECT_EQ(pic, Filled(50, 20, kWhite));
}
