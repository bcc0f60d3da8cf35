// The menu tree as data: entries, keys, words, routes, fixed states, and the history
// caption a click stores.
#include "app/commands/menu_table.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <tuple>

using namespace ostrivex;

namespace {

struct Expect {
    const char* menu;
    const char* parent;
    const char* caption;
    const char* key;
    const char* word;
    MenuRoute route;
};

void expectEntry(const Expect& x) {
    SCOPED_TRACE(std::string(x.menu) + " > " + x.parent + " > " + x.caption);
    const MenuEntry* e = FindMenuEntry(x.menu, x.caption, x.parent);
    ASSERT_NE(e, nullptr);
    EXPECT_EQ(e->parent, x.parent);
    EXPECT_EQ(e->key, x.key);
    EXPECT_EQ(e->word, x.word);
    EXPECT_EQ(e->route, x.route);
}

constexpr auto S = MenuRoute::Static;
constexpr auto X = MenuRoute::Exec;
constexpr auto Rt = MenuRoute::Routine;

} // namespace

TEST(MenuTable, EveryCommandEntryWithCaptionKeyAndWord) {
    const Expect all[] = {
        {"mnuFile", "", "New", "Ctrl+N", "NEW", S},
        {"mnuFile", "", "Open", "Ctrl+O", "OPEN", S},
        {"mnuFile", "", "From Clipboard", "", "CREATEFROMCLIPBOARD", X},
        {"mnuFile", "", "Close", "", "CLOSE", S},
        {"mnuFile", "", "Save Enhanced", "Ctrl+S", "SAVE", S},
        {"mnuFile", "", "Save Enhanced As", "", "SAVEAS", S},
        {"mnuFile", "", "Save Layered", "", "SAVELAYEREDIMAGE", S},
        {"mnuFile", "", "Save Layered As", "", "SAVELAYEREDIMAGEAS", S},
        {"mnuFile", "", "Save Optimized", "", "SAVEOPTIMIZED", S},
        {"mnuFile", "", "Save Optimized As", "", "SAVEOPTIMIZEDAS", S},
        {"mnuFile", "", "Save Image For Web...", "", "IMAGESAVEOPTIONS", S},
        {"mnuFile", "", "Update Layer view from Enhance view", "", "UPDATELAYERS", S},
        {"mnuFile", "", "Update Enhance view From Layer view", "", "UPDATEORIGINAL", S},
        {"mnuFile", "", "Printer Set up", "", "PRINTERSETUP", S},
        {"mnuFile", "", "Print", "Ctrl+P", "PRINT", X},
        {"mnuFile", "", "Exit", "", "Exit", Rt},
        {"mnuEdit", "", "Undo", "Ctrl+Z", "UNDO", X},
        {"mnuEdit", "", "Redo", "Ctrl+Y", "REDO", X},
        {"mnuEdit", "", "Cut", "Ctrl+X", "CUT", X},
        {"mnuEdit", "", "Copy", "Ctrl+C", "COPY", X},
        {"mnuEdit", "", "Paste", "Ctrl+V", "PASTE", X},
        {"mnuEdit", "", "Create New Copy", "", "CREATENEWCOPY", X},
        {"mnuEdit", "", "Copy Image to Clipboard", "Ctrl+G", "COPYIMAGETOCLIPBOARD", X},
        {"mnuEdit", "", "Create From Clipboard", "Ctrl+H", "CREATEFROMCLIPBOARD", X},
        {"mnuEdit", "", "Select All", "Ctrl+A", "SELECTALL", X},
        {"mnuEdit", "", "Select None", "Del", "SELECTNONE", X},
        {"mnuEdit", "", "Invert Selection", "Shift+Ins", "INVERTSELECTION", X},
        {"mnuEdit", "", "Load Selection...", "", "LOADSELECTION", X},
        {"mnuEdit", "", "Save Selection...", "", "SAVESELECTION", X},
        {"mnuEdit", "", "Crop", "Ctrl+K", "CROP", X},
        {"mnuEdit", "", "Create Crop as New Image", "Shift+Del", "NEWIMAGEFROMCROP", X},
        {"mnuEdit", "", "Image Properties", "F2", "IMAGEPROPERTIES", X},
        {"mnuEdit", "", "Preference...", "", "OPTIONS", X},
        {"mnuAdjust", "", "Size ...", "Ctrl+T", "IMAGESIZE", X},
        {"mnuAdjust", "", "Canvas ...", "Ctrl+B", "CANVASSIZE", X},
        {"mnuAdjust", "", "Orientation ...", "Ctrl+W", "IMAGEORIENTATION", X},
        {"mnuAdjust", "", "Rotation ...", "Ctrl+J", "IMAGEROTATE", X},
        {"mnuAdjust", "", "Levels...", "", "REDUCTION", X},
        {"mnuAdjust", "", "Saturation...", "", "CUSTOMSATURATION", X},
        {"mnuAdjust", "", "Brightness...", "", "BRIGHTNESS", X},
        {"mnuAdjust", "", "Contrast...", "", "CONTRAST", X},
        {"mnuAdjust", "", "Gamma...", "", "GAMMA", X},
        {"mnuAdjust", "", "Restore Original", "", "RestoreOriginal", Rt},
        {"mnuAdjust", "Zoom +", "200 %", "", "200", X},
        {"mnuAdjust", "Zoom +", "300 %", "", "300", X},
        {"mnuAdjust", "Zoom +", "400 %", "", "400", X},
        {"mnuAdjust", "Zoom +", "500 %", "", "500", X},
        {"mnuAdjust", "Zoom +", "600 %", "", "600", X},
        {"mnuAdjust", "Zoom +", "700 %", "", "700", X},
        {"mnuAdjust", "Quality Sizing", "2x", "", "2x", X},
        {"mnuAdjust", "Quality Sizing", "3x", "", "3x", X},
        {"mnuAdjust", "Quality Sizing", "4x", "", "4x", X},
        {"mnuAdjust", "Quality Sizing", "5x", "", "5x", X},
        {"mnuAdjust", "Quality Sizing", "x/2", "", "x2", X},
        {"mnuAdjust", "Quality Sizing", "x/3", "", "x3", X},
        {"mnuAdjust", "Quality Sizing", "x/4", "", "x4", X},
        {"mnuAdjust", "Quality Sizing", "x/5", "", "x5", X},
        {"mnuAdjust", "", "Original Size", "", "ORIGINAL", X},
        {"mnuLayers", "", "Show", "Ctrl+E", "LAYERS_Click", Rt},
        {"mnuLayers", "", "Merge", "Ctrl+M", "LAYERS_Click", Rt},
        {"mnuLayers", "", "Delete", "Ctrl+D", "LAYERS_Click", Rt},
        {"mnuLayers", "", "Selective Moveable", "Ctrl+L", "LAYERS_Click", Rt},
        {"mnuLayers", "New layer", "From Image File", "", "NEWLAYER_Click", Rt},
        {"mnuFilters2", "", "Invert", "Shift+F1", "INVERT", X},
        {"mnuFilters2", "", "Greyscale", "Shift+F2", "GRAYSCALE", X},
        {"mnuFilters2", "", "Relief", "Shift+F3", "RELIEF", X},
        {"mnuFilters2", "", "Erode", "Shift+F4", "ERODE", X},
        {"mnuFilters2", "", "Dilate", "Shift+F5", "DILATE", X},
        {"mnuFilters2", "", "Painting", "Shift+F6", "PAINTING", X},
        {"mnuFilters2", "", "Halftone", "Shift+Ctrl+F1", "HAFTONE", X},
        {"mnuFilters2", "", "Pixelize", "Shift+Ctrl+F2", "PIXELIZE", X},
        {"mnuFilters2", "", "X-Black", "Shift+Ctrl+F8", "XBLACK", X},
        {"mnuFilters2", "", "Thermique", "Shift+Ctrl+F7", "THERMIQUE", X},
        {"mnuFilters2", "", "Photo Cop", "Shift+Ctrl+F9", "PHOTOCOP", X},
        {"mnuFilters2", "", "Enhance Edge", "Shift+F7", "EDGEENHANCE", X},
        {"mnuFilters2", "", "Enhance White", "", "ENHANCEWHITE", X},
        {"mnuFilters2", "", "Enhance Black", "", "ENHANCEBLACK", X},
        {"mnuFilters2", "", "Blur...", "", "CUSTOMBLUR", X},
        {"mnuFilters2", "", "Noise...", "", "CUSTOMNOISE", X},
        {"mnuFilters2", "", "Emboss...", "", "CUSTOMEMBOSS", X},
        {"mnuFilters2", "", "Engrave...", "", "CUSTOMENGRAVE", X},
        {"mnuFilters2", "", "Diffuse...", "", "CUSTOMDIFFUSE", X},
        {"mnuFilters2", "", "Soften...", "", "CUSTOMSOFTEN", X},
        {"mnuFilters2", "", "Sharpen...", "", "CUSTOMSHARPEN", X},
        {"mnuFilters2", "", "Contour...", "", "CUSTOMCONTOUR", X},
        {"mnuFilters2", "", "Luminousity...", "", "LIGHTCUSTOM", X},
        {"mnuDeformations", "", "Lens...", "Ctrl+Q", "LENS", X},
        {"mnuDeformations", "", "Waves...", "Shift+Ctrl+F12", "WAVES", X},
        {"mnuDeformations", "", "Bend...", "", "BEND", X},
        {"mnuDeformations", "", "Fold...", "", "FOLD", X},
        {"mnuDeformations", "", "Rotate...", "", "ROTATE", X},
        {"mnuDeformations", "", "Stretch...", "", "STRETCH", X},
        {"mnuDeformations", "", "Tile...", "", "TILE", X},
        {"mnuDeformations", "", "Twirl...", "", "TWIRL", X},
        {"mnuDeformations", "", "Grid...", "", "ADDGRID", X},
        {"mnuDeformations", "", "Flare...", "", "LENSFLARE", X},
        {"mnuDeformations", "", "Scanlines...", "", "ADDSCANLINES", X},
        {"mnuDeformations", "", "Glass...", "", "CUSTOMGLASS", X},
        {"mnuDeformations", "", "Curtain...", "", "CUSTOMCURTAIN", X},
        {"mnuColors1", "", "Old Photo", "Ctrl+F2", "OLDPHOTO", X},
        {"mnuColors1", "", "Equalize", "", "EQUALIZE", X},
        {"mnuColors1", "", "Sepia Tone", "Ctrl+F7", "SEPIATONE", X},
        {"mnuColors1", "", "Colorize...", "Ctrl+F3", "COLORIZE", X},
        {"mnuColors1", "", "Tweak RGB...", "Ctrl+F1", "RGBLEVELS", X},
        {"mnuColors1", "", "Hue Stretch...", "Ctrl+F8", "HUESTRETCH", X},
        {"mnuColors1", "", "Hue Rotation...", "Ctrl+F9", "HUEROTATION", X},
        {"mnuColors1", "", "Grey Rotation...", "Ctrl+F11", "GREYROTATION", X},
        {"mnuColors1", "", "Shift...", "Ctrl+F6", "SHIFT", X},
        {"mnuColors1", "", "Sketch...", "Ctrl+F4", "SKETCH", X},
        {"mnuColors1", "", "Isolate...", "Ctrl+F5", "ISOLATE", X},
        {"mnuColors1", "", "Reduction...", "", "REDUCTION", X},
        {"mnuColors1", "", "Replace Colors...", "", "REPLACE", X},
        {"mnuColors1", "", "Replace Hue  Saturation...", "", "REPLACEHUESAT", X},
        {"mnuColors1", "", "Replace  Luminous...", "", "REPLACELUMINOUS", X},
        {"mnuColors2", "", "Artistic Red", "", "SOFTRED", X},
        {"mnuColors2", "", "Hard Red", "", "HARDRED", X},
        {"mnuColors2", "", "Artistic Green", "", "SOFTGREEN", X},
        {"mnuColors2", "", "Hard Green", "", "HARDGREEN", X},
        {"mnuColors2", "", "Artistic Blue", "", "SOFTBLUE", X},
        {"mnuColors2", "", "Hard Blue", "", "HARDBLUE", X},
        {"mnuColors2", "", "Artistic Yellow", "", "SOFTYELLOW", X},
        {"mnuColors2", "", "Hard Yellow", "", "HARDYELLOW", X},
        {"mnuColors2", "", "Cyan", "", "CYAN", X},
        {"mnuColors2", "", "Magenta", "", "MAGENTA", X},
        {"mnuColors2", "", "Orange", "", "ORANGE", X},
        {"mnuColors2", "", "Purple", "", "PURPLE", X},
        {"mnuColors2", "", "Retro", "", "RETRO", X},
        {"mnuColors2", "", "Spotted", "", "SPOTTED", X},
        {"mnuColors2", "", "Wetpaper", "", "WETPAPER", X},
        {"mnuColors2", "Swap", "RGB To BRG", "", "RGB2BRG", X},
        {"mnuColors2", "Swap", "RGB To GBR", "", "RGB2GBR", X},
        {"mnuColors2", "Swap", "RGB To RBG", "", "RGB2RBG", X},
        {"mnuColors2", "Swap", "RGB To BGR", "", "RGB2BGR", X},
        {"mnuColors2", "Swap", "RGB To GRB", "", "RGB2GRB", X},
        {"mnuColors2", "Swap", "RGB Banks", "", "RGBBANKS", X},
        {"mnuTools", "", "Histogram...", "Ctrl+I", "fHistogram", Rt},
        {"mnuCapture", "", "Desktop", "Shift+F8", "CAPTUREDESKTOP", S},
        {"mnuCapture", "", "Foreground", "", "CAPTUREFOREGROUND", S},
        {"mnuCapture", "", "Background", "", "CAPTUREBACKGROUND", S},
        {"mnuWallpaper", "", "Tile", "Shift+F9", "WTILE", S},
        {"mnuWallpaper", "", "Center", "Shift+F11", "WCENTER", S},
        {"mnuWallpaper", "", "Stretch", "Shift+F12", "WSTRETCH", S},
        {"mnuViews", "", "Tile Horizontally", "", "TILEHORIZONTALLY", S},
        {"mnuViews", "", "Tile Vertically", "", "TILEVERTICALLY", S},
        {"mnuViews", "", "Cascade", "", "CASCADE", S},
        {"mnuViews", "", "Reset Settings", "F11", "RESET", S},
        {"mnuAbout", "", "Help", "F1", "OpenHelp", Rt},
        {"mnuAbout", "", "Online Materials", "Ctrl+F", "OnlineMaterials", Rt},
        {"mnuAbout", "", "Keyboard Shortcuts", "", "fKeyboard", Rt},
        {"mnuAbout", "", "About Ostrivex Basic", "", "fAbout", Rt},
    };
    for (const Expect& x : all)
        expectEntry(x);

    // Every word that a menu sends appears in exactly one menu entry, except REDUCTION
    // (Adjust > Levels... and Colors 1 > Reduction...) and CREATEFROMCLIPBOARD (File and
    // Edit).
    std::map<std::string, int> uses;
    for (const MenuEntry& e : MenuTable())
        if (e.route == MenuRoute::Static || e.route == MenuRoute::Exec) ++uses[std::string(e.word)];
    for (const auto& [word, n] : uses) {
        const bool twice = word == "REDUCTION" || word == "CREATEFROMCLIPBOARD";
        EXPECT_EQ(n, twice ? 2 : 1) << word;
    }
    // 136 distinct words, as the menu tables list them.
    EXPECT_EQ(uses.size(), 136u);
}

