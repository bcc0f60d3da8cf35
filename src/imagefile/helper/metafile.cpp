// Metafiles in the helper: WMF drawn by libwmf's raster device, EMF turned into SVG by
// libemf2svg (the editor draws the SVG). Both parsers are easy prey for hostile files.
#include "imagefile/helper/helper.h"

#include <emf2svg.h>
#include <libwmf/api.h>
#include <libwmf/gd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <unistd.h>
#include <vector>

namespace ostrivex::helper {

namespace {

using Bytes = std::vector<unsigned char>;

unsigned rd16(const Bytes& b, size_t at) {
    return unsigned(b[at]) | unsigned(b[at + 1]) << 8;
}
unsigned rd32(const Bytes& b, size_t at) {
    return rd16(b, at) | rd16(b, at + 2) << 16;
}
void wr16(Bytes& b, size_t at, unsigned v) {
    b[at] = (unsigned char)(v & 0xFF);
    b[at + 1] = (unsigned char)((v >> 8) & 0xFF);
}
void put16(Bytes& b, unsigned v) {
    b.push_back((unsigned char)(v & 0xFF));
    b.push_back((unsigned char)((v >> 8) & 0xFF));
}
void putRecord(Bytes& b, unsigned function, std::initializer_list<unsigned> params) {
    const unsigned words = 3 + unsigned(params.size());
    put16(b, words);
    put16(b, 0);
    put16(b, function);
    for (unsigned p : params)
        put16(b, p);
}

// libwmf maps the picture onto a device box of its own units and draws the box it is
// given onto the output. To draw the placeable header's whole frame (the file's own size,
// margins included) rather than the bounds of what was drawn, the frame's device box is
// measured: a copy of the file with an invisible rectangle over the frame appended just
// before the end record is scanned. Empty if the file is not a placeable metafile or its
// records do not walk cleanly.
Bytes framedCopy(const Bytes& file) {
    constexpr size_t kPlaceable = 22, kHeader = 18;
    if (file.size() < kPlaceable + kHeader + 6 || rd32(file, 0) != 0x9AC6CDD7u) return {};
    const unsigned left = rd16(file, 6), top = rd16(file, 8);
    const unsigned right = rd16(file, 10), bottom = rd16(file, 12);
    const unsigned objects = rd16(file, kPlaceable + 10);
    std::vector<bool> used(objects + 1, false);
    size_t at = kPlaceable + kHeader;
    for (;;) {
        if (at + 6 > file.size()) return {};
        const size_t words = rd32(file, at);
        const unsigned function = rd16(file, at + 4);
        if (function == 0) break;
        if (words < 3 || at + words * 2 > file.size()) return {};
        switch (function) {
        case 0x2FA:
        case 0x2FB:
        case 0x2FC:
        case 0x142:
        case 0x0F7:
        case 0x6FF:
        case 0x1F9: {
            auto slot = std::find(used.begin(), used.end(), false);
            if (slot != used.end()) *slot = true;
            break;
        }
        case 0x1F0:
            if (words >= 4) {
                const unsigned index = rd16(file, at + 6);
                if (index < used.size()) used[index] = false;
            }
            break;
        default:
            break;
        }
        at += words * 2;
    }
    const unsigned pen = unsigned(std::find(used.begin(), used.end(), false) - used.begin());
    Bytes out(file.begin(), file.begin() + long(at));
    putRecord(out, 0x2FA, {5, 0, 0, 0, 0});            // CreatePenIndirect, PS_NULL
    putRecord(out, 0x12D, {pen});                      // SelectObject
    putRecord(out, 0x41B, {bottom, right, top, left}); // Rectangle
    out.insert(out.end(), file.begin() + long(at), file.end());
    wr16(out, kPlaceable + 10, std::max(objects, pen + 1));
    const size_t totalWords = (out.size() - kPlaceable) / 2;
    wr16(out, kPlaceable + 6, unsigned(totalWords & 0xFFFF));
    wr16(out, kPlaceable + 8, unsigned(totalWords >> 16));
    return out;
}

// libwmf looks for the PostScript standard fonts as Type 1 files, which this system may
// not have; every standard name is mapped to a TrueType file that is present instead (a
// metafile's text then draws in a stand-in face rather than failing the whole picture).
const char* standInFont() {
    static const char* const candidates[] = {
        "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf",
        "/usr/share/fonts/truetype/liberation/LiberationSans-Regular.ttf",
        "/usr/share/fonts/truetype/freefont/FreeSans.ttf",
        "/usr/share/fonts/type1/gsfonts/n019003l.pfb",
    };
    for (const char* c : candidates)
        if (FILE* f = std::fopen(c, "rb")) {
            std::fclose(f);
            return c;
        }
    return nullptr;
}

// A libwmf player on the raster device, with the stand-in fonts.
struct WmfPlayer {
    wmfAPI* api = nullptr;
    std::vector<wmfMapping> psMap;
    WmfPlayer() {
        wmfAPI_Options options;
        std::memset(&options, 0, sizeof options);
        options.function = wmf_gd_function;
        unsigned long flags = WMF_OPT_FUNCTION | WMF_OPT_IGNORE_NONFATAL;
        static const char* const psNames[] = {
            "Times-Roman", "Times-Italic",      "Times-Bold",     "Times-BoldItalic",
            "Helvetica",   "Helvetica-Oblique", "Helvetica-Bold", "Helvetica-BoldOblique",
            "Courier",     "Courier-Oblique",   "Courier-Bold",   "Courier-BoldOblique",
            "Symbol",      "ZapfDingbats"};
        if (const char* font = standInFont()) {
            for (const char* name : psNames)
                psMap.push_back(
                    {const_cast<char*>(name), const_cast<char*>(font), FT_ENCODING_NONE});
            psMap.push_back({nullptr, nullptr, FT_ENCODING_NONE});
            options.font.ps = psMap.data();
            flags |= WMF_OPT_FONTMAP;
        }
        if (wmf_api_create(&api, flags, &options) != wmf_E_None) api = nullptr;
    }
    ~WmfPlayer() {
        if (api) wmf_api_destroy(api);
    }
    bool scan(Bytes& bytes, wmfD_Rect& box) {
        return api && wmf_mem_open(api, bytes.data(), long(bytes.size())) == wmf_E_None &&
               wmf_scan(api, 0, &box) == wmf_E_None;
    }
};

bool readAll(std::FILE* in, Bytes& out) {
    unsigned char buffer[65536];
    size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, in)) > 0)
        out.insert(out.end(), buffer, buffer + n);
    return !std::ferror(in);
}

} // namespace

