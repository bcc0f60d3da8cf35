// How the editor and its helper program `ostrivex-devil` talk (internal to the image
// file code).
//
// The editor opens the file itself (only a regular file is handed over) and passes it as
// descriptor 3; the helper's answer goes into an anonymous memory file (memfd) passed as
// descriptor 4, which the editor maps once the helper has exited with status 0. So the
// pixels come back without a file in any folder, and the decoders' crashes and hangs stay
// in the helper.
//
//   decode <how> <extension> <budget bytes>
//       fd 3: the picture file; fd 4: a `PictureAnswer` and its rows.
//       how: devil | devilraw | fi:<FreeImage format number, -1 for the file's own type>
//            | dcx | sgi | wmf | pnm | jpeg | png | bmp
//   emf            fd 3: an EMF file; fd 4: the SVG that libemf2svg makes of it.
//   convert <source extension> <IL type number>
//                  fd 3: a picture DevIL loads by that extension; fd 4: the file it saves.
#pragma once

#include <cstdint>
#include <cstring>

namespace ostrivex::helper {

inline constexpr int kInputFd = 3;
inline constexpr int kAnswerFd = 4;

// The answer of a decode: this header, then width * height pixels of four bytes (blue,
// green, red, 0), rows top-down, no padding.
struct PictureAnswer {
    char magic[8] = {'O', 'S', 'T', 'X', 'P', 'I', 'X', '1'};
    int32_t width = 0;
    int32_t height = 0;
    int32_t bpp = 0;
    int32_t dpiX = 0;
    int32_t dpiY = 0;
    // Written last, once every row is in place.
    uint32_t complete = 0;

    bool valid() const {
        static const PictureAnswer reference;
        return std::memcmp(magic, reference.magic, sizeof magic) == 0 && complete == 1;
    }
};
static_assert(sizeof(PictureAnswer) == 32);

} // namespace ostrivex::helper
