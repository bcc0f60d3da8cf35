// The tool panels: every control's name, caption, tip, items, range and default; the three
// rules of a slider group; the settings two panels share; the Init routines; the stamp
// list and the stamp pixels; and a click on each kind of tool button.
#include "app/colour/bcolortool.h"
#include "app/colour/fgradient.h"
#include "app/fmain.h"
#include "app/globals.h"
#include "app/panels/slidertrio.h"
#include "app/panels/toolicons.h"
#include "app/toolpanels.h"
#include "app_test_util.h"
#include "document/fimage.h"
#include "picture_files.h"
#include "pixel/pixel_test_util.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QScrollBar>
#include <QSpinBox>
#include <QToolBar>

#include <array>
#include <utility>

using namespace ostrivex;
using ostrivex::testing::FreshHome;
using ostrivex::testing::OpenDocument;
using ostrivex::testing::Rgb;

namespace {

class ToolPanelsTest : public FreshHome {
  protected:
    void SetUp() override {
        FreshHome::SetUp();
        ostrivex::testing::ResetProgramGlobals();
    }
    void TearDown() override { main_.reset(); }

    // The main window as start-up leaves it: built, then the eight Init routines.
    void start() {
        main_ = std::make_unique<fMain>();
        SelectionMove_Init(*main_);
        Select_Init(*main_);
        Airbrush_Init(*main_);
        Brush_Init(*main_);
        Fill_Init(*main_);
        Shape_Init(*main_);
        Gradient_init(*main_);
        Stamp_Init(*main_);
    }
    template <class T> T* find(const char* name) {
        T* w = main_->toolPanels()->findChild<T*>(name);
        EXPECT_NE(w, nullptr) << name;
        return w;
    }
    QString labelOf(const char* name) {
        auto* l = main_->toolPanels()->findChild<QLabel*>(QString(name) + "Label");
        return l ? l->text() : QString("<no label>");
    }
    bool inPanel(const char* panel, QWidget* w) {
        QFrame* f = main_->toolPanels()->panel(panel);
        return f && w && f->isAncestorOf(w);
    }
    QAction* button(const char* key) {
        for (QAction* a : main_->toolBar()->actions())
            if (a->objectName() == key) return a;
        ADD_FAILURE() << key;
        return nullptr;
    }
    fImage* openDocument() {
        return OpenDocument(*main_, test::makeBits(2, 1, {{10, 20, 30}, {200, 100, 0}}));
    }
    std::string activeTool() const { return FieldText(Settings.ActiveTool); }
    QImage shownPicture() const {
        return main_->currentToolPicture()->pixmap().toImage().convertToFormat(
            QImage::Format_ARGB32_Premultiplied);
    }
    static QStringList itemsOf(const QComboBox* combo) {
        QStringList items;
        for (int i = 0; i < combo->count(); ++i)
            items << combo->itemText(i);
        return items;
    }
    static QImage picture(const char* key) {
        return ToolPixmap(key, 32).toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    }

