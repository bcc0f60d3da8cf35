// Writes the palettes shipped in assets/Palettes. Run once from the source root:
//   g++ -std=c++20 -Isrc tools/palettegen.cpp src/pixel/palettefile.cpp -o /tmp/palettegen
//   /tmp/palettegen assets/Palettes
#include "pixel/palettefile.h"

#include <cmath>
#include <cstdio>
#include <string>

using namespace ostrivex;

namespace {

void set(PaletteRecord& p, int i, int r, int g, int b) {
    p.PaletteColors[i][0] = r;
    p.PaletteColors[i][1] = g;
    p.PaletteColors[i][2] = b;
}

bool write(const std::string& folder, const char* name, const PaletteRecord& p) {
    const std::string path = folder + "/" + name;
    if (WritePaletteFile(path, p)) return true;
    std::fprintf(stderr, "cannot write %s\n", path.c_str());
    return false;
}

} // namespace

int main(int argc, char** argv) {
    const std::string folder = argc > 1 ? argv[1] : ".";

    // The 216 colours every browser showed without dithering: six levels (steps of 51)
    // per channel, red slowest.
    PaletteRecord web;
    web.PaletteCount = 216;
    for (int i = 0; i < 216; ++i)
        set(web, i, i / 36 * 51, i / 6 % 6 * 51, i % 6 * 51);

    PaletteRecord grey;
    grey.PaletteCount = 256;
    for (int i = 0; i < 256; ++i)
        set(grey, i, i, i, i);

    // 3-3-2 bits: eight levels of red and green, four of blue, rounded to 0..255.
    PaletteRecord rgb332;
    rgb332.PaletteCount = 256;
    for (int i = 0; i < 256; ++i)
        set(rgb332, i, int(std::lround((i >> 5) * 255.0 / 7)),
            int(std::lround((i >> 2 & 7) * 255.0 / 7)), (i & 3) * 85);

    bool ok = write(folder, "VGA16.pal", VgaPalette());
    ok &= write(folder, "WebSafe216.pal", web);
    ok &= write(folder, "Greyscale256.pal", grey);
    ok &= write(folder, "RGB332.pal", rgb332);
    return ok ? 0 : 1;
}
