#include "app/toolpanels.h"

#include "app/colour/bcolortool.h"
#include "app/fmain.h"
#include "app/panels/picturebits.h"
#include "app/panels/slidertrio.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSignalBlocker>

#include <algorithm>

namespace ostrivex {

namespace {

using SR = SettingsRecord;
using K = PanelControlKind;

QString qs(const char* s) {
    return QString::fromUtf8(s);
}

} // namespace

const std::vector<PanelControl>& PanelControls() {
    static const std::vector<PanelControl> table{
        // Selection. The mode's third item is the plain mode (a new selection).
        {"Selection",
         "cbSelectionMode",
         "Mode",
         "",
         K::Combo,
         &SR::SelectMode,
         nullptr,
         {"Add", "Subtract", "New"}},
        {"Selection",
         "cbSelectionShape",
         "Shape",
         "",
         K::Combo,
         &SR::SelectShape,
         nullptr,
         {"Rectangle", "Ellipse", "Polygon/Free hand", "Pixel"}},
        {"Selection", "sbSelectionPressure", "Pressure", "", K::Trio, &SR::SelectPressure},
        {"Selection", "chkMoveSelection", "&Move selection", "Move region / move pixels", K::Check,
         &SR::SelectMove},
        // SelectionMove. Its action list is filled by SelectionMove_Init.
        {"SelectionMove",
         "cSelectionMove",
         "Action",
         "",
         K::BoolCombo,
         &SR::SelectMove,
         nullptr,
         {"Move Selection Only", "Move Content Only"}},
        {"SelectionMove", "cSelectionPressure", "Opaque Intensity", "", K::Trio,
         &SR::SelectPressure},
        // Brush.
        {"Brush",
         "cbBrushMode",
         "Mode",
         "",
         K::Combo,
         &SR::BrushMode,
         nullptr,
         {"Current color", "Soften", "Soften (Overlay)", "Sharpen", "Lighten", "Darken",
          "Current stamp (Tiled)"}},
        {"Brush", "sbBrushSize", "Size", "", K::Trio, &SR::BrushSize},
        {"Brush", "sbBrushPressure", "Intensity", "", K::Trio, &SR::BrushPressure},
        {"Brush", "chkContinuous", "Trace", "", K::Check, &SR::BrushContinuous},
        // AirBrush.
        {"AirBrush", "sbAirbrushSize", "Size", "", K::Trio, &SR::AirbrushSize},
        {"AirBrush", "sbAirbrushPressure", "Pressure", "", K::Trio, &SR::AirbrushPressure},
        {"AirBrush", "sbAirBrushQuantity", "Quantity", "", K::Trio, &SR::AirbrushQuantity},
        {"AirBrush", "sbAirbrushDefinition", "Definition", "", K::Trio, &SR::AirbrushDefinition},
        // Fill.
        {"Fill",
         "cbFillMode",
         "Mode",
         "",
         K::Combo,
         &SR::FillMode,
         nullptr,
         {"Current color", "Current stamp"}},
        {"Fill", "sbFillTolerance", "Tolerance", "", K::Trio, &SR::FillTolerance},
        {"Fill", "sbFillPressure", "Pressure", "", K::Trio, &SR::FillPressure},
        // Gradient.
        {"Gradient",
         "cbGradMode",
         "Mode",
         "",
         K::Combo,
         nullptr,
         &SR::GradientMode,
         {"Linear", "Circular"}},
        {"Gradient", "GradColor", "", "First color", K::Colour, nullptr, &SR::GradientColor1},
        {"Gradient", "GradColor", "", "Second color", K::Colour, nullptr, &SR::GradientColor2},
        {"Gradient", "chkTranspCol", "Transparent", "", K::Check, &SR::GradientTransparent},
        {"Gradient", "sbGradPressure", "Pressure", "", K::Trio, &SR::GradientPressure},
        {"Gradient", "sbGradFrequency", "Frequency", "", K::Trio, &SR::GradientFrequency},
        // Shape. "Pologon sides" is the label as it has always stood.
        {"Shape",
         "lstShape",
         "Shape",
         "",
         K::List,
         &SR::ShapeKind,
         nullptr,
         {"Line", "Free hand", "Square", "Rectangle", "Circle", "Ellipse", "Polygon"}},
        {"Shape", "sbShapePressure", "Pressure", "", K::Trio, &SR::ShapePressure},
        {"Shape", "sbShapeSides", "Pologon sides", "", K::Trio, &SR::ShapeSides},
        // Stamp (the stamp list and picture come before these).
        {"Stamp", "sbStampPressure", "Pressure", "", K::Trio, &SR::StampPressure},
        {"Stamp", "chkClearBack", "&Clear back", "Clear stamp track", K::Check,
         &SR::StampClearBack},
        {"Stamp", "chkStampMask", "&Stamp mask", "Current color stamp", K::Check, &SR::StampMask},
        {"Stamp", "chkUseMaskColor", "Mask color", "Use mask color", K::Check,
         &SR::StampUseMaskColor},
        {"Stamp", "MaskColor", "", "Mask color", K::Colour, nullptr, &SR::StampMaskColor},
    };
    return table;
}

const std::vector<const char*>& PanelNames() {
    static const std::vector<const char*> names{"Selection", "SelectionMove", "Brush",
                                                "AirBrush",  "Fill",          "Gradient",
                                                "Shape",     "Stamp",         "Layer"};
    return names;
}

QString PanelOfTool(const QString& key) {
    static const std::map<QString, QString> map{
        {"Select", "Selection"}, {"SelectionMove", "SelectionMove"},
        {"Brush", "Brush"},      {"Airbrush", "AirBrush"},
        {"Fill", "Fill"},        {"Gradient", "Gradient"},
        {"Shape", "Shape"},      {"Stamp", "Stamp"},
        {"Layers", "Layer"}};
    auto it = map.find(key);
    return it == map.end() ? QString() : it->second;
}

bool MatchesFilePattern(const QString& fileName, const QString& patterns) {
    for (const QString& pattern : patterns.split(';', Qt::SkipEmptyParts)) {
        QString rx;
        for (QChar ch : pattern) {
            if (ch == '*')
                rx += ".*";
            else if (ch == '?')
                rx += '.';
            else
                rx += QRegularExpression::escape(QString(ch));
        }
        const QRegularExpression re(QRegularExpression::anchoredPattern(rx),
                                    QRegularExpression::CaseInsensitiveOption);
        if (re.match(fileName).hasMatch()) return true;
    }
    return false;
}

QStringList PatternFiles(const QString& folder, const QString& patterns) {
    QStringList out;
    const QDir dir(folder);
    if (folder.isEmpty() || !dir.exists()) return out;
    for (const QString& name : dir.entryList(QDir::Files | QDir::Hidden, QDir::NoSort))
        if (MatchesFilePattern(name, patterns)) out << name;
    std::sort(out.begin(), out.end(), [](const QString& a, const QString& b) {
        const int c = a.compare(b, Qt::CaseInsensitive);
        return c != 0 ? c < 0 : a < b;
    });
    return out;
}

// --- The strip of panels ----------------------------------------------------------------

ToolPanels::ToolPanels(QWidget* parent) : QWidget(parent) {
    setObjectName("ToolPanels");
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(4, 2, 4, 2);
    row->setSpacing(0);
    for (const char* name : PanelNames()) {
        auto* frame = new QFrame(this);
        frame->setObjectName(qs(name));
        auto* lay = new QHBoxLayout(frame);
        lay->setContentsMargins(0, 0, 0, 0);
        lay->setSpacing(12);
        frame->hide();
        panels_[qs(name)] = frame;
        row->addWidget(frame);
    }
    row->addStretch(1);

    // The stamp list and its picture lead the Stamp panel.
    QFrame* stamp = panels_["Stamp"];
    cbStamps_ = new QComboBox(stamp);
    cbStamps_->setObjectName("cbStamps");
    cbStamps_->setMinimumContentsLength(10);
    cbStamps_->setToolTip("Stamp");
    icStamp_ = new QLabel(stamp);
    icStamp_->setObjectName("icStamp");
    icStamp_->setFixedSize(28, 28);
    icStamp_->setFrameShape(QFrame::StyledPanel);
    icStamp_->setAlignment(Qt::AlignCenter);
    stamp->layout()->addWidget(icStamp_);
    stamp->layout()->addWidget(cbStamps_);
    connect(cbStamps_, &QComboBox::currentIndexChanged, this, [this] { emit stampChosen(); });

    for (const PanelControl& c : PanelControls()) {
        QFrame* frame = panels_[qs(c.panel)];
        frame->layout()->addWidget(makeControl(c, frame));
    }

    // The layer stack has its own box; the panel of the Layers tool says where to look.
    auto* note = new QLabel("Layers: choose, move and edit layers in the Layer Box; the "
                            "document shows its Layer view.",
                            panels_["Layer"]);
    note->setObjectName("lblLayer");
    panels_["Layer"]->layout()->addWidget(note);

    // The strip keeps the height of its tallest panel, so that the document area does not
    // jump when the tool changes.
    int tallest = 0;
    for (auto& [key, frame] : panels_)
        tallest = std::max(tallest, frame->sizeHint().height());
    setFixedHeight(tallest + row->contentsMargins().top() + row->contentsMargins().bottom());
}

QWidget* ToolPanels::makeControl(const PanelControl& c, QWidget* panel) {
    const QString name = qs(c.name);
    const void* field = c.field16 ? static_cast<const void*>(&(Settings.*c.field16))
                                  : static_cast<const void*>(&(Settings.*c.field32));
    auto labelled = [&](QWidget* control) -> QWidget* {
        auto* box = new QWidget(panel);
        auto* lay = new QHBoxLayout(box);
        lay->setContentsMargins(0, 0, 0, 0);
        lay->setSpacing(4);
        auto* label = new QLabel(qs(c.caption), box);
        label->setObjectName(name + "Label");
        label->setBuddy(control);
        label->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
        control->setParent(box);
        lay->addWidget(label);
        lay->addWidget(control);
        return box;
    };
    QWidget* made = nullptr;
    switch (c.kind) {
    case K::Combo:
    case K::BoolCombo: {
        auto* combo = new QComboBox;
        combo->setObjectName(name);
        if (c.kind == K::Combo)
            for (const char* item : c.items)
                combo->addItem(qs(item));
        connect(combo, &QComboBox::currentIndexChanged, this, [this, c, combo, field, name] {
            const int i = combo->currentIndex();
            if (i < 0) return;
            if (c.kind == K::BoolCombo)
                Settings.*c.field16 = Bool16(i == 0);
            else if (c.field16)
                Settings.*c.field16 = std::int16_t(i);
            else
                Settings.*c.field32 = i;
            syncSiblings(field, name);
        });
        controls_[name] = combo;
        made = labelled(combo);
        break;
    }
    case K::List: {
        // A one-row list: all items visible side by side, one chosen.
        auto* list = new QListWidget;
        list->setObjectName(name);
        list->setFlow(QListView::LeftToRight);
        list->setWrapping(false);
        list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        list->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        list->setSpacing(1);
        for (const char* item : c.items)
            list->addItem(qs(item));
        list->setFixedHeight(list->sizeHintForRow(0) + 2 * list->frameWidth() + 4);
        int width = 2 * list->frameWidth() + 4;
        for (int i = 0; i < list->count(); ++i)
            width += list->sizeHintForIndex(list->model()->index(i, 0)).width() + 2;
        list->setFixedWidth(width);
        connect(list, &QListWidget::currentRowChanged, this, [c](int row) {
            if (row >= 0) Settings.*c.field16 = std::int16_t(row);
        });
        controls_[name] = list;
        made = labelled(list);
        break;
    }
    case K::Trio: {
        auto* trio = new SliderTrio(name, qs(c.caption), c.field16, panel);
        connect(trio->slider(), &QSlider::valueChanged, this,
                [this, field, name] { syncSiblings(field, name); });
        connect(trio->upDown(), &QAbstractSlider::valueChanged, this,
                [this, field, name] { syncSiblings(field, name); });
        connect(trio->text(), &QLineEdit::textChanged, this,
                [this, field, name] { syncSiblings(field, name); });
        controls_[name] = trio;
        made = trio;
        break;
    }
    case K::Check: {
        auto* check = new QCheckBox(qs(c.caption), panel);
        check->setObjectName(name);
        connect(check, &QCheckBox::toggled, this, [this, c, field, name](bool on) {
            Settings.*c.field16 = Bool16(on);
            syncSiblings(field, name);
        });
        controls_[name] = check;
        made = check;
        break;
    }
    case K::Colour: {
        auto* well = new bColorTool(panel);
        well->setObjectName(name);
        well->setFixedSize(22, 22);
        connect(well, &bColorTool::colourChosen, this,
                [c](int32_t colour) { Settings.*c.field32 = colour; });
        // The two gradient wells share one name; the key tells them apart.
        controls_[name + QString::number(quintptr(well))] = well;
        made = well;
        break;
    }
    }
    if (*c.tip) made->setToolTip(qs(c.tip));
    return made;
}

void ToolPanels::syncSiblings(const void* field, const QString& except) {
    for (const PanelControl& c : PanelControls()) {
        const void* f = c.field16 ? static_cast<const void*>(&(Settings.*c.field16))
                                  : static_cast<const void*>(&(Settings.*c.field32));
        if (f == field && qs(c.name) != except && c.kind != K::Colour) showControl(c);
    }
}

QFrame* ToolPanels::panel(const QString& name) const {
    auto it = panels_.find(name);
    return it == panels_.end() ? nullptr : it->second;
}

void ToolPanels::ShowPanel(const QString& name) {
    for (auto& [key, frame] : panels_)
        frame->setVisible(false);
    if (QFrame* f = panel(name)) f->setVisible(true);
}

QString ToolPanels::VisiblePanel() const {
    for (auto& [key, frame] : panels_)
        if (!frame->isHidden()) return key;
    return {};
}

SliderTrio* ToolPanels::trio(const QString& name) const {
    auto it = controls_.find(name);
    return it == controls_.end() ? nullptr : qobject_cast<SliderTrio*>(it->second);
}

void ToolPanels::showControl(const PanelControl& c) {
    const QString name = qs(c.name);
    const int value = c.field16 ? Settings.*c.field16 : int(Settings.*c.field32);
    if (c.kind == K::Colour) {
        // Both gradient wells carry one name: the row's place among them picks the well.
        int nth = 0;
        for (const PanelControl& o : PanelControls()) {
            if (&o == &c) break;
            if (qs(o.name) == name) ++nth;
        }
        const auto wells = findChildren<bColorTool*>(name);
        if (nth < wells.size()) wells[nth]->setColour(value);
        return;
    }
    QWidget* w = controls_.at(name);
    const QSignalBlocker block(w);
    switch (c.kind) {
    case K::Combo:
        static_cast<QComboBox*>(w)->setCurrentIndex(value);
        break;
    case K::BoolCombo:
        static_cast<QComboBox*>(w)->setCurrentIndex(IsTrue(std::int16_t(value)) ? 0 : 1);
        break;
    case K::List:
        static_cast<QListWidget*>(w)->setCurrentRow(value);
        break;
    case K::Trio:
        static_cast<SliderTrio*>(w)->ShowValue(value);
        break;
    case K::Check:
        static_cast<QCheckBox*>(w)->setChecked(IsTrue(std::int16_t(value)));
        break;
    case K::Colour:
        break;
    }
}

void ToolPanels::ShowSettings(const QString& panel) {
    for (const PanelControl& c : PanelControls())
        if (qs(c.panel) == panel) showControl(c);
}

void ToolPanels::FillStamps(const QString& folder) {
    const QSignalBlocker block(cbStamps_);
    cbStamps_->clear();
    for (const QString& file : PatternFiles(folder, qs(kStampPattern)))
        cbStamps_->addItem(file.left(file.size() - 4), QDir(folder).filePath(file));
}

QString ToolPanels::CurrentStampFile() const {
    return cbStamps_->currentIndex() < 0 ? QString() : cbStamps_->currentData().toString();
}

// --- Routines ----------------------------------------------------------------------------

void SelectionMove_Init(fMain& main) {
    auto* combo = main.toolPanels()->findChild<QComboBox*>("cSelectionMove");
    {
        const QSignalBlocker block(combo);
        combo->clear();
        combo->addItem("Move Selection Only");
        combo->addItem("Move Content Only");
    }
    main.toolPanels()->ShowSettings("SelectionMove");
}

void Select_Init(fMain& main) {
    main.toolPanels()->ShowSettings("Selection");
}

void Airbrush_Init(fMain& main) {
    main.toolPanels()->ShowSettings("AirBrush");
}

void Brush_Init(fMain& main) {
    main.toolPanels()->ShowSettings("Brush");
}

void Fill_Init(fMain& main) {
    main.toolPanels()->ShowSettings("Fill");
}

void Shape_Init(fMain& main) {
    main.toolPanels()->ShowSettings("Shape");
}

void Gradient_init(fMain& main) {
    main.toolPanels()->ShowSettings("Gradient");
}

void Stamp_Init(fMain& main) {
    ToolPanels* panels = main.toolPanels();
    panels->FillStamps(QString::fromLocal8Bit(AppFolder().c_str()) + "/Stamps");
    {
        const QSignalBlocker block(panels->stampList());
        panels->stampList()->setCurrentIndex(panels->stampList()->count() > 0 ? 0 : -1);
    }
    GetStampBits(main);
    panels->ShowSettings("Stamp");
}

void Tool_Frame(fMain& main) {
    main.toolPanels()->ShowPanel(
        PanelOfTool(QString::fromStdString(FieldText(Settings.ActiveTool))));
}

void GetStampBits(fMain& main) {
    ToolPanels* panels = main.toolPanels();
    const QString file = panels->CurrentStampFile();
    const QImage picture = file.isEmpty() ? QImage() : ReadSmallPicture(file);
    main.StampBits = ImageToBits(picture);
    if (picture.isNull()) {
        panels->stampPicture()->clear();
        return;
    }
    const QSize box = panels->stampPicture()->contentsRect().size();
    QPixmap shown = QPixmap::fromImage(picture);
    if (shown.width() > box.width() || shown.height() > box.height())
        shown = shown.scaled(box, Qt::KeepAspectRatio, Qt::FastTransformation);
    panels->stampPicture()->setPixmap(shown);
}

} // namespace ostrivex
