// fImage: the document window, one open image.
//
// It owns the Enhanced pixel buffer `Bits` (drawn at an integer zoom of 1 to 15), the
// undo history on disk, and the selection (`cBitRegion`) that cFilter and the paint tools
// work inside. It is a plain QWidget
// that the main window puts into a QMdiSubWindow (DocumentHost::AddDocumentWindow).
//
// Layout of the window: a tab bar with the three views (Enhanced, Layers, Optimize) and
// under it one panel per view. The Enhanced panel `PImage` holds the canvas `iDst` and
// the scroll bars `hSB`, `vSB`. The Optimize panel `oImage` shows the Optimize Box's
// preview (OptimizeView); the Layers panel `picFrame` is empty for now.
#pragma once

#include "model/bitregion.h"
#include "document/paint/paint.h"
#include "model/undostore.h"
#include "pixel/bits.h"
#include "pixel/region.h"

#include <QImage>
#include <QLine>
#include <QPoint>
#include <QRect>
#include <QString>
#include <QTimer>
#include <QWidget>

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

class QPainter;
class QScrollBar;
class QTabBar;

namespace ostrivex {

class DocumentHost;
class OptimizeView;

// Where UpdateImage copies from and to: a source rectangle of `Bits` (array coordinates,
// so x and y of 2 are the first image pixel) and a destination rectangle on the canvas,
// which may start left of or above the canvas by less than one zoomed pixel.
struct StretchPlan {
    int32_t dstX = 0, dstY = 0, dstW = 0, dstH = 0;
    int32_t srcX = 0, srcY = 0, srcW = 0, srcH = 0;
    bool operator==(const StretchPlan&) const = default;
};

// The rectangles for an image of w x h at zoom z on a canvas of canvasW x canvasH with
// the given scroll values and maxima (a maximum below 1 means that bar is not in use).
StretchPlan PlanStretch(int32_t w, int32_t h, int32_t z, int32_t canvasW, int32_t canvasH,
                        int32_t hValue, int32_t hMax, int32_t vValue, int32_t vMax);

// Nearest-neighbour integer stretch of the plan's source rectangle of bits onto target
// (Format_RGB32): target pixel (dx, dy) takes source (srcX + (dx - dstX) * srcW / dstW,
// srcY + (dy - dstY) * srcH / dstH). Source pixels outside the array read black. False if
// the plan cannot be drawn (empty rectangles).
bool StretchBits(const Bits& bits, const StretchPlan& plan, QImage& target);

// The marching-ants outline: the pixels of the selection's scaled region (`RegionScaled`),
// moved by (x, y), that touch the outside on the left, right, top or bottom, painted one
// pixel wide with the ant brush of the current phase. The pattern repeats every 8 pixels
// from the device's origin: a set bit is white, a clear bit black. Nothing is drawn for a
// null or empty selection.
void DrawSelectionOutline(QPainter& painter, const cBitRegion& selection, int32_t x, int32_t y);

class fImage : public QWidget {
    Q_OBJECT
public:
    // The views, in the order of the tab bar.
    enum View { ViewEnhanced = 0, ViewLayers = 1, ViewOptimize = 2 };

    explicit fImage(QWidget* parent = nullptr);
    ~fImage() override;

    // --- Document state ------------------------------------------------------------
    // The file this document came from or was saved to, and its lower-case extension.
    QString FileName;
    QString FileExtension;
    bool Changed = false;
    int32_t CurrentLayer = 0;
    BitmapInfoHeader BitmapHeader;
    Rect PictureRect;

    // --- Selection -----------------------------------------------------------------
    // `Region`: the selection object. Qualified type names below: inside this class
    // `Region` names the accessor.
    cBitRegion& Region() { return selection_; }
    const cBitRegion& Region() const { return selection_; }
    // The pixels filters and paint tools may touch: the selection, or all of the image.
    const ostrivex::Region& EffectiveRegion() const { return ostrivex::EffectiveRegion(selection_); }
    // Gives cFilter this document's EffectiveRegion. With force false only when cFilter
    // already works on this document (it holds the region this document last gave it);
    // a selection command passes true.
    void GiveFilterRegion(bool force);
    // After a selection command: cFilter gets the EffectiveRegion, the canvas repaints, and
    // the ants run while there is a selection and stop when there is none.
    void SelectionChanged();

    // `tmrSelection`, the marching ants. `StartTimer` runs one tick at once and enables
    // the timer; `StopTimer` disables it. A tick with a selection turns the ant phase and
    // repaints the canvas, which draws the outline over the picture.
    void StartTimer();
    void StopTimer();
    void SelectionTick();
    bool SelectionTimerActive() const { return tmrSelection_.isActive(); }
    static constexpr int kSelectionTickMs = 150;

    // The undo history (counters, captions, files).
    UndoStore& History() { return *history_; }
    const UndoStore& History() const { return *history_; }
    int32_t HistoryId() const { return history_->HistoryId; }
    int32_t HistoryPosition() const { return history_->HistoryPosition; }
    int32_t HistoryTop() const { return history_->HistoryTop; }

