#include "app/toolpanels.h"

namespace ostrivex {

// The panels (Selection, SelectionMove, Brush, AirBrush, Fill, Gradient, Shape, Stamp) do
// not exist yet; until they do, these routines have no controls to fill.
void SelectionMove_Init(fMain&) {}
void Select_Init(fMain&) {}
void Airbrush_Init(fMain&) {}
void Brush_Init(fMain&) {}
void Fill_Init(fMain&) {}
void Shape_Init(fMain&) {}
void Gradient_init(fMain&) {}
void Stamp_Init(fMain&) {}

} // namespace ostrivex
