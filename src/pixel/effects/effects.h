// The effects library of the layer effects: one function per operation, each with the
// destination picture, the source picture, its values in order, and the colour key last.
//
// Every operation writes `dest` from `src` only (dest takes src's size; src is never
// changed, and dest and src must be two pictures), keeps the pixels of the key colour as
// they are and never makes a new one (see frame.h). Keys outside 0..0xFFFFFF mean none.
// Colours are 0x00BBGGRR. Operations that move or scatter pixels draw from a hash of the
// position, so they give the same pixels on every run.
//
// Lengths are in pixels for the effects that work on a neighbourhood (blurs, mosaic, oil
// paint, fragment); whole-picture shapes (waves, drops, tiles, rolls, lenses) are measured
// against the picture's size, so that a thumbnail shows what the full picture gets.
//
// What each operation does is listed in docs/effects.md.
#pragma once

#include "pixel/bits.h"
#include "pixel/region.h"

#include <cstdint>
#include <string>

namespace ostrivex::effects {

// --- Colour and tone (colour.cpp, tone.cpp) -----------------------------------------------
void ReduceTo8Colors(Bits& dest, const Bits& src, int32_t key);
void Sepia(Bits& dest, const Bits& src, int32_t key);
void WebColors(Bits& dest, const Bits& src, int32_t key);
// level -255..255 added to every channel.
void Brightness(Bits& dest, const Bits& src, int32_t level, int32_t key);
// gamma 0..10.2: 1 leaves the picture, more brightens, less darkens.
void Gamma(Bits& dest, const Bits& src, float gamma, int32_t key);
// Grey, then brightness -255..255.
void GrayScale(Bits& dest, const Bits& src, int32_t brightness, int32_t key);
// amount 0..255: 0 inverts fully, 255 leaves the picture, the middle is grey.
void Invert(Bits& dest, const Bits& src, int32_t amount, int32_t key);
// level 0..255: each channel to the nearest multiple of level^2 / 256 + 1.
void ReduceColors(Bits& dest, const Bits& src, int32_t level, int32_t key);
// Red and blue slide apart sideways by shift / 255 of a sixteenth of the shorter side.
void Shift(Bits& dest, const Bits& src, int32_t shift, int32_t key);
// level -255..512: -255 grey, 0 unchanged, 512 three times the colour.
void Saturation(Bits& dest, const Bits& src, int32_t level, int32_t key);
// Turns the hue by degrees 0..360 about the grey axis (120 takes red to green).
void Hue(Bits& dest, const Bits& src, int32_t degrees, int32_t key);
// Shifts of the mid-tones, each -255..255: cyan to red, magenta to green, yellow to blue.
void ColorBalance(Bits& dest, const Bits& src, int32_t cyanRed, int32_t magentaGreen,
                  int32_t yellowBlue, int32_t key);
// Lifts the mid-tones by up to level / 2 (level 0..255).
void MediumTones(Bits& dest, const Bits& src, int32_t level, int32_t key);
// Light of `colour` at strength 0..255 multiplied onto the picture.
void AmbientLight(Bits& dest, const Bits& src, int32_t strength, uint32_t colour, int32_t key);
// Duotone: the luminance mapped from black through `colour` to white, mixed in by
// strength 0..255.
void Tone(Bits& dest, const Bits& src, int32_t strength, uint32_t colour, int32_t key);
// Contrast factors for red, green and blue about the picture's mean luminance (1 leaves a
// channel, 0 makes it flat).
void Contrast(Bits& dest, const Bits& src, float red, float green, float blue, int32_t key);
// Inverts the channels above 127 + level.
void Solarize(Bits& dest, const Bits& src, int32_t level, int32_t key);
// Levels: clipTenths tenths of a percent of the channel values clipped at each end, the
// rest stretched to 0..255 with the gamma.
void StretchHistogram(Bits& dest, const Bits& src, int32_t clipTenths, double gamma, int32_t key);
// Pixels within tolerance (largest channel difference) of `colour` become newColour.
void BackDropRemoval(Bits& dest, const Bits& src, int32_t tolerance, uint32_t colour,
                     uint32_t newColour, int32_t key);
// The same, comparing only the channels whose flag is set (-1), and with `feather` more
// levels of tolerance over which the new colour fades out.
void BackDropRemovalEx(Bits& dest, const Bits& src, int32_t tolerance, uint32_t colour,
                       uint32_t newColour, int32_t matchRed, int32_t matchGreen,
                       int32_t matchBlue, int32_t feather, int32_t key);
// Noise of amplitude |level| / 2 (-255..255): colour noise above 0, grey noise below.
void ColorRandomize(Bits& dest, const Bits& src, int32_t level, int32_t key);

// --- Blurs and sharpening (blur.cpp) --------------------------------------------------------
void Blur(Bits& dest, const Bits& src, int32_t key);
// Smooths the pixels where neighbours differ, by strength 0..100 percent.
void AntiAlias(Bits& dest, const Bits& src, int32_t strength, int32_t key);
// Averages the 5 x 5 neighbours whose channels differ from the pixel's by at most threshold.
void SmartBlur(Bits& dest, const Bits& src, int32_t threshold, int32_t key);
// A Gaussian-like blur of radius amount * spread / 20 (amount 0..10); edgeMode -1 repeats the
// edge pixels, 0 lets the picture fade to black outside.
void AdvancedBlur(Bits& dest, const Bits& src, int32_t amount, int32_t spread, int32_t edgeMode,
                  int32_t key);
// A soft focus: half the picture, half a wide blur of it.
void SoftnerBlur(Bits& dest, const Bits& src, int32_t key);
// Motion towards `degrees` (0 to the right, counter-clockwise) leaving a streak of `length`
// pixels behind.
void MotionBlur(Bits& dest, const Bits& src, double degrees, int32_t length, int32_t key);
// A tilt-shift blur: a sharp band across the middle, the blur growing to radius 0..50 at
// the top and bottom.
void FarBlur(Bits& dest, const Bits& src, int32_t radius, int32_t key);
// A spin about the centre through degrees 0..30.
void RadialBlur(Bits& dest, const Bits& src, int32_t degrees, int32_t key);
// A zoom from the centre by amount 0..200 tenths of a percent.
void ZoomBlur(Bits& dest, const Bits& src, int32_t amount, int32_t key);
// picture + amount * (picture - blur of radius), amount 0..5.
void UnsharpMask(Bits& dest, const Bits& src, int32_t radius, double amount, int32_t key);
// amount 0..1: the pixel core's SHARPEN at level amount * 100.
void Sharpening(Bits& dest, const Bits& src, float amount, int32_t key);

// --- Distortions (distort.cpp, waves.cpp) ------------------------------------------------
// Each pixel from a random place up to three pixels away (the core's DIFFUSE).
void Diffuse(Bits& dest, const Bits& src, int32_t key);
// The picture runs down in drips.
void Melt(Bits& dest, const Bits& src, int32_t key);
// The pixel core's FISHEYE lens.
void FishEye(Bits& dest, const Bits& src, int32_t key);
// A bulge (strength above 0) or a pinch (below) over the whole picture, -255..255.
void FishEyeEx(Bits& dest, const Bits& src, double strength, int32_t key);
// The pixel core's TWIRL, level -100..100.
void Twirl(Bits& dest, const Bits& src, int32_t level, int32_t key);
// A twist of turns / 100 whole turns (-100..100) at the centre, fading to none at radius
// times half the shorter side.
void TwirlEx(Bits& dest, const Bits& src, double turns, double radius, int32_t key);
// A whirl of strength -255..255 (255 is a full turn at the centre) fading smoothly outwards.
void Swirl(Bits& dest, const Bits& src, int32_t strength, int32_t key);
// Four half-size copies, mirrored so that they meet edge to edge.
void FourCorners(Bits& dest, const Bits& src, int32_t key);
// A bulge over the upper middle of the picture, where a face usually is.
void Caricature(Bits& dest, const Bits& src, int32_t key);
// The right part of the picture rolled up into a scroll.
void Roll(Bits& dest, const Bits& src, int32_t key);
// mode 0: rectangular to polar (the top edge to the centre); 1: polar to rectangular.
void PolarCoordinates(Bits& dest, const Bits& src, int32_t mode, int32_t key);
// The picture on a cylinder: bulging for strength above 0, hollow below (-30..30).
void Cilindrical(Bits& dest, const Bits& src, double strength, int32_t key);
// Blocks of size pixels with their mean colour (the pixel core's PIXELIZE).
void Mosaic(Bits& dest, const Bits& src, int32_t size, int32_t key);
// Ripples of amplitude 0..20 (a twentieth of the shorter side at 20), `count` waves across
// the picture, phase in degrees; mode -1 both ways, 0 rows only, 1 columns only.
void Waves(Bits& dest, const Bits& src, int32_t amplitude, int32_t count, int32_t phase,
           int32_t mode, int32_t key);
// Bands shifted by a stepped wave of amplitude 0..10 (an eighth of the shorter side at 10):
// `bands` bands; mode 1 rows, 2 columns, 3 both.
void BlockWaves(Bits& dest, const Bits& src, int32_t amplitude, int32_t bands, int32_t mode,
                int32_t key);
// Rings from the centre, amplitude 0..20, `count` rings to the corners.
void CircularWaves(Bits& dest, const Bits& src, int32_t amplitude, int32_t count, int32_t key);
// Water rings: fading with the distance, with light on their slopes.
void CircularWavesEx(Bits& dest, const Bits& src, int32_t amplitude, int32_t count, int32_t key);
// `count` drops of a radius up to size / 400 of the shorter side, each a lens of strength
// lens percent with its highlight and shadow.
void RainDrops(Bits& dest, const Bits& src, int32_t size, int32_t count, int32_t lens,
               int32_t key);

// --- Edges and relief (edges.cpp, metal.cpp) ------------------------------------------------
// Grey relief lit from the upper left; depth -2.55..2.55, below 0 engraved.
void Emboss(Bits& dest, const Bits& src, float depth, int32_t key);
// The pixel core's RELIEF.
void Relief(Bits& dest, const Bits& src, int32_t key);
// Glowing coloured edges on black: edges `width` pixels apart, glow 0..5.
void Neon(Bits& dest, const Bits& src, int32_t glow, int32_t width, int32_t key);
// Edges in their colours on white, strength 0..5; kernel 1 plain differences, 2 Sobel.
void FindEdges(Bits& dest, const Bits& src, int32_t strength, int32_t kernel, int32_t key);
// Edges stronger than 4 + threshold / 3 (of 255) drawn in lineColour on backColour.
void DetectBorders(Bits& dest, const Bits& src, int32_t threshold, uint32_t lineColour,
                   uint32_t backColour, int32_t key);
// Embossed paper in two colours: ink where the smoothed picture is darker than its mean
// moved by balance (0..255, 128 none); smoothness, grain 0..50, relief 0..10.
void NotePaper(Bits& dest, const Bits& src, int32_t balance, int32_t smoothness, int32_t grain,
               int32_t relief, uint32_t ink, uint32_t paper, int32_t key);
// Black and white about the mean luminance moved by (level - 128) / 2.
void Stamp(Bits& dest, const Bits& src, int32_t level, int32_t key);
// A bevel of width pixels along the edges of the picture and of its transparent parts.
void Make3DEffect(Bits& dest, const Bits& src, int32_t width, int32_t key);
// Polished metal: `bands` light and dark bands over the brightness, shine 0..255 moving them;
// kind 0 silver, 1 gold, 2 ice.
void Metallic(Bits& dest, const Bits& src, int32_t bands, int32_t shine, int32_t kind,
              int32_t key);
// Rough stone relief, depth 0..6.
void Rock(Bits& dest, const Bits& src, int32_t depth, int32_t key);

// --- Artistic (artistic.cpp, texture.cpp) ---------------------------------------------------
// Oil paint: the commonest intensity of levels steps within radius + 1, in its mean colour.
void OilPaint(Bits& dest, const Bits& src, int32_t radius, int32_t levels, int32_t key);
// Frosted glass: grain of radius 2 + amount pixels and a light haze.
void FrostGlass(Bits& dest, const Bits& src, int32_t amount, int32_t key);
// The mean of four copies moved offset pixels left, right, up and down.
void Fragment(Bits& dest, const Bits& src, int32_t offset, int32_t key);
// Patchy fog of density 0..127.
void Fog(Bits& dest, const Bits& src, int32_t density, int32_t key);
// Pixels of colour scattered with a chance of density / 200 (density 2..102).
void RandomicalPoints(Bits& dest, const Bits& src, int32_t density, uint32_t colour, int32_t key);
// Tiles (2 + tiles * 18 / 100 along the shorter side) shifted by up to offset percent
// of their side over a background colour.
void Tile(Bits& dest, const Bits& src, int32_t tiles, uint32_t background, int32_t offset,
          int32_t key);
// Canvas weave over the picture, and a canvas margin of border pixels around it.
void Canvas(Bits& dest, const Bits& src, int32_t border, int32_t key);

// --- Blends and placement (blend.cpp) -----------------------------------------------------
// The third picture over the source in a blend mode (BlendModeName lists them); third's key
// pixels leave the source.
void BlendMode(Bits& dest, const Bits& src, const Bits& third, int32_t mode, int32_t key);
// The third picture seen through the source as through glass: moved by the source's relief
// up to refraction pixels, at opacity 0..1 over the source.
void GlassBlendMode(Bits& dest, const Bits& src, const Bits& third, double opacity,
                    int32_t refraction, int32_t key);
// The source blended into dest at level 0..100 percent where both are not the key; dest
// keeps its size (the source is laid at its upper left corner).
void AlphaBlendInto(Bits& dest, const Bits& src, int32_t level, int32_t key);
// Clears dest to width x height of the key colour (black without a key), then blends the
// source in at (left, top) at level 0..100 percent of it over the cleared colour.
void AlphaBlendAt(Bits& dest, int32_t width, int32_t height, const Bits& src, int32_t left,
                  int32_t top, int32_t level, int32_t key);
// Mirrors; unlike the other operations the transparent part mirrors with the picture.
void Flip(Bits& dest, const Bits& src, bool horizontal, bool vertical, int32_t key);
// dest becomes the source at the source's size; with a size, stretched to it (key pixels by
// the nearest source pixel, the others smoothly from the non-key ones).
void IncreaseSize(Bits& dest, const Bits& src);
void IncreaseSize(Bits& dest, const Bits& src, int32_t width, int32_t height, int32_t key);

// The name of a blend mode 0..kBlendModeCount - 1.
constexpr int32_t kBlendModeCount = 15;
const char* BlendModeName(int32_t mode);

// --- Shape (shape.cpp) ---------------------------------------------------------------------
// The pixels of a picture that are not the key colour, as runs found row by row
// (horizontalScan) or column by column; both give the same set of pixels.
Region ShapeRegion(const Bits& picture, int32_t key, bool horizontalScan);

} // namespace ostrivex::effects