    // --- Load and pixels -----------------------------------------------------------
    // Takes the next document number from the host's counter, makes the caption (the
    // file's path, or "Image" + number for an unnamed document) and names the undo files
    // after the number. Call once, before the first SaveUndoBits.
    void BeginDocument(const QString& caption);
    // The caption of the Enhanced view (the window title while that view shows).
    QString Caption() const { return caption_; }
    void SetCaption(const QString& caption);
    // `Bits` read: a copy (empty while no picture).
    Bits GetBits() const { return pictureExists_ ? bits_ : Bits(); }
    const Bits& bits() const { return bits_; }
    // `Bits` write: replaces the buffer, no redraw. A buffer of another size (a transform's
    // result) also resizes the document as CreateBlank does, resets the selection to the
    // whole new image (a selection of the old canvas no longer fits the pixels), and then
    // the scroll layout runs (which repaints).
    void SetBits(const Bits& b);
    void SetBits(Bits&& b);
    // `PPicture` set: the picture's pixels become `Bits`; a null image clears.
    void PPicture(const QImage& picture);
    // `SetPicture`: as PPicture; with saveUndo the state goes to the history under
    // "Update from Layers".
    QImage SetPicture(const QImage& picture, bool saveUndo);
    // PPicture from a pixel buffer (channel 3 kept): the loaders hand over Bits.
    void PBits(Bits picture);
    // `CreateBlank`: a zeroed buffer of w x h (both at least 1); the region stays.
    void CreateBlank(int32_t w, int32_t h);
    void Clear();
    bool PictureExists() const { return pictureExists_; }
    int32_t PictureWidth() const { return pictureExists_ ? bits_.width() : 0; }
    int32_t PictureHeight() const { return pictureExists_ ? bits_.height() : 0; }
    // The buffer without its guard band, as a picture (Format_RGB32).
    QImage Picture() const;
    // `save`: writes the Enhanced image to path in the format of type (an extension).
    bool save(const QString& path, const QString& type);

    // --- Zoom and view -------------------------------------------------------------
    // `ZoomFactor`: the index into ZoomTable (1..15); the effective zoom is the entry.
    int32_t ZoomFactor() const { return zoomIndex_; }
    void SetZoomFactor(int32_t index);
    int32_t Zoom() const { return ZoomTable[size_t(zoomIndex_ - 1)]; }
    void ZoomIn();
    void ZoomOut();
    int32_t BarsWidth() const { return barsWidth_; }
    void SetBarsWidth(int32_t value);
    bool MouseScroll() const { return mouseScroll_; }
    void SetMouseScroll(bool on);
    void Scroll(int32_t x, int32_t y);
    void GetDimensions(int16_t& imageW, int16_t& imageH, int16_t& viewW, int16_t& viewH) const;
    void GetSBV(int32_t& h, int32_t& v) const;
    void GetSBM(int32_t& h, int32_t& v) const;
    void SetAutoRedraw(bool on);
    bool AutoRedraw() const { return autoRedraw_; }
    // Draws the visible part of Bits onto the canvas at the zoom.
    void UpdateImage();
    // Redraws the selection outline only (a repaint of the canvas).
    void UpdateRegion();
    // The plan UpdateImage last used.
    const StretchPlan& LastPlan() const { return lastPlan_; }
    // The canvas contents as last drawn.
    const QImage& CanvasImage() const { return canvasImage_; }
    QWidget* Canvas() const { return iDst_; }
    QSize CanvasSize() const;
    // Scroll bar layout (`UserControl_Resize`).
    void UserControl_Resize();

    // --- Undo ----------------------------------------------------------------------
    // Saves Bits under the host's action label.
    void SaveUndoBits();
    // Saves Bits under the given caption (the first save at load uses "Original").
    void SaveUndoBits(const QString& label);
    void UndoBits();
    void RedoBits();
    bool LoadUndoBits(const QString& file);
    void SwapHistoy();
    void ClearHistoryFiles();
    // `Ltext_Click`: a click on the history entry of slot index.
    void JumpToHistory(int32_t index);

    // --- Views, activation, close --------------------------------------------------
    View CurrentView() const { return view_; }
    void cOriginal_Click();
    void cLayers_Click();
    void cOptimize_Click();
    void Form_Activate();
    void Form_Deactivate();
    // The close question; true if the close goes on (the window is then taken out of the
    // host's list).
    bool QueryUnload();
    // Unload: undo files deleted; the last document empties the status bar.
    void Unload();

    // The Optimize view (panel `oImage`): the Optimize Box puts its preview there.
    OptimizeView* OptimizePanel() const { return oImage_; }

    // The caption of the Layers and Optimize views (their pictures' tags).
    QString LayerTag;
    QString OptimizeTag;

    static constexpr std::array<int32_t, 15> ZoomTable{1, 2,  3,  4,  5,  6,  7, 8,
                                                       9, 10, 11, 12, 13, 14, 15};

