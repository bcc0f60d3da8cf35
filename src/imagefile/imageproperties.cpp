// The texts of the Image Properties dialog.
#include "imagefile/imageproperties.h"
#include "imagefile/imagefile.h"
#include "pixel/vbmath.h"

#include <QDateTime>
#include <QFileInfo>

#include <sys/stat.h>
#include <unistd.h>

namespace ostrivex {

namespace {

struct TypeName {
    const char* ext;
    const char* text;
};

// One entry per extension that the dialog knows.
const TypeName kTypes[] = {
    {"psp", "Paint Shop Pro Image"},
    {"pic", "Softimage PIC Image"},
    {"pix", "Alias PIX Image"},
    {"pxr", "Pixar Image"},
    {"xpm", "X Pixel Map"},
    {"raw", "Raw Image Data"},
    {"dcx", "Multi-page PCX Image"},
    {"dds", "DirectDraw Surface"},
    {"lif", "Homeworld Image"},
    {"wal", "Quake 2 Texture"},
    {"mdl", "Half-Life Model"},
    {"oil", "Open Image Library Image"},
    {"lmp", "Doom Wall / Flat"},
    {"sgi", "Silicon Graphics Image"},
    {"bw", "Silicon Graphics Image (Grey)"},
    {"rgb", "Silicon Graphics Image (RGB)"},
    {"rgba", "Silicon Graphics Image (RGBA)"},
    {"act", "Adobe Color Table"},
    {"pal", "Palette"},
    {"bmp", "Windows Bitmap"},
    {"rle", "Run-Length Encoded Bitmap"},
    {"gif", "Graphics Interchange Format"},
    {"wmf", "Windows Metafile"},
    {"emf", "Enhanced Metafile"},
    {"ico", "Icon"},
    {"dib", "Device Independent Bitmap"},
    {"cur", "Cursor"},
    {"cut", "Dr. Halo Image"},
    {"iff", "Interchange File Format Image"},
    {"jpg", "JPEG Image"},
    {"jpe", "JPEG Image"},
    {"jif", "JPEG Image"},
    {"jpeg", "JPEG Image"},
    {"jiff", "JPEG Image"},
    {"jff", "JPEG Image"},
    {"jfi", "JPEG Image"},
    {"jfif", "JPEG Image"},
    {"jbig", "JBIG Image"},
    {"jbg", "JBIG Image"},
    {"jtif", "JPEG Tagged Image"},
    {"koa", "Commodore 64 Koala Image"},
    {"lbm", "Deluxe Paint Image"},
    {"mng", "Multiple-image Network Graphics"},
    {"pcd", "Kodak PhotoCD Image"},
    {"pcx", "Zsoft Paintbrush Image"},
    {"png", "Portable Network Graphics"},
    {"psd", "Photoshop Image"},
    {"pdd", "Photoshop Image"},
    {"ras", "Sun Raster Image"},
    {"sun", "Sun Raster Image"},
    {"tga", "Targa Image"},
    {"vda", "Targa Image"},
    {"icb", "Targa Image"},
    {"vst", "Targa Image"},
    {"targa", "Targa Image"},
    {"tif", "Tagged Image File"},
    {"tiff", "Tagged Image File"},
    {"wbmp", "Wireless Bitmap"},
    {"pbm", "Portable Bitmap"},
    {"pgm", "Portable Graymap"},
    {"ppm", "Portable Pixelmap"},
    {"jng", "JPEG Network Graphics"},
};

} // namespace

std::string DepthText(int bpp) {
    switch (bpp) {
    case 1:
        return "Black & White";
    case 2:
        return "4 Colors";
    case 3:
        return "8 Colors";
    case 4:
        return "16 Colors";
    case 5:
        return "32 Colors";
    case 6:
        return "64 Colors";
    case 7:
        return "128 Colors";
    case 8:
        return "256 Colors";
    case 15:
        return "32668 Colors"; // the program's figures, not 2^15 and 2^16
    case 16:
        return "65336 Colors";
    case 24:
        return "16777216 Colors (True Color)";
    case 32:
        return "4294967296 Colors (High Color)";
    default:
        return "";
    }
}

std::string AttributeText(int a) {
    switch (a) {
    case 0:
        return "Normal";
    case 1:
        return "Read Only";
    case 2:
        return "Hidden";
    case 4:
        return "System";
    case 32:
        return "Normal, Archive";
    case 33:
        return "Archive, Read Only";
    case 34:
        return "Archive, Hidden";
    case 35:
        return "Archive, Read Only, Hidden";
    case 36:
        return "Archive, System";
    case 39:
        return "Archive, Read Only, Hidden, System";
    case 37:
        return "Archive, Read Only, System";
    case 38:
        return "Archive, Hidden, System";
    default:
        return "";
    }
}

std::string FileTypeText(const std::string& extension) {
    const std::string ext = LowerExtension(extension);
    for (const TypeName& t : kTypes)
        if (ext == t.ext) return t.text;
    return "";
}

std::string SizeText(uint64_t bytes) {
    return std::to_string(vbRound(double(bytes) / 1024.0)) + " KB";
}

ImagePropertiesText ImageProperties(const std::string& path, const std::string& documentName,
                                    int documentWidth, int documentHeight) {
    ImagePropertiesText t;
    const QFileInfo info(QString::fromStdString(path));
    if (path.empty() || !info.isFile()) {
        t.name = documentName;
        if (documentWidth > 0) t.width = std::to_string(documentWidth);
        if (documentHeight > 0) t.height = std::to_string(documentHeight);
        return t;
    }
    const std::string ext = ExtensionOf(path);
    t.name = info.fileName().toStdString();
    t.type = FileTypeText(ext);
    t.size = SizeText(uint64_t(info.size()));
    t.parent = info.absolutePath().toStdString();
    QDateTime created = info.birthTime();
    if (!created.isValid()) created = info.lastModified();
    t.date = created.toString("yyyy-MM-dd hh:mm:ss").toStdString();
    // Linux keeps no archive flag; every file counts as archived, as a file that was
    // written and not backed up does. Hidden files are the dot files; none is a system file.
    int attributes = 32;
    if (access(path.c_str(), W_OK) != 0) attributes |= 1;
    if (info.fileName().startsWith('.')) attributes |= 2;
    t.attribute = AttributeText(attributes);

    const ImageFileResult r = LoadDocumentImage(path, ext);
    if (r.ok) {
        t.width = std::to_string(r.pixels.width());
        t.height = std::to_string(r.pixels.height());
        t.resolution = std::to_string(r.dpiX) + " x " + std::to_string(r.dpiY);
        t.depth = DepthText(r.bpp);
        t.bits = std::to_string(r.bpp);
    } else {
        if (documentWidth > 0) t.width = std::to_string(documentWidth);
        if (documentHeight > 0) t.height = std::to_string(documentHeight);
    }
    return t;
}

} // namespace ostrivex