    std::unique_ptr<fMain> main_;
};

struct TrioRow {
    const char* panel;
    const char* name;
    const char* caption;
    int byDefault;
};

TEST_F(ToolPanelsTest, SliderGroupsHaveTheirNamesCaptionsRangesAndDefaults) {
    start();
    const TrioRow rows[] = {
        {"Selection", "sbSelectionPressure", "Pressure", 50},
        {"SelectionMove", "cSelectionPressure", "Opaque Intensity", 50},
        {"Brush", "sbBrushSize", "Size", 25},
        {"Brush", "sbBrushPressure", "Intensity", 25},
        {"AirBrush", "sbAirbrushSize", "Size", 75},
        {"AirBrush", "sbAirbrushPressure", "Pressure", 25},
        {"AirBrush", "sbAirBrushQuantity", "Quantity", 100},
        {"AirBrush", "sbAirbrushDefinition", "Definition", 1},
        {"Fill", "sbFillTolerance", "Tolerance", 25},
        {"Fill", "sbFillPressure", "Pressure", 100},
        {"Gradient", "sbGradPressure", "Pressure", 50},
        {"Gradient", "sbGradFrequency", "Frequency", 1},
        {"Shape", "sbShapePressure", "Pressure", 100},
        {"Shape", "sbShapeSides", "Pologon sides", 3},
        {"Stamp", "sbStampPressure", "Pressure", 50},
    };
    for (const TrioRow& r : rows) {
        SCOPED_TRACE(r.name);
        auto* slider = find<cpvSlider>(r.name);
        auto* ud = find<QScrollBar>((QString(r.name) + "UD").toUtf8().constData());
        auto* text = find<QLineEdit>((QString(r.name) + "UDT").toUtf8().constData());
        ASSERT_TRUE(slider && ud && text);
        EXPECT_TRUE(inPanel(r.panel, slider) && inPanel(r.panel, ud) && inPanel(r.panel, text));
        EXPECT_EQ(labelOf(r.name), r.caption);
        // Slider 1..100; up-down 1..100 by steps of 1 and pages of 10.
        EXPECT_EQ((std::array{slider->minimum(), slider->maximum(), ud->minimum(), ud->maximum(),
                              ud->singleStep(), ud->pageStep()}),
                  (std::array{1, 100, 1, 100, 1, 10}));
        EXPECT_EQ((std::array{slider->value(), ud->value()}),
                  (std::array{r.byDefault, r.byDefault}));
        EXPECT_EQ(text->text(), QString::number(r.byDefault));
    }
}

TEST_F(ToolPanelsTest, ListsChecksAndWellsHaveTheirCaptionsItemsTipsAndDefaults) {
    start();
    struct ComboRow {
        const char* panel;
        const char* name;
        const char* caption;
        QStringList items;
        int byDefault;
    };
    const ComboRow combos[] = {
        {"Selection", "cbSelectionMode", "Mode", {"Add", "Subtract", "New"}, 2},
        {"Selection",
         "cbSelectionShape",
         "Shape",
         {"Rectangle", "Ellipse", "Polygon/Free hand", "Pixel"},
         0},
        {"SelectionMove",
         "cSelectionMove",
         "Action",
         {"Move Selection Only", "Move Content Only"},
         0},
        {"Brush",
         "cbBrushMode",
         "Mode",
         {"Current color", "Soften", "Soften (Overlay)", "Sharpen", "Lighten", "Darken",
          "Current stamp (Tiled)"},
         0},
        {"Fill", "cbFillMode", "Mode", {"Current color", "Current stamp"}, 0},
        {"Gradient", "cbGradMode", "Mode", {"Linear", "Circular"}, 0},
    };
    for (const ComboRow& r : combos) {
        SCOPED_TRACE(r.name);
        auto* combo = find<QComboBox>(r.name);
        ASSERT_NE(combo, nullptr);
        EXPECT_TRUE(inPanel(r.panel, combo));
        EXPECT_EQ(labelOf(r.name), r.caption);
        EXPECT_EQ(itemsOf(combo), r.items);
        EXPECT_EQ(combo->currentIndex(), r.byDefault);
    }

    auto* shapes = find<QListWidget>("lstShape");
    ASSERT_NE(shapes, nullptr);
    EXPECT_TRUE(inPanel("Shape", shapes));
    EXPECT_EQ(labelOf("lstShape"), "Shape");
    QStringList items;
    for (int i = 0; i < shapes->count(); ++i)
        items << shapes->item(i)->text();
    EXPECT_EQ(items, (QStringList{"Line", "Free hand", "Square", "Rectangle", "Circle", "Ellipse",
                                  "Polygon"}));
    EXPECT_EQ(shapes->currentRow(), 0);

    struct CheckRow {
        const char* panel;
        const char* name;
        const char* caption;
        const char* tip;
        bool byDefault;
    };
    const CheckRow checks[] = {
        {"Selection", "chkMoveSelection", "&Move selection", "Move region / move pixels", true},
        {"Brush", "chkContinuous", "Trace", "", true},
        {"Gradient", "chkTranspCol", "Transparent", "", false},
        {"Stamp", "chkClearBack", "&Clear back", "Clear stamp track", false},
        {"Stamp", "chkStampMask", "&Stamp mask", "Current color stamp", true},
        {"Stamp", "chkUseMaskColor", "Mask color", "Use mask color", false},
    };
    for (const CheckRow& r : checks) {
        SCOPED_TRACE(r.name);
        auto* check = find<QCheckBox>(r.name);
        ASSERT_NE(check, nullptr);
        EXPECT_TRUE(inPanel(r.panel, check));
        EXPECT_EQ(check->text(), r.caption);
        EXPECT_EQ(check->toolTip(), r.tip);
        EXPECT_EQ(check->isChecked(), r.byDefault);
    }

    // Colour wells: white and black for the gradient, black for the stamp mask.
    const auto grads = main_->toolPanels()->findChildren<bColorTool*>("GradColor");
    ASSERT_EQ(grads.size(), 2);
    EXPECT_TRUE(inPanel("Gradient", grads[0]));
    EXPECT_EQ(grads[0]->colour(), 0xFFFFFF);
    EXPECT_EQ(grads[1]->colour(), 0);
    auto* mask = find<bColorTool>("MaskColor");
    EXPECT_TRUE(inPanel("Stamp", mask));
    EXPECT_EQ(mask->colour(), 0);
    EXPECT_TRUE(inPanel("Stamp", find<QComboBox>("cbStamps")));
    EXPECT_TRUE(inPanel("Stamp", find<QLabel>("icStamp")));

    // Nine panels, named as the tools' frames.
    for (const char* p : {"Selection", "SelectionMove", "Brush", "AirBrush", "Fill", "Gradient",
                          "Shape", "Stamp", "Layer"})
        EXPECT_NE(main_->toolPanels()->findChild<QFrame*>(p), nullptr) << p;
}

TEST_F(ToolPanelsTest, TheThreeControlsOfAGroupMoveTogetherAndWriteTheSetting) {
    start();
    auto* slider = find<cpvSlider>("sbBrushSize");
    auto* ud = find<QScrollBar>("sbBrushSizeUD");
    auto* text = find<QLineEdit>("sbBrushSizeUDT");

    // 1. The slider.
    slider->setValue(40);
    EXPECT_EQ(ud->value(), 40);
    EXPECT_EQ(text->text(), "40");
    EXPECT_EQ(Settings.BrushSize, 40);
    // 2. The up-down bar, one step and one large step.
    ud->triggerAction(QAbstractSlider::SliderSingleStepAdd);
    EXPECT_EQ(text->text(), "41");
    EXPECT_EQ(slider->value(), 41);
    EXPECT_EQ(Settings.BrushSize, 41);
    ud->triggerAction(QAbstractSlider::SliderPageStepAdd);
    EXPECT_EQ(Settings.BrushSize, 51);
    EXPECT_EQ(text->text(), "51");
    // 3. The text: above 100 becomes "100" at once.
    text->setText("150");
    EXPECT_EQ(text->text(), "100");
    EXPECT_EQ(slider->value(), 100);
    EXPECT_EQ(ud->value(), 100);
    EXPECT_EQ(Settings.BrushSize, 100);
    text->setText("7");
    EXPECT_EQ(slider->value(), 7);
    EXPECT_EQ(ud->value(), 7);
    EXPECT_EQ(Settings.BrushSize, 7);
    // A number is read up to its first other character; halves go to the even neighbour.
    text->setText("12px");
    EXPECT_EQ(Settings.BrushSize, 12);
    EXPECT_EQ(text->text(), "12px");
    text->setText("50.5");
    EXPECT_EQ(Settings.BrushSize, 50);
    text->setText("51.5");
    EXPECT_EQ(Settings.BrushSize, 52);
    // An empty box (the user is typing) holds the setting at the minimum, text untouched.
    text->setText("");
    EXPECT_EQ(Settings.BrushSize, 1);
    EXPECT_EQ(slider->value(), 1);
    EXPECT_EQ(text->text(), "");
    // The other groups were not touched.
    EXPECT_EQ(Settings.BrushPressure, 25);
    EXPECT_EQ(find<QLineEdit>("sbBrushPressureUDT")->text(), "25");

    EXPECT_EQ(TextNumber("  42"), 42);
    EXPECT_EQ(TextNumber("-3"), -3);
    EXPECT_EQ(TextNumber("abc"), 0);
    EXPECT_EQ(TextNumber("2.5"), 2);
    EXPECT_EQ(TextNumber("3.5"), 4);
    EXPECT_EQ(TextNumber("99999999999"), 100000);
}

TEST_F(ToolPanelsTest, SettingsSharedByTwoPanelsFollowEitherControl) {
    start();
    auto* check = find<QCheckBox>("chkMoveSelection");
    auto* action = find<QComboBox>("cSelectionMove");
    check->setChecked(false);
    EXPECT_EQ(Settings.SelectMove, 0);
    EXPECT_EQ(action->currentIndex(), 1);
    action->setCurrentIndex(0);
    EXPECT_EQ(Settings.SelectMove, -1);
    EXPECT_TRUE(check->isChecked());
    action->setCurrentIndex(1);
    EXPECT_EQ(Settings.SelectMove, 0);
    EXPECT_FALSE(check->isChecked());

    find<cpvSlider>("sbSelectionPressure")->setValue(70);
    EXPECT_EQ(Settings.SelectPressure, 70);
    EXPECT_EQ(find<cpvSlider>("cSelectionPressure")->value(), 70);
    EXPECT_EQ(find<QLineEdit>("cSelectionPressureUDT")->text(), "70");
    find<QLineEdit>("cSelectionPressureUDT")->setText("150");
    EXPECT_EQ(Settings.SelectPressure, 100);
    EXPECT_EQ(find<cpvSlider>("sbSelectionPressure")->value(), 100);
    EXPECT_EQ(find<QLineEdit>("sbSelectionPressureUDT")->text(), "100");

    // Lists and checks of one setting each.
    find<QComboBox>("cbBrushMode")->setCurrentIndex(6);
    EXPECT_EQ(Settings.BrushMode, 6);
    find<QComboBox>("cbGradMode")->setCurrentIndex(1);
    EXPECT_EQ(Settings.GradientMode, 1);
    find<QListWidget>("lstShape")->setCurrentRow(6);
    EXPECT_EQ(Settings.ShapeKind, 6);
    find<QCheckBox>("chkTranspCol")->setChecked(true);
    EXPECT_EQ(Settings.GradientTransparent, -1);
    find<QCheckBox>("chkStampMask")->setChecked(false);
    EXPECT_EQ(Settings.StampMask, 0);
}

TEST_F(ToolPanelsTest, InitRoutinesShowTheSettingsAndWriteNothing) {
    Settings.BrushMode = 6;
    Settings.BrushSize = 33;
    Settings.BrushContinuous = 0;
    Settings.SelectMode = 1;
    Settings.SelectMove = 0;
    Settings.SelectPressure = 64;
    Settings.AirbrushSize = 150; // from a damaged file: shown as it is, not corrected
    Settings.ShapeKind = 4;
    Settings.ShapeSides = 8;
    Settings.GradientMode = 1;
    Settings.GradientColor1 = 0x123456;
    Settings.GradientColor2 = 0x00FF00;
    Settings.StampMaskColor = 0x0000FF;
    Settings.StampUseMaskColor = -1;
    Settings.FillMode = 1;
    Settings.FillTolerance = 9;
    const auto before = SettingsBytes(Settings);
    start();
    EXPECT_EQ(SettingsBytes(Settings), before);

    for (auto [name, index] : {std::pair{"cbBrushMode", 6}, {"cbSelectionMode", 1},
                               {"cSelectionMove", 1}, {"cbGradMode", 1}, {"cbFillMode", 1}})
        EXPECT_EQ(find<QComboBox>(name)->currentIndex(), index) << name;
    for (auto [name, text] : {std::pair{"sbBrushSizeUDT", "33"}, {"cSelectionPressureUDT", "64"},
                              {"sbSelectionPressureUDT", "64"}, {"sbAirbrushSizeUDT", "150"},
                              {"sbShapeSidesUDT", "8"}, {"sbFillToleranceUDT", "9"}})
        EXPECT_EQ(find<QLineEdit>(name)->text(), text) << name;
    EXPECT_EQ(find<cpvSlider>("sbBrushSize")->value(), 33);
    EXPECT_FALSE(find<QCheckBox>("chkContinuous")->isChecked());
    EXPECT_FALSE(find<QCheckBox>("chkMoveSelection")->isChecked());
    EXPECT_EQ(find<cpvSlider>("sbAirbrushSize")->value(), 100);
    EXPECT_EQ(Settings.AirbrushSize, 150);
    EXPECT_EQ(find<QListWidget>("lstShape")->currentRow(), 4);
    const auto grads = main_->toolPanels()->findChildren<bColorTool*>("GradColor");
    EXPECT_EQ(grads[0]->colour(), 0x123456);
    EXPECT_EQ(grads[1]->colour(), 0x00FF00);
    EXPECT_EQ(find<bColorTool>("MaskColor")->colour(), 0x0000FF);
    EXPECT_TRUE(find<QCheckBox>("chkUseMaskColor")->isChecked());

    // A second SelectionMove_Init keeps two items.
    SelectionMove_Init(*main_);
    EXPECT_EQ(find<QComboBox>("cSelectionMove")->count(), 2);
}

TEST_F(ToolPanelsTest, TheStampListTakesBmpFilesAndTheSecondPatternAsWritten) {
    for (const char* name : {"leaf.bmp", "LEAF.BMP", "a.gif,b.ico", ".gif,.ico"})
        EXPECT_TRUE(MatchesFilePattern(name, kStampPattern)) << name;
    for (const char* name : {"leaf.gif", "leaf.ico", "leaf.bmpx", "leaf.png", "a.gif;b.ico"})
        EXPECT_FALSE(MatchesFilePattern(name, kStampPattern)) << name;
    EXPECT_TRUE(MatchesFilePattern("ab", "a?;x"));
    EXPECT_FALSE(MatchesFilePattern("abc", "a?;x"));

    const QString stamps = home() + "/Stamps";
    ASSERT_TRUE(QDir().mkpath(stamps + "/folder.bmp"));
    const std::vector<Rgb> one{{1, 2, 3}};
    for (const char* name :
         {"b.bmp", "A.BMP", "c.gif", "d.ico", "e.png", "x.gif,y.ico", "notes.bmp.txt"})
        ASSERT_TRUE(ostrivex::testing::writeBmp24(stamps + "/" + name, 1, 1, one)) << name;
    start();
    QComboBox* list = main_->toolPanels()->stampList();
    EXPECT_EQ(itemsOf(list), (QStringList{"A", "b", "x.gif,y"}));
    EXPECT_EQ(list->currentIndex(), 0);
    EXPECT_EQ(main_->toolPanels()->CurrentStampFile(), stamps + "/A.BMP");
}

TEST_F(ToolPanelsTest, WithoutAStampsFolderTheListStaysEmpty) {
    main_ = std::make_unique<fMain>();
    main_->StampBits = Bits(3, 3);
    Stamp_Init(*main_);
    EXPECT_EQ(main_->toolPanels()->stampList()->count(), 0);
    EXPECT_TRUE(main_->StampBits.empty());
}

TEST_F(ToolPanelsTest, GetStampBitsReadsTheChosenStampExactly) {
    const QString stamps = home() + "/Stamps";
    ASSERT_TRUE(QDir().mkpath(stamps));
    // 2 x 2, rows padded to 8 bytes in the file.
    ASSERT_TRUE(ostrivex::testing::writeBmp24(
        stamps + "/a.bmp", 2, 2, {{10, 20, 30}, {200, 100, 0}, {1, 2, 3}, {255, 254, 253}}));
    ASSERT_TRUE(ostrivex::testing::writeBmp24(stamps + "/b.bmp", 3, 1,
                                              {{0, 0, 255}, {0, 255, 0}, {255, 0, 0}}));
    start();
    // Bits keeps blue, green, red; channel 3 is zero.
    EXPECT_TRUE(test::sameBits(
        test::makeBits(2, 2, {{30, 20, 10}, {0, 100, 200}, {3, 2, 1}, {253, 254, 255}}),
        main_->StampBits));
    EXPECT_FALSE(main_->toolPanels()->stampPicture()->pixmap().isNull());

    // Choosing the second stamp reads it.
    main_->toolPanels()->stampList()->setCurrentIndex(1);
    EXPECT_TRUE(test::sameBits(test::makeBits(3, 1, {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}}),
                               main_->StampBits));

