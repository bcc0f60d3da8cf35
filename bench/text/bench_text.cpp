// Redraws of a 1000 x 300 text layer, as each text dialog makes one at every keystroke: the
// goal is under 16 ms, one frame. The `Draw...` rows time the drawing routine alone, the
// `Dialog...` rows the dialog's whole redraw (the routine, the picture to the screen's
// format, the canvas updated). Each iteration changes the text, as typing does, so no
// cached mask is reused.
#include "text/draw/logo.h"
#include "text/draw/styledtext.h"
#include "text/draw/text3d.h"
#include "text/f3d.h"
#include "text/flayertext.h"
#include "text/layercanvas.h"
#include "text/logoman.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFontDatabase>
#include <QLineEdit>
#include <QRadioButton>
#include <QSlider>
#include <QSpinBox>

#include <benchmark/benchmark.h>

#include <cstdlib>

namespace {

using namespace ostrivex;

QString family;
const char* const kTexts[2] = {"Your Text Here", "Your Text Here!"};

void BM_DrawStyleText(benchmark::State& state) {
    StyleTextSettings s;
    s.fontName = family;
    s.fontSize = 96; // 128 pixels: the line fills most of the layer
    s.width = 1000;
    s.height = 300;
    s.style = int(TextStyle::Both);
    s.depth = int(state.range(0));
    s.angle = 10;
    s.left = 20;
    s.right = 80;
    int i = 0;
    for (auto _ : state) {
        s.text = kTexts[i++ & 1];
        benchmark::DoNotOptimize(DrawStyleTextLayer(s));
    }
}
BENCHMARK(BM_DrawStyleText)->Arg(2)->Arg(10)->Unit(benchmark::kMillisecond);

void BM_Draw3DText(benchmark::State& state) {
    Text3DSettings s;
    s.fontName = family;
    s.fontSize = 96;
    s.width = 1000;
    s.height = 300;
    s.thickness = int(state.range(0));
    s.withTexture = true;
    s.texture = Bits(64, 64);
    int i = 0;
    for (auto _ : state) {
        s.text = kTexts[i++ & 1];
        benchmark::DoNotOptimize(Draw3DTextLayer(s));
    }
}
BENCHMARK(BM_Draw3DText)->Arg(12)->Arg(100)->Unit(benchmark::kMillisecond);

LogoSettings richLogo() {
    LogoSettings s;
    s.fontName = family;
    s.fontSize = 96;
    s.width = 1000;
    s.height = 300;
    s.fontFill = LogoFontFill::Gradient;
    s.border = true;
    s.borderSize = 6;
    s.glow = true;
    s.background = LogoBackground::Gradient;
    s.backGradient.style = GradientStyle::Circular;
    s.antiAlias = true;
    s.emboss = true;
    s.alpha = true;
    return s;
}

void BM_DrawLogo(benchmark::State& state) {
    LogoSettings s = richLogo();
    int i = 0;
    for (auto _ : state) {
        s.text = kTexts[i++ & 1];
        benchmark::DoNotOptimize(DrawLogo(s));
    }
}
BENCHMARK(BM_DrawLogo)->Unit(benchmark::kMillisecond);

void BM_LogoBacklight(benchmark::State& state) {
    LogoSettings s = richLogo();
    s.text = kTexts[0];
    const LogoState logo = DrawLogo(s);
    int i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(MakeBacklight(logo, 100 + (i++ & 1), 50, 0xFFFFFF, 20, 60, false));
}
BENCHMARK(BM_LogoBacklight)->Unit(benchmark::kMillisecond);

void BM_DialogStyleText(benchmark::State& state) {
    fLayerText d(nullptr, nullptr);
    d.cFonts->setCurrentText(family);
    d.Cs->setCurrentText("96");
    d.cboDepthT->setCurrentText("4");
    d.canvas->SetLayerSize(QSize(1000, 300));
    int i = 0;
    for (auto _ : state)
        d.txtLayerText->setText(kTexts[i++ & 1]);
}
BENCHMARK(BM_DialogStyleText)->Unit(benchmark::kMillisecond);

void BM_Dialog3DText(benchmark::State& state) {
    f3D d(nullptr, nullptr);
    d.Combo1->setCurrentText(family);
    d.HScroll2->setValue(96);
    d.Check4->setChecked(true);
    d.canvas->SetLayerSize(QSize(1000, 300));
    int i = 0;
    for (auto _ : state)
        d.Text1->setText(kTexts[i++ & 1]);
}
BENCHMARK(BM_Dialog3DText)->Unit(benchmark::kMillisecond);

void BM_DialogLogo(benchmark::State& state) {
    // The rich logo of BM_DrawLogo, through the controls.
    LogoMan d(nullptr, nullptr);
    d.CboName->setCurrentText(family);
    d.TxtSizeX->setValue(1000);
    d.TxtSizeY->setValue(300);
    d.CboSize->setCurrentText("96");
    d.OptTab0[int(LogoFontFill::Gradient)]->setChecked(true);
    d.TxtBordersize->setValue(6);
    d.ChkGlow->setChecked(true);
    d.OptTab2[int(LogoBackground::Gradient)]->setChecked(true);
    d.CboGrStyle[2]->setCurrentIndex(int(GradientStyle::Circular));
    d.ChkAlias->setChecked(true);
    d.ChkEmbosFont->setChecked(true);
    d.ChkAlpha->setChecked(true);
    if (!(d.settings().glow && d.settings().antiAlias && d.settings().alpha))
        state.SkipWithError("settings");
    int i = 0;
    for (auto _ : state)
        d.Text1->setText(kTexts[i++ & 1]);
}
BENCHMARK(BM_DialogLogo)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication app(argc, argv);
    const int id = QFontDatabase::addApplicationFont(QStringLiteral(OSTRIVEX_TEST_FONT));
    family = QFontDatabase::applicationFontFamilies(id).value(0);
    ::benchmark::Initialize(&argc, argv);
    ::benchmark::RunSpecifiedBenchmarks();
    ::benchmark::Shutdown();
    return 0;
}
