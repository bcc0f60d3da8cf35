// The optimizer: a picture and the settings in, the bytes of the optimized file and the
// picture as read back from them out. This is the `ImageConverter` of the Optimize Box and
// the web export, and the writer behind every GIF save.
//
// Palette formats (GIF, PNG-8, BMP of 1, 4 or 8 bits): the palette of the map ("Optimal"
// from the quantizer, the others fixed, colormaps.h), cut to the preset's size where the
// map is larger by keeping the entries the picture uses most; every pixel then takes an
// entry through the dither (dither.h). "Fixed Grey" and the export's "Greyscale" take the
// picture's luminance. True-colour formats write the picture as it is.
#pragma once

#include "pixel/bits.h"
#include "web/optimizesettings.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace ostrivex {

struct OptimizeResult {
    bool ok = false;
    bool cancelled = false;
    std::string error;             // why nothing was written, when !ok and !cancelled
    std::vector<uint8_t> bytes;    // the whole file
    std::string extension;         // "gif", "png", "jpg", ...
    Bits picture;                  // the file read back
    int32_t paletteEntries = 0;    // entries of the palette a palette format was given
};

// Runs the optimizer. `cancelled` is asked between stages and every few rows; when it
// says true the run stops and the result has `cancelled` set. With `readBack` false the
// result's picture stays empty (the byte count is all that is wanted).
OptimizeResult Optimize(const Bits& picture, const OptimizeSettings& settings,
                        const std::function<bool()>& cancelled = {}, bool readBack = true);

// The export options of the web export dialog, applied to a copy before it is optimized:
// colours inverted, rows reversed (flip vertical), columns reversed (flip horizontal).
Bits ApplyExportOptions(const Bits& picture, bool invert, bool flipVertical, bool flipHorizontal);

// Peak signal-to-noise ratio of `b` against `a` over red, green and blue, in decibels;
// +infinity for equal pictures, 0 when the sizes differ.
double Psnr(const Bits& a, const Bits& b);

// Writes `bytes` to `path` through a temporary file beside it that is renamed over the
// target only once every byte is written and the file is closed; a failure leaves any
// file of that name as it was. False (with a line in `error`) on failure.
bool WriteFileAtomically(const std::string& path, const std::vector<uint8_t>& bytes,
                         std::string& error);

// --- GIF saves ---------------------------------------------------------------------------
// The settings a GIF save uses: those the Optimize Box shows when it shows a GIF preset,
// else 256 colours "Optimal" without dither. The box keeps them current.
void SetGifSaveSettings(const OptimizeSettings* boxSettings);
OptimizeSettings GifSaveSettings();

// Writes `picture` as a GIF file with GifSaveSettings(); false with a line in `error`.
bool SaveGifFile(const Bits& picture, const std::string& path, std::string& error);

} // namespace ostrivex
