// The tools of the canvas: one class each, found by the tool word.
//
// The document window turns its canvas's mouse and key events into image positions and
// forwards them to the current tool (the word in Settings.ActiveTool): `Press` when the
// left button goes down, `Move` at each new image cell while it is held, `Release` when it
// comes up, `Key` and `KeyUp` for the keys the window does not take itself (it moves the
// tool position with the arrow keys and commits with the space bar). The window does the
// work every tool shares around those calls: the readouts of the position and colour, the
// press and last points, a pending paste (which owns the left button while it follows the
// mouse), the selection handed to cFilter after a release.
//
// A tool changes pixels through its context: `Pixels` opens an edit of the document's
// target and hands out its pixels, `RestoreBase` puts back the state the stroke started
// from (cFilter's copy), and `Commit` files the stroke in the history under the tool's
// caption, from where the window redraws and brings the rest up to date.
//
// Adding a tool: a file in this folder with its class and a `Make...` function, and one
// line in registry.cpp.
#pragma once

#include "document/paint/paint.h"
#include "pixel/bits.h"

#include <QCursor>
#include <QString>

#include <cstdint>
#include <memory>
#include <vector>

namespace ostrivex {

class DocumentHost;
class Document;
class Region;
class fImage;

// A position in image pixels (positions outside the image are passed on as they are).
struct ToolPoint {
    int32_t x = 0, y = 0;
    bool operator==(const ToolPoint&) const = default;
};

// The state of the stroke under way on one document; the window keeps one for the tools.
struct StrokeState {
    ToolPoint PressPoint;  // where the left button went down (polygons move it along)
    ToolPoint PrevPoint;   // the brush's previous stamp
    ToolPoint LastPoint;   // the last position seen; arrow keys and space work from it
    ToolPoint HotSpot;     // from the mouse to the top left of moved or stamped pixels
    bool MovingSelection = false; // the selection (or its pixels) follows the mouse
    bool MouseIsDown = false;
    std::vector<int32_t> PolygonPoints; // x, y pairs of the polygon being selected
    Bits MovedBits;                     // the lifted pixels of a content move
    DoneBits Done;                      // the pixels this pass has painted
};

// What a tool works with during one event.
class ToolContext {
public:
    ToolContext(fImage& window, StrokeState& stroke);

    fImage& Window;
    Document& Model;
    DocumentHost* Host; // nullptr without a main window
    StrokeState& Stroke;

    // The pixels the tool paints into: the target's, opened as an edit.
    Bits& Pixels();
    // The views show the pixels a tool changed.
    void Changed();
    // The pixels back to the state the stroke started from (cFilter's copy); nothing when
    // cFilter holds another picture.
    void RestoreBase();
    // The pixels as they stand are filed under label.
    void Commit(const QString& label);
    // The pixels a tool may touch: the selection, or the whole image.
    const Region& Area() const;
    // The stroke's table of painted pixels starts empty (`CreateDoneBitsTable`).
    void NewDoneTable();
    // The label the next commit of a pending paste or a space commit is filed under.
    void SetLabel(const QString& label);
    QString Label() const;
    // The cursor over the canvas.
    void SetCursor(const QCursor& cursor);
    void UnsetCursor();
    // The window's move routine at `at` with the left button held, as a press runs it.
    void MoveAt(ToolPoint at);
};

class Tool {
public:
    virtual ~Tool() = default;
    virtual void Press(ToolContext& c, ToolPoint at) {}
    // A new image cell with the left button held.
    virtual void Move(ToolContext& c, ToolPoint at) {}
    virtual void Release(ToolContext& c, ToolPoint at) {}
    // The space bar and the keys the window does not take; true when the tool used one.
    virtual bool Key(ToolContext& c, int key) { return false; }
    virtual void KeyUp(ToolContext& c, int key) {}
    // True when the space bar files what the tool left in the pixels (a moved selection's
    // content, a placed text) and carries on from the same place.
    virtual bool CommitsOnSpace() const { return false; }
    // The cursor the tool shows while it works.
    virtual QCursor Cursor() const;
};

// The tool of a word ("Pencil", "Brush" ...; trailing blanks are not part of it), or
// nullptr for a word that names no tool (the hand scrolling words, "Layers", "").
Tool* FindTool(const QString& word);
// The words of every tool, in the order of the registry.
std::vector<QString> ToolWords();

} // namespace ostrivex
