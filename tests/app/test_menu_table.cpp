// The menu tree as data: entries, keys, words, routes, fixed states, and the history
// caption a click stores.
#include "app/commands/menu_table.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <tuple>
#include <vector>

using namespace ostrivex;

namespace {

// The entries of one menu (or submenu), in their order.
struct Row {
    const char* caption;
    const char* key;
    const char* word;
    MenuRoute route;
};
struct Group {
    const char* menu;
    const char* parent;
    std::vector<Row> rows;
};

constexpr auto S = MenuRoute::Static;
constexpr auto X = MenuRoute::Exec;
constexpr auto Rt = MenuRoute::Routine;

} // namespace

TEST(MenuTable, EveryCommandEntryWithCaptionKeyAndWord) {
    // clang-format off
    const Group all[] = {
        {"mnuFile", "", {{"New", "Ctrl+N", "NEW", S}, {"Open", "Ctrl+O", "OPEN", S},
            {"From Clipboard", "", "CREATEFROMCLIPBOARD", X}, {"Close", "", "CLOSE", S},
            {"Save Enhanced", "Ctrl+S", "SAVE", S}, {"Save Enhanced As", "", "SAVEAS", S},
            {"Save Layered", "", "SAVELAYEREDIMAGE", S},
            {"Save Layered As", "", "SAVELAYEREDIMAGEAS", S},
            {"Save Optimized", "", "SAVEOPTIMIZED", S},
            {"Save Optimized As", "", "SAVEOPTIMIZEDAS", S},
            {"Save Image For Web...", "", "IMAGESAVEOPTIONS", S},
            {"Update Layer view from Enhance view", "", "UPDATELAYERS", S},
            {"Update Enhance view From Layer view", "", "UPDATEORIGINAL", S},
            {"Printer Set up", "", "PRINTERSETUP", S}, {"Print", "Ctrl+P", "PRINT", X},
            {"Exit", "", "Exit", Rt}}},
        {"mnuEdit", "", {{"Undo", "Ctrl+Z", "UNDO", X}, {"Redo", "Ctrl+Y", "REDO", X},
            {"Cut", "Ctrl+X", "CUT", X}, {"Copy", "Ctrl+C", "COPY", X},
            {"Paste", "Ctrl+V", "PASTE", X}, {"Create New Copy", "", "CREATENEWCOPY", X},
            {"Copy Image to Clipboard", "Ctrl+G", "COPYIMAGETOCLIPBOARD", X},
            {"Create From Clipboard", "Ctrl+H", "CREATEFROMCLIPBOARD", X},
            {"Select All", "Ctrl+A", "SELECTALL", X}, {"Select None", "Del", "SELECTNONE", X},
            {"Invert Selection", "Shift+Ins", "INVERTSELECTION", X},
            {"Load Selection...", "", "LOADSELECTION", X},
            {"Save Selection...", "", "SAVESELECTION", X}, {"Crop", "Ctrl+K", "CROP", X},
            {"Create Crop as New Image", "Shift+Del", "NEWIMAGEFROMCROP", X},
            {"Image Properties", "F2", "IMAGEPROPERTIES", X}, {"Preference...", "", "OPTIONS", X}}},
        {"mnuAdjust", "", {{"Size ...", "Ctrl+T", "IMAGESIZE", X},
            {"Canvas ...", "Ctrl+B", "CANVASSIZE", X},
            {"Orientation ...", "Ctrl+W", "IMAGEORIENTATION", X},
            {"Rotation ...", "Ctrl+J", "IMAGEROTATE", X}, {"Levels...", "", "REDUCTION", X},
            {"Saturation...", "", "CUSTOMSATURATION", X}, {"Brightness...", "", "BRIGHTNESS", X},
            {"Contrast...", "", "CONTRAST", X}, {"Gamma...", "", "GAMMA", X},
            {"Restore Original", "", "RestoreOriginal", Rt}}},
        {"mnuAdjust", "Zoom +", {{"200 %", "", "200", X}, {"300 %", "", "300", X},
            {"400 %", "", "400", X}, {"500 %", "", "500", X}, {"600 %", "", "600", X},
            {"700 %", "", "700", X}}},
        {"mnuAdjust", "Quality Sizing", {{"2x", "", "2x", X}, {"3x", "", "3x", X},
            {"4x", "", "4x", X}, {"5x", "", "5x", X}, {"x/2", "", "x2", X}, {"x/3", "", "x3", X},
            {"x/4", "", "x4", X}, {"x/5", "", "x5", X}}},
        {"mnuAdjust", "", {{"Original Size", "", "ORIGINAL", X}}},
        {"mnuLayers", "", {{"Show", "Ctrl+E", "LAYERS_Click", Rt},
            {"Merge", "Ctrl+M", "LAYERS_Click", Rt}, {"Delete", "Ctrl+D", "LAYERS_Click", Rt},
            {"Selective Moveable", "Ctrl+L", "LAYERS_Click", Rt}}},
        {"mnuLayers", "New layer", {{"From Image File", "", "NEWLAYER_Click", Rt}}},
        {"mnuFilters2", "", {{"Invert", "Shift+F1", "INVERT", X},
            {"Greyscale", "Shift+F2", "GRAYSCALE", X}, {"Relief", "Shift+F3", "RELIEF", X},
            {"Erode", "Shift+F4", "ERODE", X}, {"Dilate", "Shift+F5", "DILATE", X},
            {"Painting", "Shift+F6", "PAINTING", X}, {"Halftone", "Shift+Ctrl+F1", "HAFTONE", X},
            {"Pixelize", "Shift+Ctrl+F2", "PIXELIZE", X}, {"X-Black", "Shift+Ctrl+F8", "XBLACK", X},
            {"Thermique", "Shift+Ctrl+F7", "THERMIQUE", X},
            {"Photo Cop", "Shift+Ctrl+F9", "PHOTOCOP", X},
            {"Enhance Edge", "Shift+F7", "EDGEENHANCE", X},
            {"Enhance White", "", "ENHANCEWHITE", X}, {"Enhance Black", "", "ENHANCEBLACK", X},
            {"Blur...", "", "CUSTOMBLUR", X}, {"Noise...", "", "CUSTOMNOISE", X},
            {"Emboss...", "", "CUSTOMEMBOSS", X}, {"Engrave...", "", "CUSTOMENGRAVE", X},
            {"Diffuse...", "", "CUSTOMDIFFUSE", X}, {"Soften...", "", "CUSTOMSOFTEN", X},
            {"Sharpen...", "", "CUSTOMSHARPEN", X}, {"Contour...", "", "CUSTOMCONTOUR", X},
            {"Luminousity...", "", "LIGHTCUSTOM", X}}},
        {"mnuDeformations", "", {{"Lens...", "Ctrl+Q", "LENS", X},
            {"Waves...", "Shift+Ctrl+F12", "WAVES", X}, {"Bend...", "", "BEND", X},
            {"Fold...", "", "FOLD", X}, {"Rotate...", "", "ROTATE", X},
            {"Stretch...", "", "STRETCH", X}, {"Tile...", "", "TILE", X},
            {"Twirl...", "", "TWIRL", X}, {"Grid...", "", "ADDGRID", X},
            {"Flare...", "", "LENSFLARE", X}, {"Scanlines...", "", "ADDSCANLINES", X},
            {"Glass...", "", "CUSTOMGLASS", X}, {"Curtain...", "", "CUSTOMCURTAIN", X}}},
        {"mnuColors1", "", {{"Old Photo", "Ctrl+F2", "OLDPHOTO", X},
            {"Equalize", "", "EQUALIZE", X}, {"Sepia Tone", "Ctrl+F7", "SEPIATONE", X},
            {"Colorize...", "Ctrl+F3", "COLORIZE", X}, {"Tweak RGB...", "Ctrl+F1", "RGBLEVELS", X},
            {"Hue Stretch...", "Ctrl+F8", "HUESTRETCH", X},
            {"Hue Rotation...", "Ctrl+F9", "HUEROTATION", X},
            {"Grey Rotation...", "Ctrl+F11", "GREYROTATION", X},
            {"Shift...", "Ctrl+F6", "SHIFT", X}, {"Sketch...", "Ctrl+F4", "SKETCH", X},
            {"Isolate...", "Ctrl+F5", "ISOLATE", X}, {"Reduction...", "", "REDUCTION", X},
            {"Replace Colors...", "", "REPLACE", X},
            {"Replace Hue  Saturation...", "", "REPLACEHUESAT", X},
            {"Replace  Luminous...", "", "REPLACELUMINOUS", X}}},
        {"mnuColors2", "", {{"Artistic Red", "", "SOFTRED", X}, {"Hard Red", "", "HARDRED", X},
            {"Artistic Green", "", "SOFTGREEN", X}, {"Hard Green", "", "HARDGREEN", X},
            {"Artistic Blue", "", "SOFTBLUE", X}, {"Hard Blue", "", "HARDBLUE", X},
            {"Artistic Yellow", "", "SOFTYELLOW", X}, {"Hard Yellow", "", "HARDYELLOW", X},
            {"Cyan", "", "CYAN", X}, {"Magenta", "", "MAGENTA", X}, {"Orange", "", "ORANGE", X},
            {"Purple", "", "PURPLE", X}, {"Retro", "", "RETRO", X}, {"Spotted", "", "SPOTTED", X},
            {"Wetpaper", "", "WETPAPER", X}}},
        {"mnuColors2", "Swap", {{"RGB To BRG", "", "RGB2BRG", X}, {"RGB To GBR", "", "RGB2GBR", X},
            {"RGB To RBG", "", "RGB2RBG", X}, {"RGB To BGR", "", "RGB2BGR", X},
            {"RGB To GRB", "", "RGB2GRB", X}, {"RGB Banks", "", "RGBBANKS", X}}},
        {"mnuTools", "", {{"Histogram...", "Ctrl+I", "fHistogram", Rt}}},
        {"mnuCapture", "", {{"Desktop", "Shift+F8", "CAPTUREDESKTOP", S},
            {"Foreground", "", "CAPTUREFOREGROUND", S},
            {"Background", "", "CAPTUREBACKGROUND", S}}},
        {"mnuWallpaper", "", {{"Tile", "Shift+F9", "WTILE", S},
            {"Center", "Shift+F11", "WCENTER", S}, {"Stretch", "Shift+F12", "WSTRETCH", S}}},
        {"mnuViews", "", {{"Tile Horizontally", "", "TILEHORIZONTALLY", S},
            {"Tile Vertically", "", "TILEVERTICALLY", S}, {"Cascade", "", "CASCADE", S},
            {"Reset Settings", "F11", "RESET", S}}},
        {"mnuAbout", "", {{"Help", "F1", "OpenHelp", Rt},
            {"Online Materials", "Ctrl+F", "OnlineMaterials", Rt},
            {"Keyboard Shortcuts", "", "fKeyboard", Rt},
            {"About Ostrivex Basic", "", "fAbout", Rt}}},
    };
    // clang-format on
    for (const Group& g : all)
        for (const Row& r : g.rows) {
            SCOPED_TRACE(std::string(g.menu) + " > " + g.parent + " > " + r.caption);
            const MenuEntry* e = FindMenuEntry(g.menu, r.caption, g.parent);
            ASSERT_NE(e, nullptr);
            EXPECT_EQ(e->parent, g.parent);
            EXPECT_EQ(e->key, r.key);
            EXPECT_EQ(e->word, r.word);
            EXPECT_EQ(e->route, r.route);
        }

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
