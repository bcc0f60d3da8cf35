// fImage: the window of one open document.
//
// The document itself (its Enhanced image, selection, undo history, file, layers and view
// state) is a `Document` of src/model, which the window owns and shows. Pixels change only
// through the model's Commit; the window hears of every change as the model's observer and
// redraws, keeps the filter engine cFilter on the document's pixels, and brings the status
// bar, the history list and the other boxes up to date. It is a plain QWidget that the main
// window puts into a QMdiSubWindow (DocumentHost::AddDocumentWindow).
//
// Layout of the window: a tab bar with the three views (Enhanced, Layers, Optimize) and
// under it one panel per view. The Enhanced panel `PImage` holds the canvas `iDst` and
// the scroll bars `hSB`, `vSB`. The Optimize panel `oImage` shows the Optimize Box's
// preview (OptimizeView); the Layers panel `picFrame` is empty for now.
#pragma once

#include "document/tools/tool.h"
#include "model/document.h"
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
class Tool;

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
// The rectangles below 1 : 1, at 1 : n: canvas pixel (x, y) shows image pixel
// ((hValue + x) * n, (vValue + y) * n), every n-th pixel of the image.
StretchPlan PlanReduced(int32_t n, int32_t canvasW, int32_t canvasH, int32_t hValue, int32_t vValue);

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

class fImage : public QWidget, private DocumentObserver {
    Q_OBJECT
public:
    // The views, in the order of the tab bar.
    enum View { ViewEnhanced = 0, ViewLayers = 1, ViewOptimize = 2 };

    explicit fImage(QWidget* parent = nullptr);
    ~fImage() override;

    // --- The document ------------------------------------------------------------------
    Document& Model() { return *model_; }
    const Document& Model() const { return *model_; }
    // Reads of the model that most callers want.
    bool PictureExists() const { return model_->PictureExists(); }
    int32_t PictureWidth() const { return model_->PictureWidth(); }
    int32_t PictureHeight() const { return model_->PictureHeight(); }
    const Bits& bits() const { return model_->bits(); }
    // `Region`: the selection object. Qualified type names below: inside this class
    // `Region` names the accessor.
    cBitRegion& Region() { return model_->Region(); }
    const cBitRegion& Region() const { return model_->Region(); }
    const ostrivex::Region& EffectiveRegion() const { return model_->EffectiveRegion(); }
    UndoStore& History() { return model_->History(); }
    const UndoStore& History() const { return model_->History(); }
    int32_t HistoryId() const { return model_->History().HistoryId; }
    int32_t HistoryPosition() const { return model_->History().HistoryPosition; }
    int32_t HistoryTop() const { return model_->History().HistoryTop; }

    // The header and rectangle of the Enhanced image as it is now.
    BitmapInfoHeader BitmapHeader;
    Rect PictureRect;

    // Takes the next document number from the host's counter, makes the caption (the
    // file's path, or "Image" + number for an unnamed document) and names the undo files
    // after the number. Call once, before the document's first state.
    void BeginDocument(const QString& caption);
    // The caption of the Enhanced view (the window title while that view shows).
    QString Caption() const { return model_->File.Caption; }
    void SetCaption(const QString& caption);
    // The Enhanced image without its guard band, as a picture (Format_RGB32).
    QImage Picture() const;
    // `save`: writes the Enhanced image to path in the format of type (an extension).
    bool save(const QString& path, const QString& type);

    // --- The filter engine and the selection ----------------------------------------
    // Gives cFilter this document's EffectiveRegion. With force false only when cFilter
    // already works on this document (it holds the region this document last gave it);
    // a selection command passes true.
    void GiveFilterRegion(bool force);
    // After a selection command: cFilter gets the EffectiveRegion, the canvas repaints, and
    // the ants run while there is a selection and stop when there is none.
    void SelectionChanged();
    // Ends an open edit without filing it: the pixels come back from cFilter, which holds
    // the last filed state (a paste taken away, a preview cancelled).
    void CancelEdit();

    // `tmrSelection`, the marching ants. `StartTimer` runs one tick at once and enables
    // the timer; `StopTimer` disables it. A tick with a selection turns the ant phase and
    // repaints the canvas, which draws the outline over the picture.
    void StartTimer();
    void StopTimer();
    void SelectionTick();
    bool SelectionTimerActive() const { return tmrSelection_.isActive(); }
    static constexpr int kSelectionTickMs = 150;

    // `SwapHistoy`: the history list of the History Box shows this document's states.
    void SwapHistoy();

