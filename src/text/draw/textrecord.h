// The text record: what a text layer keeps so that it can be edited again.
//
// A text dialog fills one record when it finishes; the layer made from it copies the
// record, and the layered file stores it in the layer's line. The fields carry the names
// of the layer's own fields, so a layer record takes them over one by one.
//
// The seven style values mean, by LayerType:
//   0 style text: emboss colour, engrave colour, angle, left, depth, right, style index
//   3 3D text:    first colour, second colour, horizontal, vertical, thickness, -, -
//   4 logo:       font size, -, -, -, -, -, -
// The font fields are the layer's font: face, size in points, colour and the four toggles.
//
// In the layer line the record takes field 1 (LayerType), field 3 (LayerText) and fields
// 7 to 20; the others (picture name, transparent colour, position, visibility) belong to
// the layer. The line is split on every semicolon and nothing is escaped, so a semicolon
// in the text or the font name shifts the fields after it: files of this kind have always
// behaved so.
#pragma once

#include <QString>
#include <QStringList>

#include <array>
#include <cstdint>

namespace ostrivex {

struct TextRecord {
    // The layer kinds that are text.
    static constexpr int16_t StyleText = 0;
    static constexpr int16_t Text3D = 3;
    static constexpr int16_t ShadowText = 4;

    // Places in StyleValues for a style text layer.
    enum StyleSlot { EmbossColour, EngraveColour, Angle, Left, Depth, Right, StyleIndex };
    // Places in StyleValues for a 3D text layer.
    enum Slot3D { FirstColour, SecondColour, Horizontal, Vertical, Thickness };
    // The place of the font size of a logo layer.
    static constexpr int LogoFontSize = 0;

    int16_t LayerType = StyleText;
    QString LayerText;
    std::array<int32_t, 7> StyleValues{};
    QString FontName;
    float FontSize = 0;
    int32_t ForeColor = 0; // 0x00BBGGRR
    bool FontBold = false;
    bool FontItalic = false;
    bool FontUnderline = false;
    bool FontStrikethru = false;

    bool operator==(const TextRecord&) const = default;
};

// The number of fields of a layer line.
inline constexpr int kLayerLineFields = 21;

// Writes the record's fields into `fields` (grown to 21 entries when shorter): 1, 3 and 7
// to 20, as the layered file stores them. Style values a kind does not use are written
// empty; a logo writes its font size into 7 and its font name into 8. Sizes are the
// shortest decimal text of the single-precision value with "." as separator.
void WriteTextFields(const TextRecord& record, QStringList& fields);

// Reads a layer line split on ";" (field 0 is the picture name). LayerType is a 16-bit
// whole number; a style text layer takes fields 7 to 13, a 3D text layer 7 to 11, a logo
// its font name from 14 and its size from 15 as a whole number; every kind takes the font
// from 14 to 20, the size through a 16-bit whole number (so a fraction comes back
// rounded). Missing fields are empty. A field that is not a number, or not "True"/"False"
// (or a number) where a flag belongs, leaves its value at 0 or false, as each statement of
// the reader fails on its own.
TextRecord ReadTextFields(const QStringList& fields);

// The number parsing of the reader: text trimmed, a decimal number (a fraction rounds to
// nearest, ties to even) within [lo, hi]; false when it is not one.
bool ParseWholeNumber(const QString& text, int64_t lo, int64_t hi, int64_t& out);
// "True"/"False" in any case, or a number (0 false, anything else true).
bool ParseFlag(const QString& text, bool& out);
// The shortest decimal text that reads back as the same single-precision value.
QString SingleText(float value);

} // namespace ostrivex
