// The tool panels' start-up routines, called once by StartUp in this order:
// SelectionMove_Init, Select_Init, Airbrush_Init, Brush_Init, Fill_Init, Shape_Init,
// Gradient_init, Stamp_Init. Each copies its settings into its panel's controls. The
// panels themselves are not built yet, so the routines have nothing to copy into.
#pragma once

namespace ostrivex {

class fMain;

void SelectionMove_Init(fMain& main);
void Select_Init(fMain& main);
void Airbrush_Init(fMain& main);
void Brush_Init(fMain& main);
void Fill_Init(fMain& main);
void Shape_Init(fMain& main);
void Gradient_init(fMain& main);
void Stamp_Init(fMain& main);

} // namespace ostrivex