TEST(MenuTable, LayerEffectsCarryTheirTreeNumbers) {
    struct {
        const char* menu;
        const char* parent;
        const char* caption;
        int effect;
    } cases[] = {
        {"mnuAdjust", "", "Flip Horizontally", 78},
        {"mnuAdjust", "", "Flip Both", 80},
        {"mnuLayers", "Flip", "Vertical", 78},
        {"mnuLayers", "Flip", "Both", 80},
        {"mnuFilters1", "Adjustment", "Brightness...", 2},
        {"mnuFilters1", "Adjustment", "Stretch Histogram", 14},
        {"mnuFilters1", "Blur", "Anti-Alias", 16},
        {"mnuFilters1", "Blur", "Zoom..", 24},
        {"mnuFilters1", "Tones", "Gray Tones", 27},
        {"mnuFilters1", "Tones", "Tone Adjustment", 30},
        {"mnuFilters1", "Waves", "Simple...", 48},
        {"mnuFilters1", "Waves", "Block...", 49},
        {"mnuFilters1", "Borders", "Backdrop Removal", 53},
        {"mnuFilters1", "Borders", "Note Paper", 58},
        {"mnuFilters1", "Metallic Effects", "Ice", 62},
        {"mnuFilters1", "", "Invertion Adjust", 64},
        {"mnuFilters1", "", "Replace Color", 66},
        {"mnuFilters1", "", "Tile Effect", 71},
        {"mnuFilters1", "", "Rain Drop", 76},
        {"mnuDistortions", "", "Spoilt", 32},
        {"mnuDistortions", "", "Roll 360", 44},
        {"mnuDistortions", "", "Mosaic", 47},
    };
    for (const auto& c : cases) {
        const MenuEntry* e = FindMenuEntry(c.menu, c.caption, c.parent);
        ASSERT_NE(e, nullptr) << c.caption;
        EXPECT_EQ(e->route, MenuRoute::LayerEffect) << c.caption;
        EXPECT_EQ(e->effect, c.effect) << c.caption;
    }
    EXPECT_EQ(FindMenuEntry("mnuFilters1", "Tile Effect")->key, "Ctrl+R");
}

