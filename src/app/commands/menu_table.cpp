#include "app/commands/menu_table.h"

#include <array>

namespace ostrivex {
namespace {

using R = MenuRoute;
using sv = std::string_view;

constexpr MenuEntry sep(sv menu, sv parent, sv array, int16_t i) {
    return {menu, parent, "-", "", "", R::Separator, array, i};
}
constexpr MenuEntry sub(sv menu, sv caption, sv array, int16_t i, bool hidden = false) {
    return {menu, "", caption, "", "", R::Submenu, array, i, 0, hidden};
}
constexpr MenuEntry st(sv menu, sv parent, sv caption, sv key, sv word, sv array, int16_t i) {
    return {menu, parent, caption, key, word, R::Static, array, i};
}
constexpr MenuEntry ex(sv menu, sv parent, sv caption, sv key, sv word, sv array, int16_t i) {
    return {menu, parent, caption, key, word, R::Exec, array, i};
}
// A layer effect: the effect number is the array's base plus the entry's index.
constexpr MenuEntry fx(sv menu, sv parent, sv caption, sv key, sv array, int16_t base, int16_t i,
                       bool hidden = false) {
    return {
        menu,  parent, caption, key, "", R::LayerEffect, array, i, static_cast<int16_t>(base + i),
        hidden};
}
constexpr MenuEntry blend(sv menu, sv parent, sv caption, int16_t i) {
    return {menu, parent, caption, "", "", R::LayerEffect, "LayerBlend", i, 0};
}
constexpr MenuEntry rt(sv menu, sv parent, sv caption, sv key, sv routine, sv array, int16_t i,
                       bool hidden = false, bool disabled = false) {
    return {menu, parent, caption, key, routine, R::Routine, array, i, 0, hidden, disabled};
}

// Bases of the layer effect arrays: the effect number of an entry is base + index.
constexpr int16_t kLayerAdjustment = 2, kLayerBlur = 16, kLayerTones = 27, kLayerDistortion = 31,
                  kLayerWaves = 48, kLayerBorders = 53, kLayerMetallic = 60, kLayerEffects = 64,
                  kLayerFlip = 78;

constexpr std::array kTopMenus{
    TopMenu{"mnuFile", "File"},
    TopMenu{"mnuEdit", "Edit"},
    TopMenu{"mnuAdjust", "Adjust"},
    TopMenu{"mnuLayers", "Layers"},
    TopMenu{"mnuFilters1", "Filters 1"},
    TopMenu{"mnuFilters2", "Filters 2"},
    TopMenu{"mnuDistortions", "Distortion"},
    TopMenu{"mnuDeformations", "Deformations"},
    TopMenu{"mnuColors1", "Colors 1"},
    TopMenu{"mnuColors2", "Colors 2"},
    TopMenu{"mnuTools", "Tools"},
    TopMenu{"mnuCapture", "Capture"},
    TopMenu{"mnuWallpaper", "Wallpaper"},
    TopMenu{"mnuViews", "Views"},
    TopMenu{"mnuAbout", "About"},
};

constexpr sv F = "mnuFile", E = "mnuEdit", A = "mnuAdjust", L = "mnuLayers", F1 = "mnuFilters1",
             F2 = "mnuFilters2", DI = "mnuDistortions", DE = "mnuDeformations", C1 = "mnuColors1",
             C2 = "mnuColors2", T = "mnuTools", CA = "mnuCapture", W = "mnuWallpaper",
             V = "mnuViews", AB = "mnuAbout";

constexpr std::array kTable{
    // File
    st(F, "", "New", "Ctrl+N", "NEW", "FILE", 0),
    st(F, "", "Open", "Ctrl+O", "OPEN", "FILE", 1),
    ex(F, "", "From Clipboard", "", "CREATEFROMCLIPBOARD", "FILE", 2),
    st(F, "", "Close", "", "CLOSE", "FILE", 3),
    sep(F, "", "FILE", 4),
    st(F, "", "Save Enhanced", "Ctrl+S", "SAVE", "FILE", 5),
    st(F, "", "Save Enhanced As", "", "SAVEAS", "FILE", 6),
    st(F, "", "Save Layered", "", "SAVELAYEREDIMAGE", "FILE", 7),
    st(F, "", "Save Layered As", "", "SAVELAYEREDIMAGEAS", "FILE", 8),
    st(F, "", "Save Optimized", "", "SAVEOPTIMIZED", "FILE", 9),
    st(F, "", "Save Optimized As", "", "SAVEOPTIMIZEDAS", "FILE", 10),
    st(F, "", "Save Image For Web...", "", "IMAGESAVEOPTIONS", "FILE", 11),
    sep(F, "", "FILE", 12),
    st(F, "", "Update Layer view from Enhance view", "", "UPDATELAYERS", "FILE", 13),
    st(F, "", "Update Enhance view From Layer view", "", "UPDATEORIGINAL", "FILE", 14),
    sep(F, "", "FILE", 15),
    st(F, "", "Printer Set up", "", "PRINTERSETUP", "PRINTER", 0),
    ex(F, "", "Print", "Ctrl+P", "PRINT", "PRINTER", 1),
    sep(F, "", "FILE", 16),
    sub(F, "Recent", "FILE", 17),
    sep(F, "", "FILE", 18),
    rt(F, "", "Exit", "", "Exit", "FILE", 19),
    // Edit
    ex(E, "", "Undo", "Ctrl+Z", "UNDO", "EDIT", 0),
    ex(E, "", "Redo", "Ctrl+Y", "REDO", "EDIT", 1),
    sep(E, "", "EDIT", 2),
    ex(E, "", "Cut", "Ctrl+X", "CUT", "EDIT", 3),
    ex(E, "", "Copy", "Ctrl+C", "COPY", "EDIT", 4),
    ex(E, "", "Paste", "Ctrl+V", "PASTE", "EDIT", 5),
    ex(E, "", "Create New Copy", "", "CREATENEWCOPY", "EDIT", 6),
    ex(E, "", "Copy Image to Clipboard", "Ctrl+G", "COPYIMAGETOCLIPBOARD", "EDIT", 7),
    ex(E, "", "Create From Clipboard", "Ctrl+H", "CREATEFROMCLIPBOARD", "EDIT", 8),
    sep(E, "", "EDIT", 9),
    ex(E, "", "Select All", "Ctrl+A", "SELECTALL", "EDIT", 10),
    ex(E, "", "Select None", "Del", "SELECTNONE", "EDIT", 11),
    ex(E, "", "Invert Selection", "Shift+Ins", "INVERTSELECTION", "EDIT", 12),
    ex(E, "", "Load Selection...", "", "LOADSELECTION", "EDIT", 13),
    ex(E, "", "Save Selection...", "", "SAVESELECTION", "EDIT", 14),
    sep(E, "", "EDIT", 15),
    ex(E, "", "Crop", "Ctrl+K", "CROP", "EDIT", 16),
    ex(E, "", "Create Crop as New Image", "Shift+Del", "NEWIMAGEFROMCROP", "EDIT", 17),
    sep(E, "", "EDIT", 18),
    ex(E, "", "Image Properties", "F2", "IMAGEPROPERTIES", "EDIT", 19),
    ex(E, "", "Preference...", "", "OPTIONS", "EDIT", 20),
    // Adjust
    ex(A, "", "Size ...", "Ctrl+T", "IMAGESIZE", "IMAGE", 0),
    ex(A, "", "Canvas ...", "Ctrl+B", "CANVASSIZE", "IMAGE", 1),
    ex(A, "", "Orientation ...", "Ctrl+W", "IMAGEORIENTATION", "IMAGE", 2),
    ex(A, "", "Rotation ...", "Ctrl+J", "IMAGEROTATE", "IMAGE", 3),
    sep(A, "", "IMAGE", 4),
    ex(A, "", "Levels...", "", "REDUCTION", "ADJUSTMENT", 0),
    ex(A, "", "Saturation...", "", "CUSTOMSATURATION", "ADJUSTMENT", 1),
    ex(A, "", "Brightness...", "", "BRIGHTNESS", "ADJUSTMENT", 2),
    ex(A, "", "Contrast...", "", "CONTRAST", "ADJUSTMENT", 3),
    ex(A, "", "Gamma...", "", "GAMMA", "ADJUSTMENT", 4),
    sep(A, "", "ADJUSTMENT", 5),
    rt(A, "", "Restore Original", "", "RestoreOriginal", "ADJUSTMENT", 6),
    sep(A, "", "IMAGE", 5),
    sub(A, "Zoom +", "IMAGE", 6),
    ex(A, "Zoom +", "200 %", "", "200", "ZoomP", 0),
    ex(A, "Zoom +", "300 %", "", "300", "ZoomP", 1),
    ex(A, "Zoom +", "400 %", "", "400", "ZoomP", 2),
    ex(A, "Zoom +", "500 %", "", "500", "ZoomP", 3),
    ex(A, "Zoom +", "600 %", "", "600", "ZoomP", 4),
    ex(A, "Zoom +", "700 %", "", "700", "ZoomP", 5),
    sub(A, "Quality Sizing", "IMAGE", 7),
    ex(A, "Quality Sizing", "2x", "", "2x", "AA", 0),
    ex(A, "Quality Sizing", "3x", "", "3x", "AA", 1),
    ex(A, "Quality Sizing", "4x", "", "4x", "AA", 2),
    ex(A, "Quality Sizing", "5x", "", "5x", "AA", 3),
    sep(A, "Quality Sizing", "AA", 4),
    ex(A, "Quality Sizing", "x/2", "", "x2", "AA", 5),
    ex(A, "Quality Sizing", "x/3", "", "x3", "AA", 6),
    ex(A, "Quality Sizing", "x/4", "", "x4", "AA", 7),
    ex(A, "Quality Sizing", "x/5", "", "x5", "AA", 8),
    ex(A, "", "Original Size", "", "ORIGINAL", "IMAGE", 8),
    sep(A, "", "IMAGE", 9),
    fx(A, "", "Flip Horizontally", "", "AdjustFlip", kLayerFlip, 0),
    fx(A, "", "Flip Vertically", "", "AdjustFlip", kLayerFlip, 1),
    fx(A, "", "Flip Both", "", "AdjustFlip", kLayerFlip, 2),
    // Layers
    sub(L, "New layer", "LAYERMENU", 0),
    rt(L, "New layer", "Shadow Text", "", "NEWLAYER_Click", "NEWLAYER", 0),
    rt(L, "New layer", "3D Text", "", "NEWLAYER_Click", "NEWLAYER", 1),
    rt(L, "New layer", "Style Text", "", "NEWLAYER_Click", "NEWLAYER", 2),
    rt(L, "New layer", "From Clipboard (Image)", "", "NEWLAYER_Click", "NEWLAYER", 3),
    rt(L, "New layer", "From Image File", "", "NEWLAYER_Click", "NEWLAYER", 4),
    rt(L, "", "Insert From ClipArt", "", "InsertClipArt", "LAYERMENU", 1),
    rt(L, "", "Set Transparent Color", "", "mnuTransparency_Click", "LAYERMENU", 2),
    sep(L, "", "LAYERMENU", 3),
    rt(L, "", "Hide", "", "LAYERS_Click", "LAYERS", 0),
    rt(L, "", "Hide All", "", "LAYERS_Click", "LAYERS", 1),
    rt(L, "", "Show", "Ctrl+E", "LAYERS_Click", "LAYERS", 2),
    rt(L, "", "Show All", "", "LAYERS_Click", "LAYERS", 3),
    rt(L, "", "Merge", "Ctrl+M", "LAYERS_Click", "LAYERS", 4),
    rt(L, "", "Merge All", "", "LAYERS_Click", "LAYERS", 5),
    rt(L, "", "Delete", "Ctrl+D", "LAYERS_Click", "LAYERS", 6),
    rt(L, "", "Delete All", "", "LAYERS_Click", "LAYERS", 7),
    sep(L, "", "LAYERS", 8),
    rt(L, "", "Duplicate Layer", "", "LAYERS_Click", "LAYERS", 9),
    rt(L, "", "Free Transform", "", "LAYERS_Click", "LAYERS", 10),
    sep(L, "", "LAYERS", 11),
    rt(L, "", "Selective Moveable", "Ctrl+L", "LAYERS_Click", "LAYERS", 12, false, true),
    rt(L, "", "Freely Moveable", "", "LAYERS_Click", "LAYERS", 13, false, true),
    sep(L, "", "LAYERMENU", 4),
    sub(L, "Flip", "LAYERMENU", 5),
    // The layer flips share the base of the Adjust flips by index, so "Vertical" (index 0)
    // runs effect 78, as the handler arrays are numbered.
    fx(L, "Flip", "Vertical", "", "LayerFlip", kLayerFlip, 0),
    fx(L, "Flip", "Horizontal", "", "LayerFlip", kLayerFlip, 1),
    fx(L, "Flip", "Both", "", "LayerFlip", kLayerFlip, 2),
    // Filters 1
    sub(F1, "Adjustment", "FILTERS1", 0),
    fx(F1, "Adjustment", "Brightness...", "", "LayerAdjustment", kLayerAdjustment, 0, true),
    fx(F1, "Adjustment", "Contrast", "", "LayerAdjustment", kLayerAdjustment, 1, true),
    fx(F1, "Adjustment", "Sharpening", "", "LayerAdjustment", kLayerAdjustment, 2, true),
    fx(F1, "Adjustment", "Gamma", "", "LayerAdjustment", kLayerAdjustment, 3, true),
    fx(F1, "Adjustment", "Reduce Colors", "", "LayerAdjustment", kLayerAdjustment, 4, true),
    fx(F1, "Adjustment", "Reduce to 8 colors", "", "LayerAdjustment", kLayerAdjustment, 5, true),
    fx(F1, "Adjustment", "Shift Effect", "", "LayerAdjustment", kLayerAdjustment, 6),
    fx(F1, "Adjustment", "Saturation", "", "LayerAdjustment", kLayerAdjustment, 7),
    fx(F1, "Adjustment", "Hue Adjustment", "", "LayerAdjustment", kLayerAdjustment, 8),
    fx(F1, "Adjustment", "Color Balance", "", "LayerAdjustment", kLayerAdjustment, 9),
    fx(F1, "Adjustment", "WebColors Mode", "", "LayerAdjustment", kLayerAdjustment, 10),
    fx(F1, "Adjustment", "Medium Tones", "", "LayerAdjustment", kLayerAdjustment, 11),
    fx(F1, "Adjustment", "Stretch Histogram", "", "LayerAdjustment", kLayerAdjustment, 12),
    sub(F1, "Blur", "FILTERS1", 1),
    fx(F1, "Blur", "Anti-Alias", "", "LayerBlur", kLayerBlur, 0),
    fx(F1, "Blur", "Simple", "", "LayerBlur", kLayerBlur, 1),
    fx(F1, "Blur", "Smart", "", "LayerBlur", kLayerBlur, 2),
    fx(F1, "Blur", "Heavy...", "", "LayerBlur", kLayerBlur, 3),
    fx(F1, "Blur", "Softner...", "", "LayerBlur", kLayerBlur, 4),
    fx(F1, "Blur", "Motion...", "", "LayerBlur", kLayerBlur, 5),
    fx(F1, "Blur", "Far...", "", "LayerBlur", kLayerBlur, 6),
    fx(F1, "Blur", "Radial...", "", "LayerBlur", kLayerBlur, 7),
    fx(F1, "Blur", "Zoom..", "", "LayerBlur", kLayerBlur, 8),
    sub(F1, "Tones", "FILTERS1", 2),
    fx(F1, "Tones", "Gray Tones", "", "LayerTones", kLayerTones, 0),
    fx(F1, "Tones", "Sepia Effect", "", "LayerTones", kLayerTones, 1),
    fx(F1, "Tones", "Ambient Light", "", "LayerTones", kLayerTones, 2),
    fx(F1, "Tones", "Tone Adjustment", "", "LayerTones", kLayerTones, 3),
    sub(F1, "Waves", "FILTERS1", 3),
    fx(F1, "Waves", "Simple...", "", "LayerWaves", kLayerWaves, 0),
    fx(F1, "Waves", "Block...", "", "LayerWaves", kLayerWaves, 1),
    fx(F1, "Waves", "Circular...", "", "LayerWaves", kLayerWaves, 2),
    fx(F1, "Waves", "Circular Enhanced...", "", "LayerWaves", kLayerWaves, 3),
    sub(F1, "Borders", "FILTERS1", 4),
    fx(F1, "Borders", "Backdrop Removal", "", "LayerBorders", kLayerBorders, 0),
    fx(F1, "Borders", "Emboss / Engrave", "", "LayerBorders", kLayerBorders, 1),
    fx(F1, "Borders", "Neon", "", "LayerBorders", kLayerBorders, 2),
    fx(F1, "Borders", "Detect Borders", "", "LayerBorders", kLayerBorders, 3),
    fx(F1, "Borders", "Find Edges", "", "LayerBorders", kLayerBorders, 4),
    fx(F1, "Borders", "Note Paper", "", "LayerBorders", kLayerBorders, 5),
    // The blend modes are hidden and have no node in the effect tree: effect 0, which
    // ApplyLayerEffects ignores.
    sub(F1, "Blend Modes", "FILTERS1", 5, true),
    blend(F1, "Blend Modes", "AlphaBlend", 0),
    blend(F1, "Blend Modes", "Blend Modes", 1),
    blend(F1, "Blend Modes", "Glass Blend Mode", 2),
    sub(F1, "Metallic Effects", "FILTERS1", 6, true),
    fx(F1, "Metallic Effects", "Metallic", "", "LayerMetallic", kLayerMetallic, 0),
    fx(F1, "Metallic Effects", "Gold", "", "LayerMetallic", kLayerMetallic, 1),
    fx(F1, "Metallic Effects", "Ice", "", "LayerMetallic", kLayerMetallic, 2),
    sep(F1, "", "FILTERS1", 7),
    fx(F1, "", "Invertion Adjust", "", "LayerEffects", kLayerEffects, 0),
    fx(F1, "", "Monochrome", "", "LayerEffects", kLayerEffects, 1),
    fx(F1, "", "Replace Color", "", "LayerEffects", kLayerEffects, 2, true),
    fx(F1, "", "Random Points", "", "LayerEffects", kLayerEffects, 3),
    fx(F1, "", "Solarize", "", "LayerEffects", kLayerEffects, 4),
    fx(F1, "", "Canvas Adjust", "", "LayerEffects", kLayerEffects, 5),
    fx(F1, "", "Relief", "", "LayerEffects", kLayerEffects, 6),
    fx(F1, "", "Tile Effect", "Ctrl+R", "LayerEffects", kLayerEffects, 7),
    fx(F1, "", "Fragment", "", "LayerEffects", kLayerEffects, 8),
    fx(F1, "", "Fog Effect", "", "LayerEffects", kLayerEffects, 9),
    fx(F1, "", "Oil Paint", "", "LayerEffects", kLayerEffects, 10),
    fx(F1, "", "Frost Glass", "", "LayerEffects", kLayerEffects, 11),
    fx(F1, "", "Rain Drop", "", "LayerEffects", kLayerEffects, 12),
    // Filters 2
    rt(F2, "", "User Defined Filters...", "", "UserFilters", "FILTERS", 0),
    sep(F2, "", "FILTERS", 1),
    ex(F2, "", "Invert", "Shift+F1", "INVERT", "FILTERS", 2),
    ex(F2, "", "Greyscale", "Shift+F2", "GRAYSCALE", "FILTERS", 3),
    ex(F2, "", "Relief", "Shift+F3", "RELIEF", "FILTERS", 4),
    ex(F2, "", "Erode", "Shift+F4", "ERODE", "FILTERS", 5),
    ex(F2, "", "Dilate", "Shift+F5", "DILATE", "FILTERS", 6),
    ex(F2, "", "Painting", "Shift+F6", "PAINTING", "FILTERS", 7),
    ex(F2, "", "Halftone", "Shift+Ctrl+F1", "HAFTONE", "FILTERS", 8),
    ex(F2, "", "Pixelize", "Shift+Ctrl+F2", "PIXELIZE", "FILTERS", 9),
    ex(F2, "", "X-Black", "Shift+Ctrl+F8", "XBLACK", "FILTERS", 10),
    ex(F2, "", "Thermique", "Shift+Ctrl+F7", "THERMIQUE", "FILTERS", 11),
    ex(F2, "", "Photo Cop", "Shift+Ctrl+F9", "PHOTOCOP", "FILTERS", 12),
    ex(F2, "", "Enhance Edge", "Shift+F7", "EDGEENHANCE", "FILTERS", 13),
    ex(F2, "", "Enhance White", "", "ENHANCEWHITE", "FILTERS", 14),
    ex(F2, "", "Enhance Black", "", "ENHANCEBLACK", "FILTERS", 15),
    sep(F2, "", "FILTERS", 16),
    ex(F2, "", "Blur...", "", "CUSTOMBLUR", "FILTERS", 17),
    ex(F2, "", "Noise...", "", "CUSTOMNOISE", "FILTERS", 18),
    ex(F2, "", "Emboss...", "", "CUSTOMEMBOSS", "FILTERS", 19),
    ex(F2, "", "Engrave...", "", "CUSTOMENGRAVE", "FILTERS", 20),
    ex(F2, "", "Diffuse...", "", "CUSTOMDIFFUSE", "FILTERS", 21),
    ex(F2, "", "Soften...", "", "CUSTOMSOFTEN", "FILTERS", 22),
    ex(F2, "", "Sharpen...", "", "CUSTOMSHARPEN", "FILTERS", 23),
    ex(F2, "", "Contour...", "", "CUSTOMCONTOUR", "FILTERS", 24),
    ex(F2, "", "Luminousity...", "", "LIGHTCUSTOM", "FILTERS", 25),
    sep(F2, "", "FILTERS", 26),
    rt(F2, "", "Bump Mapping...", "", "BumpMapping", "FILTERS", 27),
    // Distortion: this array counts from 1, so Spoilt is effect 32.
    fx(DI, "", "Spoilt", "", "LayerDistortion", kLayerDistortion, 1),
    fx(DI, "", "Rock Effect", "", "LayerDistortion", kLayerDistortion, 2),
    fx(DI, "", "Equalize Noise", "", "LayerDistortion", kLayerDistortion, 3),
    fx(DI, "", "Melt", "", "LayerDistortion", kLayerDistortion, 4),
    fx(DI, "", "Fish Eye", "", "LayerDistortion", kLayerDistortion, 5),
    fx(DI, "", "Customized Fish Eye", "", "LayerDistortion", kLayerDistortion, 6),
    fx(DI, "", "Twirl", "", "LayerDistortion", kLayerDistortion, 7),
    fx(DI, "", "TwirlEx", "", "LayerDistortion", kLayerDistortion, 8),
    fx(DI, "", "Swirl", "", "LayerDistortion", kLayerDistortion, 9),
    fx(DI, "", "Make 3D", "", "LayerDistortion", kLayerDistortion, 10),
    fx(DI, "", "Four Corners", "", "LayerDistortion", kLayerDistortion, 11),
    fx(DI, "", "Caricature", "", "LayerDistortion", kLayerDistortion, 12),
    fx(DI, "", "Roll 360", "", "LayerDistortion", kLayerDistortion, 13),
    fx(DI, "", "Polar Coordinates", "", "LayerDistortion", kLayerDistortion, 14),
    fx(DI, "", "Cylindrical", "", "LayerDistortion", kLayerDistortion, 15),
    fx(DI, "", "Mosaic", "", "LayerDistortion", kLayerDistortion, 16),
    // Deformations
    ex(DE, "", "Lens...", "Ctrl+Q", "LENS", "SHAPES", 0),
    ex(DE, "", "Waves...", "Shift+Ctrl+F12", "WAVES", "SHAPES", 1),
    ex(DE, "", "Bend...", "", "BEND", "SHAPES", 2),
    ex(DE, "", "Fold...", "", "FOLD", "SHAPES", 3),
    ex(DE, "", "Rotate...", "", "ROTATE", "SHAPES", 4),
    ex(DE, "", "Stretch...", "", "STRETCH", "SHAPES", 5),
    ex(DE, "", "Tile...", "", "TILE", "SHAPES", 6),
    ex(DE, "", "Twirl...", "", "TWIRL", "SHAPES", 7),
    sep(DE, "", "SHAPES", 8),
    ex(DE, "", "Grid...", "", "ADDGRID", "SHAPES", 9),
    ex(DE, "", "Flare...", "", "LENSFLARE", "SHAPES", 10),
    ex(DE, "", "Scanlines...", "", "ADDSCANLINES", "SHAPES", 11),
    ex(DE, "", "Glass...", "", "CUSTOMGLASS", "SHAPES", 12),
    ex(DE, "", "Curtain...", "", "CUSTOMCURTAIN", "SHAPES", 13),
    // Colors 1
    rt(C1, "", "Apply Palette...", "", "fPaletteApply", "COLORS", 0),
    sep(C1, "", "COLORS", 1),
    ex(C1, "", "Old Photo", "Ctrl+F2", "OLDPHOTO", "COLORS", 2),
    ex(C1, "", "Equalize", "", "EQUALIZE", "COLORS", 3),
    ex(C1, "", "Sepia Tone", "Ctrl+F7", "SEPIATONE", "COLORS", 4),
    ex(C1, "", "Colorize...", "Ctrl+F3", "COLORIZE", "COLORS", 5),
    ex(C1, "", "Tweak RGB...", "Ctrl+F1", "RGBLEVELS", "COLORS", 6),
    ex(C1, "", "Hue Stretch...", "Ctrl+F8", "HUESTRETCH", "COLORS", 7),
    ex(C1, "", "Hue Rotation...", "Ctrl+F9", "HUEROTATION", "COLORS", 8),
    ex(C1, "", "Grey Rotation...", "Ctrl+F11", "GREYROTATION", "COLORS", 9),
    ex(C1, "", "Shift...", "Ctrl+F6", "SHIFT", "COLORS", 10),
    ex(C1, "", "Sketch...", "Ctrl+F4", "SKETCH", "COLORS", 11),
    ex(C1, "", "Isolate...", "Ctrl+F5", "ISOLATE", "COLORS", 12),
    ex(C1, "", "Reduction...", "", "REDUCTION", "COLORS", 13),
    sep(C1, "", "COLORS", 14),
    ex(C1, "", "Replace Colors...", "", "REPLACE", "REPLACE", 0),
    ex(C1, "", "Replace Hue  Saturation...", "", "REPLACEHUESAT", "REPLACE", 1),
    ex(C1, "", "Replace  Luminous...", "", "REPLACELUMINOUS", "REPLACE", 2),
    // Colors 2
    ex(C2, "", "Artistic Red", "", "SOFTRED", "Colorized", 0),
    ex(C2, "", "Hard Red", "", "HARDRED", "Colorized", 1),
    ex(C2, "", "Artistic Green", "", "SOFTGREEN", "Colorized", 2),
    ex(C2, "", "Hard Green", "", "HARDGREEN", "Colorized", 3),
    ex(C2, "", "Artistic Blue", "", "SOFTBLUE", "Colorized", 4),
    ex(C2, "", "Hard Blue", "", "HARDBLUE", "Colorized", 5),
    ex(C2, "", "Artistic Yellow", "", "SOFTYELLOW", "Colorized", 6),
    ex(C2, "", "Hard Yellow", "", "HARDYELLOW", "Colorized", 7),
    sep(C2, "", "Colorized", 8),
    ex(C2, "", "Cyan", "", "CYAN", "Colorized", 9),
    ex(C2, "", "Magenta", "", "MAGENTA", "Colorized", 10),
    ex(C2, "", "Orange", "", "ORANGE", "Colorized", 11),
    ex(C2, "", "Purple", "", "PURPLE", "Colorized", 12),
    sep(C2, "", "Colorized", 13),
    ex(C2, "", "Retro", "", "RETRO", "Colorized", 14),
    ex(C2, "", "Spotted", "", "SPOTTED", "Colorized", 15),
    ex(C2, "", "Wetpaper", "", "WETPAPER", "Colorized", 16),
    sep(C2, "", "Colorized", 17),
    sub(C2, "Swap", "Colorized", 18),
    ex(C2, "Swap", "RGB To BRG", "", "RGB2BRG", "SWAP", 0),
    ex(C2, "Swap", "RGB To GBR", "", "RGB2GBR", "SWAP", 1),
    ex(C2, "Swap", "RGB To RBG", "", "RGB2RBG", "SWAP", 2),
    ex(C2, "Swap", "RGB To BGR", "", "RGB2BGR", "SWAP", 3),
    ex(C2, "Swap", "RGB To GRB", "", "RGB2GRB", "SWAP", 4),
    sep(C2, "Swap", "SWAP", 5),
    ex(C2, "Swap", "RGB Banks", "", "RGBBANKS", "SWAP", 6),
    // Tools
    rt(T, "", "Histogram...", "Ctrl+I", "fHistogram", "TOOLS", 0),
    rt(T, "", "Overlay Image...", "", "fOverlay", "TOOLS", 1),
    // Capture
    st(CA, "", "Desktop", "Shift+F8", "CAPTUREDESKTOP", "CAPTURE", 0),
    st(CA, "", "Foreground", "", "CAPTUREFOREGROUND", "CAPTURE", 1),
    st(CA, "", "Background", "", "CAPTUREBACKGROUND", "CAPTURE", 2),
    sep(CA, "", "CAPTURE", 3),
    rt(CA, "", "Custom...", "", "fCapture", "CAPTURE", 4),
    // Wallpaper
    st(W, "", "Tile", "Shift+F9", "WTILE", "WALLPAPER", 0),
    st(W, "", "Center", "Shift+F11", "WCENTER", "WALLPAPER", 1),
    st(W, "", "Stretch", "Shift+F12", "WSTRETCH", "WALLPAPER", 2),
    // Views: entries 4 to 10 toggle the seven boxes.
    st(V, "", "Tile Horizontally", "", "TILEHORIZONTALLY", "VIEWS", 0),
    st(V, "", "Tile Vertically", "", "TILEVERTICALLY", "VIEWS", 1),
    st(V, "", "Cascade", "", "CASCADE", "VIEWS", 2),
    sep(V, "", "VIEWS", 3),
    rt(V, "", "Color Box", "", "ToggleBox", "VIEWS", 4),
    rt(V, "", "Textures Box", "", "ToggleBox", "VIEWS", 5),
    rt(V, "", "History Box", "", "ToggleBox", "VIEWS", 6),
    rt(V, "", "Panoramic Box", "", "ToggleBox", "VIEWS", 7),
    rt(V, "", "Browser Box", "", "ToggleBox", "VIEWS", 8),
    rt(V, "", "Optimize Box", "", "ToggleBox", "VIEWS", 9),
    rt(V, "", "Layer Box", "", "ToggleBox", "VIEWS", 10),
    sep(V, "", "VIEWS", 11),
    st(V, "", "Reset Settings", "F11", "RESET", "VIEWS", 12),
    // About: the keyboard list is hidden (its fixed text differs from the true keys).
    rt(AB, "", "Help", "F1", "OpenHelp", "ABOUT", 0),
    rt(AB, "", "Online Materials", "Ctrl+F", "OnlineMaterials", "ABOUT", 1),
    rt(AB, "", "Keyboard Shortcuts", "", "fKeyboard", "ABOUT", 2, true),
    rt(AB, "", "Support", "", "Support", "ABOUT", 3),
    rt(AB, "", "Homepage", "", "Homepage", "ABOUT", 4),
    sep(AB, "", "ABOUT", 5),
    rt(AB, "", "About Ostrivex Basic", "", "fAbout", "ABOUT", 6),
};

} // namespace

std::span<const TopMenu> TopMenus() {
    return kTopMenus;
}

std::span<const MenuEntry> MenuTable() {
    return kTable;
}

const MenuEntry* FindMenuEntry(std::string_view menu, std::string_view caption,
                               std::string_view parent) {
    for (const MenuEntry& e : kTable)
        if (e.menu == menu && e.caption == caption && (parent.empty() || e.parent == parent))
            return &e;
    return nullptr;
}

const MenuEntry* FindMenuWord(std::string_view word) {
    for (const MenuEntry& e : kTable)
        if ((e.route == MenuRoute::Static || e.route == MenuRoute::Exec) && e.word == word)
            return &e;
    return nullptr;
}

bool StoresLastCaption(const MenuEntry& entry) {
    return entry.route == MenuRoute::Exec || entry.route == MenuRoute::LayerEffect;
}

std::string LastCaptionFor(const MenuEntry& entry) {
    if (!StoresLastCaption(entry)) return {};
    // The prefixes and suffix make the history line read as a sentence; the captions of
    // the REPLACE entries already start with "Replace", and the word is added all the same.
    if (entry.array == "REPLACE") return "Replace " + std::string(entry.caption);
    if (entry.array == "SWAP") return "Swap " + std::string(entry.caption);
    if (entry.array == "LayerBlur") return std::string(entry.caption) + " Blur";
    return std::string(entry.caption);
}

} // namespace ostrivex