    // --- Tool interaction: mouse and keys on the canvas (fimage_tools.cpp) ----------
    // The canvas forwards its mouse and key events here; the tool word and its settings
    // come from Settings (ActiveTool and the tool panels' fields), the shared buffers from
    // the host. Positions are image pixels unless named as canvas or screen points.
    struct ToolPoint {
        int32_t x = 0, y = 0;
        bool operator==(const ToolPoint&) const = default;
    };
    ToolPoint PressPoint;  // where the left button went down (polygons move it along)
    ToolPoint PrevPoint;   // the brush's previous stamp
    ToolPoint LastPoint;   // the last position seen; arrow keys and space work from it
    ToolPoint HotSpot;     // from the mouse to the top left of moved or stamped pixels
    bool MovingSelection = false; // the selection (or its pixels) follows the mouse
    bool MouseIsDown = false;
    std::vector<int32_t> PolygonPoints; // x, y pairs of the polygon being selected
    Bits MovedBits;                     // the lifted pixels of a content move
    QPoint CursorPoint, PrevCursorPoint; // screen points of hand scrolling
    bool Dragging = false;
    int32_t LastCellX = INT32_MIN, LastCellY = INT32_MIN; // last image cell of a move

    // Mouse events of the canvas: canvas position (pixels, before rounding), the button
    // that changed (press, release) or the buttons held (move), the screen position.
    void iDst_MouseDown(Qt::MouseButton button, QPointF pos, QPoint screen);
    void iDst_MouseMove(Qt::MouseButtons buttons, QPointF pos, QPoint screen);
    void iDst_MouseUp(Qt::MouseButton button, QPointF pos, QPoint screen);
    // Key events of the canvas (Qt key codes); true when the key was used.
    bool iDst_KeyDown(int key);
    void iDst_KeyUp(int key);
    // The image cell under a canvas position: (scroll + Round(pos)) div zoom.
    ToolPoint CellAt(QPointF pos) const;
    // The stroke's table of painted pixels (`CreateDoneBitsTable`).
    void CreateDoneBitsTable();

    // Rubber shapes over the canvas (fimage_shapes.cpp): 0 the rectangle, 1 the ellipse,
    // 2 the lines (the last one moves; keep adds a new last line for the next edge).
    // Coordinates are image pixels, shown at the zoom less the scroll values.
    void ShowShape(int32_t shape, int32_t x1, int32_t y1, int32_t x2, int32_t y2, bool keep);
    void HideShape(int32_t shape);
    struct RubberShapes {
        bool rectVisible = false, ellipseVisible = false;
        QRect rect, ellipse;            // canvas pixels
        std::vector<QLine> lines{QLine()}; // canvas pixels; element 0 always exists
        std::vector<bool> lineVisible{false};
    };
    const RubberShapes& Rubber() const { return rubber_; }

private:
    void toolPress(Qt::MouseButton button, ToolPoint at);
    void toolMove(Qt::MouseButtons buttons, ToolPoint at);
    void toolRelease(Qt::MouseButton button, ToolPoint at);
    void mouseMoveAt(Qt::MouseButtons buttons, QPointF pos, QPoint screen, bool forceCell);
    void showPosition(ToolPoint at);
    void showPixel(ToolPoint at);
    void showForeground();
    void restoreFromStrokeBase();
    void bitsToStrokeBase();
    void toolUpdate(const QString& label, bool redraw);
    void giveFilterSelection();
    void paintRubber(QPainter& painter) const;
    QString toolWord() const;
    RubberShapes rubber_;
    ostrivex::DoneBits doneBits_;
    bool toolCursorSet_ = false;
    // --- End of tool interaction --------------------------------------------------------

public:

protected:
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    QSize sizeHint() const override;

private:
    class CanvasWidget;
    friend class CanvasWidget;
    void fillHeader();
    void layoutPanels();
    void showView(View v);
    void writePixelPanel();
    void onScroll();

    DocumentHost* host() const;
    void hookActivation();
    void fitSubWindow();

    std::unique_ptr<UndoStore> history_;
    QString caption_;
    bool removed_ = false;
    bool active_ = false;
    bool activationHooked_ = false;
    Bits bits_;
    cBitRegion selection_;
    const ostrivex::Region* givenRegion_ = nullptr; // what this document last gave cFilter
    QTimer tmrSelection_;
    bool pictureExists_ = false;
    int32_t zoomIndex_ = 1;
    int32_t barsWidth_ = 16;
    bool mouseScroll_ = false;
    bool suppressScrollPaint_ = false;
    bool autoRedraw_ = true;
    int32_t lastHScroll_ = 0, lastVScroll_ = 0, lastHMax_ = 0, lastVMax_ = 0;
    bool layoutDone_ = false;
    bool unloaded_ = false;
    View view_ = ViewEnhanced;
    StretchPlan lastPlan_;
    QImage canvasImage_;

    QTabBar* tabs_ = nullptr;
    QWidget* PImage_ = nullptr;
    QWidget* picFrame_ = nullptr;
    OptimizeView* oImage_ = nullptr;
    QWidget* iDst_ = nullptr;
    QScrollBar* hSB_ = nullptr;
    QScrollBar* vSB_ = nullptr;
};

} // namespace ostrivex