TEST(MenuTable, SeparatorsAndHeadingsSendNothingAndIndexesAreUnique) {
    int separators = 0;
    std::set<std::tuple<std::string, int>> seen;
    for (const MenuEntry& e : MenuTable()) {
        SCOPED_TRACE(std::string(e.menu) + " " + std::string(e.caption));
        if (e.route == MenuRoute::Separator) {
            ++separators;
            EXPECT_EQ(e.caption, "-");
        }
        if (e.route == MenuRoute::Separator || e.route == MenuRoute::Submenu) {
            EXPECT_TRUE(e.word.empty());
            EXPECT_TRUE(e.key.empty());
            EXPECT_FALSE(StoresLastCaption(e));
            EXPECT_EQ(LastCaptionFor(e), "");
        }
        // One index per place in its handler array: a click can name one entry only.
        EXPECT_TRUE(seen.insert({std::string(e.array), e.index}).second);
        if (!e.parent.empty()) {
            const MenuEntry* heading = FindMenuEntry(e.menu, e.parent);
            ASSERT_NE(heading, nullptr);
            EXPECT_EQ(heading->route, MenuRoute::Submenu);
        }
    }
    EXPECT_GT(separators, 10);
    // The layer commands keep the indexes that LAYERS_Click switches on, with gaps at 8
    // and 11.
    EXPECT_EQ(FindMenuEntry("mnuLayers", "Delete All")->index, 7);
    EXPECT_EQ(FindMenuEntry("mnuLayers", "Duplicate Layer")->index, 9);
    EXPECT_EQ(FindMenuEntry("mnuLayers", "Free Transform")->index, 10);
    EXPECT_EQ(FindMenuEntry("mnuLayers", "Freely Moveable")->index, 13);
    // Views entries 4 to 10 are the seven boxes.
    const char* boxes[] = {"Color Box",   "Textures Box", "History Box", "Panoramic Box",
                           "Browser Box", "Optimize Box", "Layer Box"};
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(FindMenuEntry("mnuViews", boxes[i])->index, 4 + i);
}