    // --- Zoom and view (fimage_zoom.cpp) ------------------------------------------
    // `ZoomFactor`: the index into ZoomTable (1..15); the effective zoom is the entry. It
    // is 1 while the view is reduced below 1 : 1.
    int32_t ZoomFactor() const { return model_->View.ZoomIndex; }
    void SetZoomFactor(int32_t index);
    int32_t Zoom() const { return ZoomTable[size_t(model_->View.ZoomIndex - 1)]; }
    // The scale the canvas shows the image at: ZoomIndex : 1, or 1 : n below 1 : 1.
    ViewScale Scale() const { return model_->View.Scale(); }
    // A step of the ladder 1 : 16 ... 1 : 2, 1 : 1 ... 15 : 1; another scale is ignored.
    void SetScale(ViewScale scale);
    // One step up or down the ladder.
    void ZoomIn();
    void ZoomOut();
    // The largest step at which the whole image shows in the window.
    void FitInWindow();
    // One step in or out with the image point under the canvas position kept under it.
    void ZoomAbout(bool in, QPointF canvasPos);
    // The wheel over the canvas: it scrolls down and up (across with Shift, or a sideways
    // wheel); with Ctrl it zooms about the pointer. Deltas as Qt gives them (120 a notch).
    void iDst_Wheel(QPointF pos, QPoint angleDelta, QPoint pixelDelta, Qt::KeyboardModifiers modifiers);
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

    // --- Views, activation, close --------------------------------------------------
    View CurrentView() const { return View(model_->View.Tab); }
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

    static constexpr std::array<int32_t, 15> ZoomTable{1, 2,  3,  4,  5,  6,  7, 8,
                                                       9, 10, 11, 12, 13, 14, 15};

    // --- The canvas's mouse and keys (fimage_input.cpp) ------------------------------
    // The canvas forwards its mouse and key events here; the current tool (the word in
    // Settings.ActiveTool) gets them through the tools' registry. Positions are image
    // pixels unless named as canvas or screen points.
    using ToolPoint = ostrivex::ToolPoint;
    // The state of the stroke under way, which the tools share.
    StrokeState& Stroke() { return stroke_; }
    const StrokeState& Stroke() const { return stroke_; }

    // Mouse events of the canvas: canvas position (pixels, before rounding), the button
    // that changed (press, release) or the buttons held (move), the screen position.
    void iDst_MouseDown(Qt::MouseButton button, QPointF pos, QPoint screen);
    void iDst_MouseMove(Qt::MouseButtons buttons, QPointF pos, QPoint screen);
    void iDst_MouseUp(Qt::MouseButton button, QPointF pos, QPoint screen);
    // Key events of the canvas (Qt key codes); true when the key was used.
    bool iDst_KeyDown(int key);
    void iDst_KeyUp(int key);
    // The image cell under a canvas position: (scroll + Round(pos)) div zoom, or times n
    // at 1 : n.
    ToolPoint CellAt(QPointF pos) const;

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
    friend class ToolContext;
    Tool* currentTool() const;
    void toolPress(Qt::MouseButton button, ToolPoint at);
    void toolMove(Qt::MouseButtons buttons, ToolPoint at);
    void toolRelease(Qt::MouseButton button, ToolPoint at);
    void mouseMoveAt(Qt::MouseButtons buttons, QPointF pos, QPoint screen, bool forceCell);
    void moveAtCell(Qt::MouseButtons buttons, ToolPoint cell, QPoint screen, bool forceCell);
    void showPosition(ToolPoint at);
    void showPixel(ToolPoint at);
    void showForeground();
    void giveFilterSelection();
    void paintRubber(QPainter& painter) const;
    StrokeState stroke_;
    RubberShapes rubber_;
    QPoint cursorPoint_, prevCursorPoint_; // screen points of hand scrolling
    int wheelZoom_ = 0; // Ctrl + wheel turned short of a notch
    bool dragging_ = false;
    int32_t lastCellX_ = INT32_MIN, lastCellY_ = INT32_MIN; // last image cell of a move


protected:
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    QSize sizeHint() const override;

private:
    // What the model tells (DocumentObserver).
    void PixelsChanged(const EditTarget& target, bool sizeChanged) override;
    void Committed(const EditTarget& target, const QString& caption,
                   const UndoStore::SaveResult& saved) override;
    void HistoryMoved(int32_t shown, bool loaded) override;

    class CanvasWidget;
    friend class CanvasWidget;
    void buildCanvas();
    // The history list of the History Box (fimage_history.cpp).
    void historySaved(const UndoStore::SaveResult& saved, const QString& caption);
    void historyMoved(int32_t shown);
    void fillHeader();
    void pictureResized();
    // The zoom changed: the outline, the layout and the zoom shown follow.
    void zoomChanged();
    // The size of n image pixels on the canvas at the view's scale (at least 1 for n > 0).
    int64_t onCanvas(int64_t n) const;
    // The canvas position of an image point at the view's scale.
    QPointF canvasPoint(ToolPoint p) const;
    void layoutPanels();
    void showView(View v);
    void writePixelPanel();
    void onScroll();

    DocumentHost* host() const;
    void hookActivation();
    void fitSubWindow();

    std::unique_ptr<Document> model_;
    bool removed_ = false;
    bool active_ = false;
    bool activationHooked_ = false;
    const ostrivex::Region* givenRegion_ = nullptr; // what this document last gave cFilter
    QTimer tmrSelection_;
    int32_t barsWidth_ = 16;
    bool mouseScroll_ = false;
    bool suppressScrollPaint_ = false;
    bool autoRedraw_ = true;
    int32_t lastHScroll_ = 0, lastVScroll_ = 0, lastHMax_ = 0, lastVMax_ = 0;
    bool layoutDone_ = false;
    bool unloaded_ = false;
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
