// The batch tool's --optimize: the output written by the web optimizer with a preset of
// the Optimize Box or of the web export, as the box would write it.
#include "tools/batch/batch.h"

#include "imagefile/imagefile.h"
#include "web/optimize.h"

#include <ostream>

namespace ostrivex::batch {

namespace {

// A preset by its text, the box's list first, then the export's own entries.
std::optional<OptimizeSettings> presetNamed(const std::string& name) {
    for (size_t i = 0; i < BoxPresets().size(); ++i)
        if (name == BoxPresets()[i].text) return SettingsForPreset(int(i));
    for (size_t i = 0; i < ExportPresets().size(); ++i)
        if (name == ExportPresets()[i].text) return SettingsForExportPreset(int(i));
    return std::nullopt;
}

bool isPaletteFormat(const OptimizeSettings& s) {
    return s.Format == WebFormat::Gif || s.Format == WebFormat::Png8 ||
           (s.Format == WebFormat::Bmp && s.BitsPerPixel <= 8);
}

bool sameExtension(const std::string& output, const std::string& wanted) {
    std::string ext = ExtensionOf(output);
    if (ext == "jpeg") ext = "jpg";
    if (ext == "tiff") ext = "tif";
    return ext == wanted;
}

} // namespace

std::optional<OptimizeSettings> parseOptimizeOptions(const OptimizeOptions& o, const std::string& output,
                                                     std::string& error) {
    std::optional<OptimizeSettings> s = presetNamed(o.preset);
    if (!s) {
        error = "unknown preset '" + o.preset + "' (see --help)";
        return std::nullopt;
    }
    if (o.map) {
        if (!isPaletteFormat(*s)) {
            error = "--map: " + o.preset + " has no colour map";
            return std::nullopt;
        }
        bool found = false;
        for (const auto* list : {&ColourMaps(), &ExportMaps()})
            for (const MapChoice& m : *list)
                if (*o.map == m.text) s->PaletteMode = m.value, found = true;
        if (!found) {
            error = "--map: unknown colour map '" + *o.map + "' (see --help)";
            return std::nullopt;
        }
    }
    if (o.dither) {
        bool found = false;
        for (const auto* list : {&Dithers(), &ExportDithers()})
            for (const DitherChoice& d : *list)
                if (*o.dither == d.text) s->DitherMode = d.value, found = true;
        if (!found) {
            error = "--dither: unknown dither '" + *o.dither + "' (see --help)";
            return std::nullopt;
        }
    }
    if (o.interlaced) {
        if (s->Format != WebFormat::Gif) {
            error = "--interlaced: only the GIF presets interlace";
            return std::nullopt;
        }
        SetInterlaced(*s, true);
    }
    if (o.quality) {
        if (s->Format != WebFormat::Jpeg) {
            error = "--quality: only the JPEG presets take a quality";
            return std::nullopt;
        }
        const std::optional<int32_t> q = ParseCustomQuality(*o.quality);
        if (!q) {
            error = std::string("--quality: ") + kCustomQualityMessage;
            return std::nullopt;
        }
        s->JpegQuality = *q;
    }
    const std::string ext = GetOptimizedFileExtension(*s);
    if (!sameExtension(output, ext)) {
        error = o.preset + " writes ." + ext + " files; name the output so";
        return std::nullopt;
    }
    return s;
}

int writeOptimized(const Bits& picture, const OptimizeSettings& s, const std::string& output,
                   std::ostream& out, std::ostream& err) {
    const OptimizeResult r = Optimize(picture, s, {}, false);
    std::string error = r.error;
    if (!r.ok || !WriteFileAtomically(output, r.bytes, error)) {
        err << "ostrivex-batch: " << output << ": " << error << "\n";
        return 2;
    }
    out << FormatText(s) << "\n"
        << SizeText(r.bytes.size(), SourceBytes(picture.width(), picture.height())) << "\n";
    return 0;
}

void printOptimizeHelp(std::ostream& out) {
    out << "\nOptimized output (--optimize PRESET [--map NAME] [--dither NAME] [--interlaced]\n"
           "[--quality N]): OUTPUT is written as the Optimize Box writes it, and its format and\n"
           "exact byte count are printed. OUTPUT must have the preset's extension.\n"
           "  Presets (the Optimize Box):\n";
    for (size_t i = 0; i < BoxPresets().size(); ++i) {
        out << "    \"" << BoxPresets()[i].text << "\"";
        const std::vector<MapChoice> maps = PresetMaps(int(i));
        if (!maps.empty()) {
            out << "  maps:";
            for (const MapChoice& m : maps) out << " \"" << m.text << "\"";
        }
        out << "\n";
    }
    out << "  Presets of the web export, any map:\n";
    for (size_t i = 8; i < ExportPresets().size(); ++i) {
        const std::string text = ExportPresets()[i].text;
        bool inBox = false;
        for (const WebPreset& p : BoxPresets()) inBox |= text == p.text;
        if (!inBox) out << "    \"" << text << "\"\n";
    }
    out << "  Maps:";
    for (const MapChoice& m : ColourMaps()) out << " \"" << m.text << "\"";
    out << "\n        (the export's names too:";
    for (const MapChoice& m : ExportMaps()) out << " \"" << m.text << "\"";
    out << ")\n  Dithers:";
    for (const DitherChoice& d : Dithers()) out << " \"" << d.text << "\"";
    out << "\n  --interlaced: GIF presets only. --quality N: JPEG presets, a whole number from 1\n"
           "  to 99 (the box's custom quality).\n";
}

} // namespace ostrivex::batch