TEST(MenuTable, FixedHiddenAndDisabledStates) {
    std::set<std::string> hidden, disabled;
    for (const MenuEntry& e : MenuTable()) {
        if (e.hidden) hidden.insert(std::string(e.caption));
        if (e.disabled) disabled.insert(std::string(e.caption));
    }
    const std::set<std::string> wantHidden{
        "Brightness...", "Contrast",           "Sharpening",  "Gamma",
        "Reduce Colors", "Reduce to 8 colors", "Blend Modes", "Metallic Effects",
        "Replace Color", "Keyboard Shortcuts"};
    EXPECT_EQ(hidden, wantHidden);
    EXPECT_EQ(disabled, (std::set<std::string>{"Selective Moveable", "Freely Moveable"}));
    // The hidden "Brightness..." is the layer entry, not the Adjust menu's command.
    EXPECT_FALSE(FindMenuEntry("mnuAdjust", "Brightness...")->hidden);
    EXPECT_TRUE(FindMenuEntry("mnuFilters1", "Brightness...", "Adjustment")->hidden);
}

TEST(MenuTable, LastCommandCaptionRules) {
    EXPECT_EQ(LastCaptionFor(*FindMenuEntry("mnuColors2", "RGB To BRG", "Swap")),
              "Swap RGB To BRG");
    EXPECT_EQ(LastCaptionFor(*FindMenuEntry("mnuColors2", "RGB Banks", "Swap")), "Swap RGB Banks");
    EXPECT_EQ(LastCaptionFor(*FindMenuEntry("mnuColors1", "Replace  Luminous...")),
              "Replace Replace  Luminous...");
    EXPECT_EQ(LastCaptionFor(*FindMenuEntry("mnuColors1", "Replace Colors...")),
              "Replace Replace Colors...");
    EXPECT_EQ(LastCaptionFor(*FindMenuEntry("mnuFilters1", "Smart", "Blur")), "Smart Blur");
    EXPECT_EQ(LastCaptionFor(*FindMenuEntry("mnuFilters1", "Heavy...", "Blur")), "Heavy... Blur");
    // Plain captions elsewhere, including the other layer arrays.
    EXPECT_EQ(LastCaptionFor(*FindMenuEntry("mnuColors1", "Sepia Tone")), "Sepia Tone");
    EXPECT_EQ(LastCaptionFor(*FindMenuEntry("mnuFilters1", "Gray Tones", "Tones")), "Gray Tones");
    EXPECT_EQ(LastCaptionFor(*FindMenuEntry("mnuEdit", "Undo")), "Undo");
    // Entries that feed MenuStatic or a routine store nothing.
    EXPECT_EQ(LastCaptionFor(*FindMenuEntry("mnuFile", "Save Enhanced")), "");
    EXPECT_EQ(LastCaptionFor(*FindMenuEntry("mnuViews", "Color Box")), "");
    EXPECT_FALSE(StoresLastCaption(*FindMenuEntry("mnuWallpaper", "Tile")));
}

TEST(MenuTable, LookupByWordAndTopMenus) {
    const MenuEntry* e = FindMenuWord("HAFTONE");
    ASSERT_NE(e, nullptr);
    EXPECT_EQ(e->caption, "Halftone");
    EXPECT_EQ(FindMenuWord("RGBLEVELS")->caption, "Tweak RGB...");
    EXPECT_EQ(FindMenuWord("LIGHTBLUR"), nullptr); // reachable only by word
    EXPECT_EQ(FindMenuWord(""), nullptr);
    ASSERT_EQ(TopMenus().size(), 15u);
    EXPECT_EQ(TopMenus().front().caption, "File");
    EXPECT_EQ(TopMenus()[4].caption, "Filters 1");
    EXPECT_EQ(TopMenus().back().caption, "About");
    // Every entry belongs to a listed top menu.
    std::set<std::string_view> names;
    for (const TopMenu& t : TopMenus())
        names.insert(t.name);
    for (const MenuEntry& x : MenuTable())
        EXPECT_TRUE(names.count(x.menu)) << x.caption;
}