    // A stamp that is not a picture leaves no stamp.
    ASSERT_TRUE(ostrivex::testing::writeText(stamps + "/c.bmp", "not a picture"));
    Stamp_Init(*main_);
    main_->toolPanels()->stampList()->setCurrentIndex(2);
    EXPECT_TRUE(main_->StampBits.empty());
}

TEST(ToolRegistry, EveryToolButtonThatPaintsOrSelectsHasItsClass) {
    // The buttons that act once or scroll are not tools; every other one is found by its
    // word, trailing blanks of the settings field and all.
    const QStringList notTools{"ZoomIn", "ZoomOut", "MouseScroll", "MM", "Layers"};
    for (const char* key : fMain::ToolKeys) {
        SCOPED_TRACE(key);
        EXPECT_EQ(FindTool(key) != nullptr, !notTools.contains(key));
    }
    EXPECT_EQ(FindTool("Brush   "), FindTool("Brush"));
    EXPECT_EQ(FindTool(""), nullptr);
}

TEST_F(ToolPanelsTest, ToolButtonsWithoutADocument) {
    SetFieldText(Settings.ActiveTool, "Brush");
    start();
    // The stored tool is down again with its panel.
    EXPECT_TRUE(button("Brush")->isChecked());
    EXPECT_EQ(main_->toolPanels()->VisiblePanel(), "Brush");
    EXPECT_EQ(main_->toolBar()->actions().size() > 15 &&
                  main_->toolBar()->findChild<QLabel*>("iCurrentTool") != nullptr,
              true);

    // ZoomIn with no document: only the picture changes.
    main_->PasteMode = 3;
    const auto before = SettingsBytes(Settings);
    button("ZoomIn")->trigger();
    EXPECT_EQ(shownPicture(), picture("ZoomIn"));
    EXPECT_NE(shownPicture(), picture("Brush"));
    EXPECT_EQ(SettingsBytes(Settings), before);
    EXPECT_EQ(main_->toolPanels()->VisiblePanel(), "Brush");
    EXPECT_TRUE(button("Brush")->isChecked());
    EXPECT_FALSE(button("ZoomIn")->isChecked());
    EXPECT_EQ(main_->statusPanel("Zoom"), "");
    EXPECT_EQ(main_->PasteMode, 3);

    // A tool with a panel: its key, its panel, the paste mode ended, the others up.
    button("Select")->trigger();
    EXPECT_EQ(activeTool(), "Select");
    EXPECT_EQ(main_->toolPanels()->VisiblePanel(), "Selection");
    EXPECT_EQ(main_->PasteMode, 0);
    EXPECT_FALSE(button("Brush")->isChecked());
    EXPECT_EQ(shownPicture(), picture("Select"));
    // Each button down in turn: its key, the panel then showing, the one before up.
    // GetColor and the scroll keys keep the panel that shows; the pencil has none.
    const char* previous = "Select";
    for (auto [key, panel] : {std::pair{"Airbrush", "AirBrush"}, {"Layers", "Layer"},
                              {"SelectionMove", "SelectionMove"}, {"GetColor", "SelectionMove"},
                              {"MM", "SelectionMove"}, {"Pencil", ""}, {"Fill", "Fill"}}) {
        SCOPED_TRACE(key);
        button(key)->trigger();
        EXPECT_EQ(activeTool(), key);
        EXPECT_EQ(main_->toolPanels()->VisiblePanel(), panel);
        EXPECT_FALSE(button(previous)->isChecked());
        previous = key;
    }
    // Released: no tool, no panel; the field is all blanks.
    button("Fill")->trigger();
    EXPECT_FALSE(button("Fill")->isChecked());
    EXPECT_EQ(activeTool(), "");
    EXPECT_EQ(std::string(Settings.ActiveTool.data(), 25), std::string(25, ' '));
    EXPECT_EQ(main_->toolPanels()->VisiblePanel(), "");
}