// WMF at 96 dots per inch through libwmf's raster device, composed on white.
bool RenderWmf(std::FILE* in, const codec::SizeLimits& limits, codec::PixelSink& sink,
               codec::DecodeInfo& info) {
    Bytes file;
    if (!readAll(in, file) || file.size() < 18) return false;
    wmfD_Rect frame;
    bool haveFrame = false;
    Bytes probe = framedCopy(file);
    if (!probe.empty()) {
        WmfPlayer measure;
        haveFrame = measure.scan(probe, frame);
    }
    WmfPlayer player;
    wmfD_Rect bbox;
    unsigned int width = 0, height = 0;
    // A metafile draws at any size from a few records: the budget is the only bound.
    codec::SizeLimits drawn = limits;
    drawn.fileBytes = UINT64_MAX / codec::kMaxPixelsPerFileByte;
    if (!player.scan(file, bbox) ||
        wmf_display_size(player.api, &width, &height, 96, 96) != wmf_E_None ||
        !codec::SizeAllowed(width, height, drawn))
        return false;
    if (haveFrame) bbox = frame;
    wmf_gd_t* gd = WMF_GD_GetData(player.api);
    gd->type = wmf_gd_image;
    gd->bbox = bbox;
    gd->width = width;
    gd->height = height;
    if (wmf_play(player.api, 0, &bbox) != wmf_E_None || !gd->gd_image) return false;
    const int* px = wmf_gd_image_pixels(gd->gd_image);
    if (!px || !sink.begin(int32_t(width), int32_t(height))) return false;
    for (unsigned y = 0; y < height; ++y) {
        uint8_t* d = sink.row(int32_t(y));
        for (unsigned x = 0; x < width; ++x, d += 4) {
            // gd true colour: 7-bit alpha (0 opaque .. 127 clear), then red, green, blue.
            const unsigned v = unsigned(px[size_t(y) * width + x]);
            const unsigned a = 127 - ((v >> 24) & 0x7F);
            auto over = [a](unsigned c) { return uint8_t((c * a + 255 * (127 - a) + 63) / 127); };
            d[0] = over(v & 0xFF);
            d[1] = over((v >> 8) & 0xFF);
            d[2] = over((v >> 16) & 0xFF);
            d[3] = 0;
        }
    }
    info = codec::DecodeInfo();
    info.dpiX = info.dpiY = 96;
    return true;
}

int ConvertEmf(std::FILE* in, int svgFd) {
    Bytes bytes;
    if (!readAll(in, bytes) || bytes.size() < 88) return 1; // no room for a header
    generatorOptions options;
    std::memset(&options, 0, sizeof options);
    options.nameSpace = const_cast<char*>("svg");
    options.svgDelimiter = true;
    options.emfplus = true;
    char* out = nullptr;
    size_t outLength = 0;
    int ok =
        emf2svg(reinterpret_cast<char*>(bytes.data()), bytes.size(), &out, &outLength, &options);
    int rc = 1;
    if (ok && out && outLength > 0) {
        size_t done = 0;
        while (done < outLength) {
            const ssize_t n = write(svgFd, out + done, outLength - done);
            if (n <= 0) break;
            done += size_t(n);
        }
        if (done == outLength) rc = 0;
    }
    std::free(out);
    return rc;
}

} // namespace ostrivex::helper
