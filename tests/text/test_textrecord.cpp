// The text record in the layer line: the exact field texts for each kind, what the reader
// brings back, and lines that are not what they claim.
#include "text/draw/logo.h"
#include "text/draw/styledtext.h"
#include "text/draw/text3d.h"
#include "text/draw/textrecord.h"

#include <gtest/gtest.h>

#include <random>

using namespace ostrivex;

namespace {

// A whole layer line as the layered file writes it: the record's fields and the layer's
// own (picture name, key, position, visibility), each followed by ";".
QString line(const TextRecord& r) {
    QStringList f;
    WriteTextFields(r, f);
    f[0] = "OUP1";
    f[2] = "16777215";
    f[4] = "12.5";
    f[5] = "-3";
    f[6] = "True";
    return f.join(';') + ';';
}

TextRecord readLine(const QString& text) {
    return ReadTextFields(text.split(';'));
}

} // namespace

TEST(TextRecord, FieldsOfEachKind) {
    StyleTextSettings st;
    st.text = "Hello";
    st.fontName = "DejaVu Sans";
    st.fontSize = 13.5f;
    st.foreColor = 0x0080FF;
    st.bold = true;
    st.underline = true;
    st.emboss = 0xC0C0C0;
    st.engrave = 0x404040;
    st.angle = 45;
    st.left = 7;
    st.depth = 3;
    st.right = -2;
    st.style = 2;
    EXPECT_EQ(line(StyleTextRecord(st)),
              "OUP1;0;16777215;Hello;12.5;-3;True;12632256;4210752;45;7;3;-2;2;DejaVu Sans;13.5;"
              "33023;True;False;True;False;");

    Text3DSettings t;
    t.text = "Deep";
    t.colour1 = 0x0000C0;
    t.colour2 = 0x60FFFF;
    t.horizontal = -15;
    t.vertical = 20;
    t.thickness = 9;
    t.fontName = "Serif";
    t.fontSize = 40;
    t.bold = false;
    t.italic = true;
    t.strikethru = true;
    EXPECT_EQ(line(Text3DRecord(t)), "OUP1;3;16777215;Deep;12.5;-3;True;192;6356991;-15;20;9;;;"
                                     "Serif;40;6356991;False;True;False;True;");

    LogoSettings l;
    l.text = "Logo";
    l.fontName = "Sans";
    l.fontSize = 48;
    l.fontColour = 0x123456;
    EXPECT_EQ(
        line(LogoRecord(l)),
        "OUP1;4;16777215;Logo;12.5;-3;True;48;Sans;;;;;;Sans;48;1193046;False;False;False;False;");
}

TEST(TextRecord, ReaderBringsBackWhatEachKindKeeps) {
    // Random records of each kind come back whole, but for the font size, which passes
    // through a 16-bit whole number (ties to even).
    std::mt19937 rng(16);
    std::uniform_int_distribution<int32_t> any(-2000000000, 2000000000);
    for (int round = 0; round < 200; ++round) {
        TextRecord r;
        r.LayerType = std::array<int16_t, 3>{0, 3, 4}[size_t(round % 3)];
        r.LayerText = QString("text %1 é").arg(round);
        for (auto& v : r.StyleValues)
            v = any(rng);
        if (r.LayerType == 3) r.StyleValues[5] = r.StyleValues[6] = 0;
        if (r.LayerType == 4) {
            r.StyleValues = {};
            r.StyleValues[0] = int32_t(round % 300) + 1;
        }
        r.FontName = round % 2 ? "DejaVu Sans" : "";
        r.FontSize = r.LayerType == 4 ? float(r.StyleValues[0]) : float(round % 500) / 4;
        r.ForeColor = any(rng) & 0xFFFFFF;
        r.FontBold = round & 1;
        r.FontItalic = round & 2;
        r.FontUnderline = round & 4;
        r.FontStrikethru = round & 8;
        TextRecord want = r;
        want.FontSize = float(std::nearbyint(r.FontSize));
        EXPECT_EQ(readLine(line(r)), want) << line(r).toStdString();
    }
    // A logo keeps its text, font and size only; fields 7 and 8 are not read back.
    TextRecord logo =
        readLine("OUP3;4;0;Shine;0;0;True;99;Other;;;;;;Sans;36.5;0;True;False;False;False;");
    EXPECT_EQ(logo.LayerText, "Shine");
    EXPECT_EQ(logo.FontName, "Sans");
    EXPECT_EQ(logo.StyleValues[TextRecord::LogoFontSize], 36); // 36.5 to even
    EXPECT_EQ(LogoFromRecord(logo).fontSize, 36);
    EXPECT_EQ(LogoFromRecord(logo).text, "Shine");
}

TEST(TextRecord, LinesThatAreNotWhatTheyClaim) {
    // A semicolon in the text is not escaped: the fields after it move by one.
    TextRecord r;
    r.LayerType = 0;
    r.LayerText = "a;b";
    r.StyleValues = {1, 2, 3, 4, 5, 6, 7};
    const TextRecord back = readLine(line(r));
    EXPECT_EQ(back.LayerText, "a");
    EXPECT_EQ(back.StyleValues[0], 0); // field 7 now holds the visibility word
    EXPECT_EQ(back.StyleValues[1], 1);
    // Garbage numbers and flags read as 0 and false, one field at a time.
    const TextRecord g =
        readLine("X;0;0;T;0;0;True;12;zz;3.5;;1e3; 7 ;99999999999;F;abc;-5;yes;-1;TRUE;0;");
    EXPECT_EQ(g.LayerType, 0);
    EXPECT_EQ(g.StyleValues, (std::array<int32_t, 7>{12, 0, 4, 0, 1000, 7, 0}));
    EXPECT_EQ(g.FontSize, 0);
    EXPECT_EQ(g.ForeColor, -5);
    EXPECT_FALSE(g.FontBold);
    EXPECT_TRUE(g.FontItalic);
    EXPECT_TRUE(g.FontUnderline);
    EXPECT_FALSE(g.FontStrikethru);
    // A short line: what is missing is empty.
    const TextRecord s = readLine("OUP1;3;0;Short");
    EXPECT_EQ(s.LayerType, 3);
    EXPECT_EQ(s.LayerText, "Short");
    EXPECT_EQ(s.StyleValues, (std::array<int32_t, 7>{}));
    EXPECT_EQ(readLine("").LayerType, 0);
    // A type that is not a 16-bit number reads as 0.
    EXPECT_EQ(readLine("OUP1;70000;0;x").LayerType, 0);
    EXPECT_EQ(readLine("OUP1;2;0;x").LayerType, 2);
}