TEST_F(ToolPanelsTest, ToolButtonsWithADocument) {
    start();
    // The zoom needs a laid-out document window.
    main_->resize(800, 600);
    main_->show();
    fImage* doc = openDocument();
    QApplication::processEvents();
    // Activation shows the zoom in the one form the zoom buttons use too.
    EXPECT_EQ(main_->statusPanel("Zoom"), "1 : 1");
    button("ZoomIn")->trigger();
    EXPECT_EQ(doc->ZoomFactor(), 2);
    EXPECT_EQ(main_->statusPanel("Zoom"), "2 : 1");
    button("ZoomIn")->trigger();
    EXPECT_EQ(main_->statusPanel("Zoom"), "3 : 1");
    button("ZoomOut")->trigger();
    EXPECT_EQ(doc->ZoomFactor(), 2);
    EXPECT_EQ(main_->statusPanel("Zoom"), "2 : 1");
    // Down past 1 : 1 the view is reduced; the combo follows.
    button("ZoomOut")->trigger();
    button("ZoomOut")->trigger();
    EXPECT_EQ(doc->Scale(), (ViewScale{1, 2}));
    EXPECT_EQ(main_->statusPanel("Zoom"), "1 : 2");
    EXPECT_EQ(main_->zoomCombo()->currentText(), "1 : 2");
    button("ZoomIn")->trigger();
    EXPECT_EQ(activeTool(), "");
    // The keys: Ctrl + 0 fits the 2 x 1 picture (15 : 1 at most), Ctrl + 1 is 1 : 1 again.
    auto* fit = main_->findChild<QAction*>("ViewFit");
    ASSERT_NE(fit, nullptr);
    EXPECT_TRUE(fit->shortcuts().contains(QKeySequence("Ctrl+0")));
    fit->trigger();
    EXPECT_EQ(doc->Scale(), (ViewScale{15, 1}));
    EXPECT_EQ(main_->statusPanel("Zoom"), "15 : 1");
    main_->findChild<QAction*>("ViewActualPixels")->trigger();
    EXPECT_EQ(doc->Scale(), (ViewScale{1, 1}));

    button("MouseScroll")->trigger();
    EXPECT_TRUE(doc->MouseScroll());
    button("GetColor")->trigger();
    EXPECT_FALSE(doc->MouseScroll());
    button("MM")->trigger();
    EXPECT_TRUE(doc->MouseScroll());
    button("Brush")->trigger();
    EXPECT_FALSE(doc->MouseScroll());

    // Layers shows the Layer view; any other tool brings the Enhanced view back.
    button("Layers")->trigger();
    EXPECT_EQ(doc->CurrentView(), fImage::ViewLayers);
    // A document made active takes hand scrolling from the hand buttons: not from Layers.
    fImage* second = openDocument();
    second->Form_Activate();
    EXPECT_FALSE(second->MouseScroll());
    button("MouseScroll")->trigger();
    fImage* third = openDocument();
    third->Form_Activate();
    EXPECT_TRUE(third->MouseScroll());
    main_->mdiArea()->setActiveSubWindow(main_->mdiArea()->subWindowList().front());
    doc->Form_Activate();
    button("Layers")->trigger();
    button("Shape")->trigger();
    EXPECT_EQ(doc->CurrentView(), fImage::ViewEnhanced);
    EXPECT_EQ(main_->toolPanels()->VisiblePanel(), "Shape");

    // A floating paste is put down: cFilter's pixels become the document's.
    main_->PendingPaste = true;
    main_->PasteMode = 2;
    main_->Filter().SetBits(test::makeBits(2, 1, {{1, 2, 3}, {4, 5, 6}}));
    button("Gradient")->trigger();
    EXPECT_FALSE(main_->PendingPaste);
    EXPECT_EQ(main_->PasteMode, 0);
    EXPECT_TRUE(test::sameBits(test::makeBits(2, 1, {{1, 2, 3}, {4, 5, 6}}), doc->bits()));
    EXPECT_FALSE(doc->SelectionTimerActive());
    EXPECT_EQ(main_->toolPanels()->VisiblePanel(), "Gradient");
}

