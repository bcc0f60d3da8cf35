// The tool panels: the strip under the tool toolbar that shows one panel for the chosen
// tool. A panel only edits tool settings, which live in `Settings`; the document's mouse
// handling reads them at each stroke.
//
// The panels are the frames `Selection`, `SelectionMove`, `Brush`, `AirBrush`, `Fill`,
// `Gradient`, `Shape`, `Stamp` and `Layer`. Their controls are described by one table
// (PanelControls): name, caption, tip, kind, setting and items. Controls change their
// setting at once; the Init routines copy `Settings` into the controls without writing
// anything back.
//
// Start-up calls the Init routines once, in this order: SelectionMove_Init, Select_Init,
// Airbrush_Init, Brush_Init, Fill_Init, Shape_Init, Gradient_init, Stamp_Init.
#pragma once

#include "app/settings/settings.h"

#include <QFrame>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <map>
#include <vector>

class QComboBox;
class QLabel;

namespace ostrivex {

class fMain;
class SliderTrio;

// What kind of control a table row makes.
enum class PanelControlKind {
    Combo,     // a drop-down list; the setting is the item index
    List,      // a one-row list box; the setting is the item index
    Trio,      // slider, up-down and text box for a value from 1 to 100
    Check,     // a check box for a boolean setting
    BoolCombo, // a drop-down list whose first item is true and second false
    Colour,    // a colour well (bColorTool)
};

struct PanelControl {
    const char* panel;
    const char* name;
    const char* caption; // "" for none
    const char* tip;     // "" for none
    PanelControlKind kind;
    std::int16_t SettingsRecord::*field16 = nullptr;
    std::int32_t SettingsRecord::*field32 = nullptr;
    std::vector<const char*> items = {};
};

// Every setting control of the panels, panel by panel.
const std::vector<PanelControl>& PanelControls();
// The nine panel names, in the order they sit in the strip.
const std::vector<const char*>& PanelNames();
// The panel of a tool key ("Select" -> "Selection", "Airbrush" -> "AirBrush", "Layers" ->
// "Layer"); "" for a key without a panel (the "Pencil" uses the brush colour and nothing
// else; the zoom and scroll keys keep the panel that shows).
QString PanelOfTool(const QString& key);

// The stamp folder's listing pattern, as the program has always written it: a ';' list of
// wildcard patterns, "*.bmp" and "*.gif,*.ico". The comma is no separator, so the second
// pattern names only files such as "a.gif,b.ico".
inline constexpr const char* kStampPattern = "*.bmp;*.gif,*.ico";
// True if `fileName` matches one of the ';'-separated wildcard patterns: '*' is any run of
// characters, '?' one character, everything else stands for itself (',' included);
// letters compare without regard to case, as on the file system the pattern was made for.
bool MatchesFilePattern(const QString& fileName, const QString& patterns);
// The files of `folder` that match `patterns`, sorted by name without regard to case;
// empty for a missing folder.
QStringList PatternFiles(const QString& folder, const QString& patterns);

// The strip of panels. Owned by the main window.
class ToolPanels : public QWidget {
    Q_OBJECT
  public:
    explicit ToolPanels(QWidget* parent = nullptr);

    // The strip asks for no width of its own: in a window narrower than the panel the
    // toolbar moves it behind its extension button instead of widening the window.
    QSize minimumSizeHint() const override { return {0, height()}; }

    QFrame* panel(const QString& name) const;
    // Hides every panel and shows `name` ("" or an unknown name: none shows).
    void ShowPanel(const QString& name);
    // The panel that shows, "" for none.
    QString VisiblePanel() const;

    // Copies the settings of every control of `panel` into the controls (no setting is
    // written, no change event runs).
    void ShowSettings(const QString& panel);
    SliderTrio* trio(const QString& name) const;

    // The stamp list (`cbStamps`), its picture (`icStamp`) and the folder it was filled
    // from.
    QComboBox* stampList() const { return cbStamps_; }
    QLabel* stampPicture() const { return icStamp_; }
    // Fills cbStamps from `folder` (pattern kStampPattern): one item per file, captioned
    // with the file name less its last 4 characters, the file's path as the item's data.
    void FillStamps(const QString& folder);
    // The path of the chosen stamp, "" for none.
    QString CurrentStampFile() const;

  signals:
    // The user chose another stamp in cbStamps.
    void stampChosen();

  private:
    QWidget* makeControl(const PanelControl& c, QWidget* panel);
    void showControl(const PanelControl& c);
    // After a control wrote `field`, the other controls of the same setting follow it.
    void syncSiblings(const void* field, const QString& except);

    std::map<QString, QFrame*> panels_;
    std::map<QString, QWidget*> controls_;
    QComboBox* cbStamps_ = nullptr;
    QLabel* icStamp_ = nullptr;
};

// --- Start-up and the routines of the panels -----------------------------------------

void SelectionMove_Init(fMain& main);
void Select_Init(fMain& main);
void Airbrush_Init(fMain& main);
void Brush_Init(fMain& main);
void Fill_Init(fMain& main);
void Shape_Init(fMain& main);
void Gradient_init(fMain& main);
// Also fills the stamp list from AppFolder() + "/Stamps", chooses the first stamp and
// reads it (GetStampBits), so that the Stamp tool has a stamp from the start.
void Stamp_Init(fMain& main);

// Hides all panels and shows the one of `ActiveTool`.
void Tool_Frame(fMain& main);
// Reads the picture of the chosen stamp into the host's `StampBits` (empty when there is
// no stamp or it cannot be read) and shows it in `icStamp`.
void GetStampBits(fMain& main);

} // namespace ostrivex
