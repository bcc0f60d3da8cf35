#include "text/draw/textrecord.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace ostrivex {

namespace {

QString flagText(bool v) {
    return v ? QStringLiteral("True") : QStringLiteral("False");
}

QString field(const QStringList& fields, int index) {
    return index < fields.size() ? fields[index] : QString();
}

int32_t wholeField(const QStringList& fields, int index) {
    int64_t v = 0;
    return ParseWholeNumber(field(fields, index), std::numeric_limits<int32_t>::min(),
                            std::numeric_limits<int32_t>::max(), v)
               ? int32_t(v)
               : 0;
}

int16_t shortField(const QStringList& fields, int index) {
    int64_t v = 0;
    return ParseWholeNumber(field(fields, index), std::numeric_limits<int16_t>::min(),
                            std::numeric_limits<int16_t>::max(), v)
               ? int16_t(v)
               : 0;
}

} // namespace

bool ParseWholeNumber(const QString& text, int64_t lo, int64_t hi, int64_t& out) {
    const QByteArray s = text.trimmed().toLatin1();
    if (s.isEmpty()) return false;
    double d = 0;
    const char* end = s.constData() + s.size();
    const auto [ptr, ec] = std::from_chars(s.constData() + (s[0] == '+' ? 1 : 0), end, d);
    if (ec != std::errc() || ptr != end || !std::isfinite(d)) return false;
    const double r = std::nearbyint(d);
    if (r < double(lo) || r > double(hi)) return false;
    out = int64_t(r);
    return true;
}

bool ParseFlag(const QString& text, bool& out) {
    const QString t = text.trimmed();
    if (t.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0) {
        out = true;
        return true;
    }
    if (t.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0) {
        out = false;
        return true;
    }
    int64_t v = 0;
    if (!ParseWholeNumber(t, std::numeric_limits<int64_t>::min() / 2,
                          std::numeric_limits<int64_t>::max() / 2, v))
        return false;
    out = v != 0;
    return true;
}

QString SingleText(float value) {
    char buf[48];
    const auto [ptr, ec] = std::to_chars(buf, buf + sizeof buf, value);
    return ec == std::errc() ? QString::fromLatin1(buf, int(ptr - buf)) : QStringLiteral("0");
}

void WriteTextFields(const TextRecord& r, QStringList& fields) {
    while (fields.size() < kLayerLineFields)
        fields.append(QString());
    fields[1] = QString::number(r.LayerType);
    fields[3] = r.LayerText;
    int used = 0; // style values the kind stores
    switch (r.LayerType) {
    case TextRecord::StyleText:
        used = 7;
        break;
    case TextRecord::Text3D:
        used = 5;
        break;
    default:
        break;
    }
    for (int i = 0; i < 7; ++i)
        fields[7 + i] = i < used ? QString::number(r.StyleValues[size_t(i)]) : QString();
    if (r.LayerType == TextRecord::ShadowText) {
        fields[7] = QString::number(r.StyleValues[TextRecord::LogoFontSize]);
        fields[8] = r.FontName;
    }
    fields[14] = r.FontName;
    fields[15] = SingleText(r.FontSize);
    fields[16] = QString::number(r.ForeColor);
    fields[17] = flagText(r.FontBold);
    fields[18] = flagText(r.FontItalic);
    fields[19] = flagText(r.FontUnderline);
    fields[20] = flagText(r.FontStrikethru);
}

TextRecord ReadTextFields(const QStringList& fields) {
    TextRecord r;
    r.LayerType = shortField(fields, 1);
    r.LayerText = field(fields, 3);
    switch (r.LayerType) {
    case TextRecord::StyleText:
        for (int i = 0; i < 7; ++i)
            r.StyleValues[size_t(i)] = wholeField(fields, 7 + i);
        break;
    case TextRecord::Text3D:
        for (int i = 0; i < 5; ++i)
            r.StyleValues[size_t(i)] = wholeField(fields, 7 + i);
        break;
    case TextRecord::ShadowText:
        // Fields 7 and 8 repeat the size and the name; the reader takes them from the font.
        r.StyleValues[TextRecord::LogoFontSize] = shortField(fields, 15);
        break;
    default:
        break;
    }
    r.FontName = field(fields, 14);
    r.FontSize = float(shortField(fields, 15));
    r.ForeColor = wholeField(fields, 16);
    bool flag = false;
    r.FontBold = ParseFlag(field(fields, 17), flag) && flag;
    r.FontItalic = ParseFlag(field(fields, 18), flag) && flag;
    r.FontUnderline = ParseFlag(field(fields, 19), flag) && flag;
    r.FontStrikethru = ParseFlag(field(fields, 20), flag) && flag;
    return r;
}

} // namespace ostrivex
