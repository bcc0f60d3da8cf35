// JPEG through libjpeg-turbo, straight into and out of the pixel rows (its BGRX colour
// space is the buffer's own layout, so no conversion pass is needed).
#include "imagefile/codecs/codec.h"

#include <csetjmp>
#include <cstring>
#include <vector>

#include <jpeglib.h>
// jpeglib.h must come first: jerror.h uses its types.
#include <jerror.h>

namespace ostrivex::codec {

namespace {

struct ErrorManager {
    jpeg_error_mgr pub;
    std::jmp_buf jump;
};

[[noreturn]] void errorExit(j_common_ptr cinfo) {
    std::longjmp(reinterpret_cast<ErrorManager*>(cinfo->err)->jump, 1);
}

// Warnings that mean the data ran out are failures: without this a file cut anywhere
// loads with its missing rows grey. Others (stray bytes before a marker, unknown
// markers) leave a whole picture and are let pass, as other readers do.
void emitMessage(j_common_ptr cinfo, int level) {
    if (level < 0 && (cinfo->err->msg_code == JWRN_JPEG_EOF || cinfo->err->msg_code == JWRN_HIT_MARKER))
        std::longjmp(reinterpret_cast<ErrorManager*>(cinfo->err)->jump, 1);
}

void silent(j_common_ptr) {}

void useErrorManager(ErrorManager& err, jpeg_common_struct* cinfo) {
    cinfo->err = jpeg_std_error(&err.pub);
    err.pub.error_exit = errorExit;
    err.pub.emit_message = emitMessage;
    err.pub.output_message = silent;
}

int dotsPerInch(const jpeg_decompress_struct& c, UINT16 density) {
    if (density == 0) return 72;
    if (c.density_unit == 1) return density;
    if (c.density_unit == 2) return int(density * 2.54 + 0.5);
    return 72;
}

// The decode proper; the caller owns the structure and destroys it on either outcome.
// `scratch` (CMYK rows) is the caller's, so nothing here needs a destructor when the
// library jumps out.
bool decode(jpeg_decompress_struct& c, ErrorManager& err, std::FILE* in, const SizeLimits& limits,
            PixelSink& sink, DecodeInfo& info, std::vector<uint8_t>& scratch) {
    if (setjmp(err.jump)) return false;
    jpeg_stdio_src(&c, in);
    if (jpeg_read_header(&c, TRUE) != JPEG_HEADER_OK) return false;
    if (!SizeAllowed(c.image_width, c.image_height, limits)) return false;
    const bool cmyk = c.jpeg_color_space == JCS_CMYK || c.jpeg_color_space == JCS_YCCK;
    const bool grey = c.num_components == 1;
    c.out_color_space = cmyk ? JCS_CMYK : grey ? JCS_GRAYSCALE : JCS_EXT_BGRX;
    info.bpp = grey ? 8 : 24;
    info.dpiX = dotsPerInch(c, c.X_density);
    info.dpiY = dotsPerInch(c, c.Y_density);
    jpeg_start_decompress(&c);
    const int32_t w = int32_t(c.output_width), h = int32_t(c.output_height);
    if (!sink.begin(w, h)) return false;
    if (cmyk || grey) scratch.resize(size_t(w) * size_t(c.output_components));
    // Adobe's writers store CMYK inverted (0 is full ink) and say so in their marker;
    // the colour is then C' K' / 255 for red, and so on.
    const bool inverted = c.saw_Adobe_marker;
    while (c.output_scanline < c.output_height) {
        const int32_t y = int32_t(c.output_scanline);
        uint8_t* d = sink.row(y);
        JSAMPROW target = (cmyk || grey) ? scratch.data() : d;
        if (jpeg_read_scanlines(&c, &target, 1) != 1) return false;
        if (grey) {
            for (int32_t x = 0; x < w; ++x) {
                d[x * 4] = d[x * 4 + 1] = d[x * 4 + 2] = scratch[size_t(x)];
                d[x * 4 + 3] = 0;
            }
        } else if (cmyk) {
            for (int32_t x = 0; x < w; ++x) {
                const uint8_t* s = scratch.data() + size_t(x) * 4;
                uint32_t cc = s[0], m = s[1], yy = s[2], k = s[3];
                if (!inverted) cc = 255 - cc, m = 255 - m, yy = 255 - yy, k = 255 - k;
                d[x * 4 + 0] = uint8_t((yy * k + 127) / 255);
                d[x * 4 + 1] = uint8_t((m * k + 127) / 255);
                d[x * 4 + 2] = uint8_t((cc * k + 127) / 255);
                d[x * 4 + 3] = 0;
            }
        } else {
            for (int32_t x = 0; x < w; ++x)
                d[x * 4 + 3] = 0;
        }
    }
    jpeg_finish_decompress(&c);
    return true;
}

bool encode(jpeg_compress_struct& c, ErrorManager& err, std::FILE* out, int32_t width,
            int32_t height, int quality, const uint8_t* (*rows)(const void*, int32_t),
            const void* context) {
    if (setjmp(err.jump)) return false;
    jpeg_stdio_dest(&c, out);
    c.image_width = JDIMENSION(width);
    c.image_height = JDIMENSION(height);
    c.input_components = 4;
    c.in_color_space = JCS_EXT_BGRX;
    jpeg_set_defaults(&c);
    jpeg_set_quality(&c, quality, TRUE);
    c.density_unit = 1;
    c.X_density = c.Y_density = 72;
    jpeg_start_compress(&c, TRUE);
    while (c.next_scanline < c.image_height) {
        // The library only reads the rows it is given.
        JSAMPROW row = const_cast<JSAMPROW>(rows(context, int32_t(c.next_scanline)));
        jpeg_write_scanlines(&c, &row, 1);
    }
    jpeg_finish_compress(&c);
    return true;
}

} // namespace

bool DecodeJpeg(std::FILE* in, const SizeLimits& limits, PixelSink& sink, DecodeInfo& info) {
    jpeg_decompress_struct c;
    ErrorManager err;
    std::memset(&c, 0, sizeof c);
    useErrorManager(err, reinterpret_cast<jpeg_common_struct*>(&c));
    jpeg_create_decompress(&c);
    std::vector<uint8_t> scratch;
    const bool ok = decode(c, err, in, limits, sink, info, scratch);
    jpeg_destroy_decompress(&c);
    return ok;
}

bool EncodeJpeg(std::FILE* out, int32_t width, int32_t height, int quality,
                const uint8_t* (*rows)(const void* context, int32_t y), const void* context) {
    if (width < 1 || height < 1 || width > 65500 || height > 65500) return false;
    jpeg_compress_struct c;
    ErrorManager err;
    std::memset(&c, 0, sizeof c);
    useErrorManager(err, reinterpret_cast<jpeg_common_struct*>(&c));
    jpeg_create_compress(&c);
    const bool ok = encode(c, err, out, width, height, quality, rows, context);
    jpeg_destroy_compress(&c);
    return ok;
}

} // namespace ostrivex::codec