TEST_F(ToolPanelsTest, ColourWellsOfThePanelsAskThroughTheColourDialog) {
    start();
    const auto grads = main_->toolPanels()->findChildren<bColorTool*>("GradColor");
    ostrivex::testing::answerNextModal([](QWidget* w) {
        auto* dialog = qobject_cast<fGradient*>(w);
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->colour(), 0xFFFFFF);
        dialog->red()->setValue(0x12);
        dialog->green()->setValue(0x34);
        dialog->blue()->setValue(0x56);
        dialog->accept();
    });
    grads[0]->click();
    EXPECT_EQ(Settings.GradientColor1, 0x563412);
    EXPECT_EQ(grads[0]->colour(), 0x563412);

    // Cancel keeps the colour.
    ostrivex::testing::answerNextModal([](QWidget* w) {
        qobject_cast<fGradient*>(w)->red()->setValue(200);
        qobject_cast<fGradient*>(w)->reject();
    });
    find<bColorTool>("MaskColor")->click();
    EXPECT_EQ(Settings.StampMaskColor, 0);

    ostrivex::testing::answerNextModal([](QWidget* w) {
        qobject_cast<fGradient*>(w)->red()->setValue(200);
        qobject_cast<fGradient*>(w)->accept();
    });
    find<bColorTool>("MaskColor")->click();
    EXPECT_EQ(Settings.StampMaskColor, 200);
    EXPECT_EQ(Settings.GradientColor2, 0);
}

} // namespace

OSTRIVEX_APP_TEST_MAIN()
