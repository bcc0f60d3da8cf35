// The filter texts of the file dialogs, and the small rules that go with them.
#include "imagefile/imagefile.h"

namespace ostrivex {

// Kept character for character, odd spots included: the comma in "*.rgb,*.rgba" of the
// first list (so that list does not find .rgb files), the blank before "*.koa", the
// trailing ";" after "*.jpeg" in the save lists.
const char* const kOpenFilter =
    "All Supported Picture "
    "Formats|*.olf;*.psp;*.pic;*.pix;*.pxr;*.xpm;*.raw;*.dcx;*.dds;*.lif;*.wal;*.mdl;*.lmp;*.sgi;*."
    "bw;*.rgb,*.rgba;*.bmp;*.pdd;*.vda;*.icb;*.vst;*.rle;*.jpe;*.wbmp;*.dib;*.wmf;*.emf;*.gif;*."
    "jpg;*.jpeg;*.png;*.pcx;*.pbm;*.pgm;*.ppm;*.ico;*.psd;*.jng;*.mng;*.tif;*.koa;*.pcd;*.ras;*."
    "sun;*.tga;*.cut;*.iff;*.lbm|"
    "Ostrivex Layers Format (*.OLF)|*.olf|"
    "Bitmap Files (*.BMP;*.DIB;*.RLE)|*.bmp;*.dib;*.rle|"
    "Meta Files (*.WMF;*.EMF)|*.wmf;*.emf|"
    "Graphical Interface Format(*.GIF)|*.gif|"
    "JPEG Group (*.JPG;*.JPE;*.JPEG)|*.jpg;*.jpe;*.jpeg|"
    "Portable Network Graphics (*.PNG)|*.png|"
    "Zsoft Paintbrush Files (*.PCX, *.DCX)|*.pcx;*.dcx|"
    "Wireless Bitmap (*.WBMP)|*.wbmp|"
    "Portable Bitmap (*.PBM)|*.pbm|"
    "Portable Graymap (*.PGM)|*.pgm|"
    "Portable Pixelmap (*.PPM)|*.ppm|"
    "Photoshop (*.PSD;*.PDD)|*.psd;*.pdd|"
    "JPEG Network Graphics (*.JNG)|*.jng|"
    "Multiple Network Graphics (*.MNG)|*.mng|"
    "Tagged Image File Format (*.TIF;*.TIFF)|*.tif;*.tiff|"
    "Commodore 64 Koala format (*.KOA)| *.koa|"
    "Kodak PhotoCD (*.PCD)|*.pcd|"
    "Sun Rasterfile (*.RAS;*.SUN)|*.ras;*.sun|"
    "Targa files (*.TGA;*.VDA;*.ICB;*.VST)|*.tga;*.vda;*.icb;*.vst|"
    "Dr.Halo bitmap (*.CUT)|*.cut|"
    "Interchanged File Format (*.IFF)|*.iff|"
    "Deluxe Paint package (*.LBM)|*.lbm|"
    "DirectDraw Surface (*.DDS)|*.dds|"
    "Homeworld File (*.LIF)|*.lif|"
    "Doom Walls / Flats (*.LMP)|*.lmp|"
    "Half-Life Model (*.MDL)|*.mdl|"
    "PIC (*.PIC)|*.pic|"
    "Alias  PIX (*.PIX)|*.pix|"
    "Pixar (*.PXR)|*.pxr|"
    "Silicon Graphics (*.SGI, *.BW, *.RGB, *.RGBA)|*.sgi;*.bw;*.rgb;*.rgba|"
    "Quake2 Texture (*.WAL)|*.wal|"
    "X Pixel Map (XPM)|*.xpm|"
    "Paint Shop Pro (*.PSP)|*.psp|"
    "Raw Data (*.RAW)|*.raw";

const char* const kLayerOpenFilter =
    "All Supported Picture "
    "Formats|*.psp;*.pic;*.pix;*.pxr;*.xpm;*.raw;*.dcx;*.dds;*.lif;*.wal;*.mdl;*.lmp;*.sgi;*.bw;*."
    "rgb,*.rgba;*.bmp;*.pdd;*.vda;*.icb;*.vst;*.rle;*.jpe;*.wbmp;*.dib;*.wmf;*.emf;*.gif;*.jpg;*."
    "jpeg;*.png;*.pcx;*.pbm;*.pgm;*.ppm;*.psd;*.jng;*.mng;*.tif;*.koa;*.pcd;*.ras;*.sun;*.tga;*."
    "cut;*.iff;*.lbm|"
    "Bitmap Files (*.BMP;*.DIB;*.RLE)|*.bmp;*.dib;*.rle|"
    "Meta Files (*.WMF;*.EMF)|*.wmf;*.emf|"
    "Graphical Interface Format(*.GIF)|*.gif|"
    "JPEG Group (*.JPG;*.JPE;*.JPEG)|*.jpg;*.jpe;*.jpeg|"
    "Portable Network Graphics (*.PNG)|*.png|"
    "Zsoft Paintbrush Files (*.PCX, *.DCX)|*.pcx;*.dcx|"
    "Wireless Bitmap (*.WBMP)|*.wbmp|"
    "Portable Bitmap (*.PBM)|*.pbm|"
    "Portable Graymap (*.PGM)|*.pgm|"
    "Portable Pixelmap (*.PPM)|*.ppm|"
    "Photoshop (*.PSD;*.PDD)|*.psd;*.pdd|"
    "JPEG Network Graphics (*.JNG)|*.jng|"
    "Multiple Network Graphics (*.MNG)|*.mng|"
    "Tagged Image File Format (*.TIF;*.TIFF)|*.tif;*.tiff|"
    "Commodore 64 Koala format (*.KOA)| *.koa|"
    "Kodak PhotoCD (*.PCD)|*.pcd|"
    "Sun Rasterfile (*.RAS;*.SUN)|*.ras;*.sun|"
    "Targa files (*.TGA;*.VDA;*.ICB;*.VST)|*.tga;*.vda;*.icb;*.vst|"
    "Dr.Halo bitmap (*.CUT)|*.cut|"
    "Interchanged File Format (*.IFF)|*.iff|"
    "Deluxe Paint package (*.LBM)|*.lbm|"
    "DirectDraw Surface (*.DDS)|*.dds|"
    "Homeworld File (*.LIF)|*.lif|"
    "Doom Walls / Flats (*.LMP)|*.lmp|"
    "Half-Life Model (*.MDL)|*.mdl|"
    "PIC (*.PIC)|*.pic|"
    "Alias  PIX (*.PIX)|*.pix|"
    "Pixar (*.PXR)|*.pxr|"
    "Silicon Graphics (*.SGI, *.BW, *.RGB, *.RGBA)|*.sgi;*.bw;*.rgb;*.rgba|"
    "Quake2 Texture (*.WAL)|*.wal|"
    "X Pixel Map (*.XPM)|*.xpm|"
    "Paint Shop Pro (*.PSP)|*.psp|"
    "Raw Data (*.RAW)|*.raw";

const char* const kSaveFilter =
    "All Supported graphic formats "
    "|*.bmp;*.dib;*.rle;*.gif;*.jpg;*.jpeg;*.jpe;*.jif;*.png;*.tga;*.vst;*.vda;*.icb;*.pcx;*.tif;*."
    "pbm;*.pgm;*.ppm;*.psd;*.raw;*.sgi;*.bw;*.rgb;*.rgba|"
    "Windows Bitmap Files (*.bmp)|*.bmp|"
    "Graphical Interface Format (*.GIF)|*.gif|"
    "Independent JPEG Group (*.JPG;*.JPEG)|*.jpg;*.jpeg;|"
    "Portable Network Graphics (*.PNG)|*.png|"
    "Targa files (*.TGA;*.VDA;*.VST;*.ICB)|*.tga;*.vda;*.vst;*.icb|"
    "Zsoft Paintbrush (*.PCX)|*.pcx|"
    "Tagged Image File Format (*.TIF;*.TIFF)|*.tif;*.tiff|"
    "Portable Bitmap(*.PBM)|*.pbm|"
    "Portable Graymap(*.PGM)|*.pgm|"
    "Portable Pixelmap(*.PPM)|*.ppm|"
    "PhotoShop (PSD)|*.psd|"
    "Silicon Graphics (SGI,BW,RGB,RGBA)|*.sgi;*.bw;*.rgb;*.rgba|"
    "Raw Data (RAW)|*.raw";

const char* const kLayeredSaveFilter =
    "All Supported graphic formats "
    "|*.olf;*.bmp;*.gif;*.jpg;*.jpeg;*.jpe;*.png;*.tga;*.vst;*.vda;*.icb;*.pcx;*.tif;*.tiff;*.pbm;*"
    ".pgm;*.ppm;*.psd;*.sgi;*.bw;*.rgb;*.rgba|"
    "Ostrivex Layers Format (*.OLF)|*.olf|"
    "Windows Bitmap Files (*.BMP)|*.bmp|"
    "Graphical Interface Format (*.GIF)|*.gif|"
    "Independent JPEG Group (*.JPG;*.JPEG)|*.jpg;*.jpeg;|"
    "Portable Network Graphics (*.PNG)|*.png|"
    "Targa files (*.TGA;*.VDA;*.VST;*.ICB)|*.tga;*.vda;*.vst;*.icb|"
    "Zsoft Paintbrush (*.PCX)|*.pcx|"
    "Tagged Image File Format (*.TIF;*.TIFF)|*.tif;*.tiff|"
    "Portable Bitmap(*.PBM)|*.pbm|"
    "Portable Graymap(*.PGM)|*.pgm|"
    "Portable Pixelmap(*.PPM)|*.ppm|"
    "PhotoShop (PSD)|*.psd|"
    "Silicon Graphics (SGI,BW,RGB,RGBA)|*.sgi;*.bw;*.rgb;*.rgba";

std::string OptimizedSaveFilter(const std::string& extension) {
    return "*." + extension + "|*." + extension;
}

bool IsQuickSaveExtension(const std::string& extension) {
    static const char* const quick[] = {"bmp", "gif", "jpg", "tga", "tif", "png", "pcx"};
    const std::string ext = LowerExtension(extension);
    for (const char* q : quick)
        if (ext == q) return true;
    return false;
}

} // namespace ostrivex
