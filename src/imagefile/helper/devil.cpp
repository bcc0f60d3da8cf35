// DevIL in the helper: loads by type into the answer, and conversions between its
// formats for the saves.
#include "imagefile/helper/helper.h"

#include <IL/il.h>
#include <IL/ilu.h>
#include <IL/ilut.h>

#include <cstdlib>
#include <unistd.h>

namespace ostrivex::helper {

namespace {

uint64_t allocationLimit = 0;

void* ILAPIENTRY boundedAlloc(const ILsizei size) {
    if (allocationLimit && size > allocationLimit) return nullptr;
    return std::malloc(size);
}
void ILAPIENTRY plainFree(const void* p) {
    std::free(const_cast<void*>(p));
}

// DevIL opens its file by name; every open here is of the picture being decoded (the one
// handed over as descriptor 3, or the server's current file), from its start. Reads note a read that came back short: a file cut off
// before the end of the data its header promises (several loaders would otherwise fill
// the missing rows with zeros and call the picture good).
bool shortRead = false;
int input = kInputFd;

// A loader that keeps reading past the end is going round in circles: give up now rather
// than at the time limit.
int endsSeen = 0;
void atEnd() {
    if (++endsSeen > 4096) _exit(1);
}

ILHANDLE ILAPIENTRY ilOpen(ILconst_string) {
    const int fd = dup(input);
    if (fd < 0) return nullptr;
    lseek(fd, 0, SEEK_SET);
    return fdopen(fd, "rb");
}
void ILAPIENTRY ilClose(ILHANDLE h) {
    std::fclose(static_cast<FILE*>(h));
}
ILboolean ILAPIENTRY ilEof(ILHANDLE h) {
    return std::feof(static_cast<FILE*>(h)) ? IL_TRUE : IL_FALSE;
}
ILint ILAPIENTRY ilGetc(ILHANDLE h) {
    const int c = std::fgetc(static_cast<FILE*>(h));
    if (c == EOF) atEnd();
    return c;
}
ILint ILAPIENTRY ilRead(void* buf, ILuint size, ILuint count, ILHANDLE h) {
    const size_t n = std::fread(buf, size, count, static_cast<FILE*>(h));
    if (n < count) shortRead = true;
    if (n == 0 && count > 0) atEnd();
    return ILint(n);
}
ILint ILAPIENTRY ilSeek(ILHANDLE h, ILint offset, ILint origin) {
    return std::fseek(static_cast<FILE*>(h), offset, origin);
}
ILint ILAPIENTRY ilTell(ILHANDLE h) {
    return ILint(std::ftell(static_cast<FILE*>(h)));
}

// Saves go to the file handed over as descriptor 4, whatever name DevIL asks for.
ILHANDLE ILAPIENTRY ilOpenW(ILconst_string) {
    const int fd = dup(kAnswerFd);
    if (fd < 0) return nullptr;
    lseek(fd, 0, SEEK_SET);
    return fdopen(fd, "wb");
}
void ILAPIENTRY ilCloseW(ILHANDLE h) {
    std::fclose(static_cast<FILE*>(h));
}
ILint ILAPIENTRY ilPutc(ILubyte c, ILHANDLE h) {
    return std::fputc(c, static_cast<FILE*>(h));
}
ILint ILAPIENTRY ilSeekW(ILHANDLE h, ILint offset, ILint origin) {
    return std::fseek(static_cast<FILE*>(h), offset, origin);
}
ILint ILAPIENTRY ilTellW(ILHANDLE h) {
    return ILint(std::ftell(static_cast<FILE*>(h)));
}
ILint ILAPIENTRY ilWrite(const void* buf, ILuint size, ILuint count, ILHANDLE h) {
    return ILint(std::fwrite(buf, size, count, static_cast<FILE*>(h)));
}

void startDevil() {
    ilSetMemory(boundedAlloc, plainFree);
    ilInit();
    iluInit();
    // Pixels top row first whatever the file's own order, and saves may replace a file.
    ilEnable(IL_ORIGIN_SET);
    ilOriginFunc(IL_ORIGIN_UPPER_LEFT);
    ilEnable(IL_FILE_OVERWRITE);
    ilSetRead(ilOpen, ilClose, ilEof, ilGetc, ilRead, ilSeek, ilTell);
    ilSetWrite(ilOpenW, ilCloseW, ilPutc, ilSeekW, ilTellW, ilWrite);
}

} // namespace

void SetDevilAllocationLimit(uint64_t bytes) {
    allocationLimit = bytes;
}

bool DecodeWithDevil(std::FILE* in, const std::string& extension, bool raw,
                     const codec::SizeLimits& limits, codec::PixelSink& sink,
                     codec::DecodeInfo& info) {
    input = fileno(in);
    endsSeen = 0;
    startDevil();
    ILuint id = 0;
    ilGenImages(1, &id);
    ilBindImage(id);
    // The type comes from the extension alone: DevIL would otherwise guess it from the
    // contents when the extension has no loader, and load a png named .lmp.
    const std::string name = "picture." + extension;
    const ILenum type = raw ? ILenum(IL_RAW) : ilTypeFromExt(name.c_str());
    if (type == IL_TYPE_UNKNOWN) return false;
    shortRead = false;
    const ILboolean loaded = ilLoad(type, name.c_str());
    // The Pixar and SGI loaders take a cut file for a whole one; the others read ahead
    // past the end of good files too, and fail cut ones by themselves.
    const bool exactReader = type == IL_PXR || type == IL_SGI;
    if (loaded != IL_TRUE || (shortRead && exactReader)) return false;
    const ILint w = ilGetInteger(IL_IMAGE_WIDTH), h = ilGetInteger(IL_IMAGE_HEIGHT);
    if (!codec::SizeAllowed(w, h, limits)) return false;
    // The depth a BMP of this picture has when DevIL writes one: palettes and grey as 8
    // bits, pictures with alpha as 32, the rest as 24.
    info = codec::DecodeInfo();
    switch (ilGetInteger(IL_IMAGE_FORMAT)) {
    case IL_COLOUR_INDEX:
    case IL_LUMINANCE: info.bpp = 8; break;
    case IL_RGBA:
    case IL_BGRA:
    case IL_LUMINANCE_ALPHA: info.bpp = 32; break;
    default: info.bpp = 24; break;
    }
    if (ilConvertImage(IL_BGRA, IL_UNSIGNED_BYTE) != IL_TRUE) return false;
    const bool bottomUp = ilGetInteger(IL_IMAGE_ORIGIN) == IL_ORIGIN_LOWER_LEFT;
    const ILubyte* data = ilGetData();
    if (!data || !sink.begin(w, h)) return false;
    for (ILint y = 0; y < h; ++y) {
        const ILubyte* s = data + size_t(bottomUp ? h - 1 - y : y) * size_t(w) * 4;
        uint8_t* d = sink.row(y);
        for (ILint x = 0; x < w; ++x, s += 4, d += 4) {
            d[0] = s[0];
            d[1] = s[1];
            d[2] = s[2];
            d[3] = 0; // alpha is dropped
        }
    }
    ilDeleteImages(1, &id);
    return true;
}

int DevilConvert(const std::string& sourceExtension, const char* typeText) {
    char* end = nullptr;
    const long type = std::strtol(typeText, &end, 0);
    if (!end || *end || type <= 0) return 2;
    input = kInputFd;
    startDevil();
    ilutInit();
    ILuint id = 0;
    ilGenImages(1, &id);
    ilBindImage(id);
    const std::string name = "picture." + sourceExtension;
    const ILenum sourceType = ilTypeFromExt(name.c_str());
    if (sourceType == IL_TYPE_UNKNOWN || ilLoad(sourceType, name.c_str()) != IL_TRUE) return 1;
    // A raw file records no channel order and DevIL's raw loader reads red first, while a
    // picture loaded from a BMP is held blue first: put it in red-first order before.
    if (type == IL_RAW && ilConvertImage(IL_RGB, IL_UNSIGNED_BYTE) != IL_TRUE) return 1;
    const std::string target = "converted.out";
    const ILboolean saved = ilSave(ILenum(type), target.c_str());
    ilDeleteImages(1, &id);
    return saved == IL_TRUE ? 0 : 1;
}

} // namespace ostrivex::helper
