#!/usr/bin/env bash
# The file path of the batch tool against libvips and ImageMagick: whole processes on a
# 6000 x 4000 photograph, one thread each, medians of hyperfine runs taken in one sitting.
#
#   bash bench/files.sh [BUILD_DIR]        (RUNS=5 by default; BUILD_DIR defaults to build)
#
# The pictures are made once in $OSTRIVEX_BENCH_WORK (default $TMPDIR/ostrivex-bench).
# Prints two markdown tables: the rows of the goals, and the cost of decoding in the helper
# process instead of in the program.
set -euo pipefail
cd "$(dirname "$0")/.."
BUILD=$(cd "${1:-build}" && pwd)
BATCH=$BUILD/bin/ostrivex-batch
IM=/usr/bin/convert # a stand-in may shadow convert on PATH
RUNS=${RUNS:-5}
WORK=${OSTRIVEX_BENCH_WORK:-${TMPDIR:-/tmp}/ostrivex-bench}
export VIPS_CONCURRENCY=1 MAGICK_THREAD_LIMIT=1 OMP_NUM_THREADS=1
mkdir -p "$WORK"
cd "$WORK"

if [ ! -f photo.png ]; then
  # A photograph's statistics: smooth fractal tones, a slight blur, sensor-like grain.
  echo "Making the 6000 x 4000 photograph (once)..." >&2
  $IM -size 6000x4000 -seed 7 plasma:fractal -blur 0x1.5 -attenuate 0.4 +noise Gaussian \
    -depth 8 photo.ppm
  $IM photo.ppm -quality 92 photo.jpg
  $IM photo.ppm photo.png
fi
printf '3 3 9\n1 1 1\n1 1 1\n1 1 1\n' > box.mat
$IM -size 1x1 xc:gray tiny.ppm
$IM -size 1x1 xc:gray tiny.tga

# row NAME COMMAND... : one hyperfine run of the commands side by side.
row() {
  local name=$1
  shift
  hyperfine -N --warmup 1 --runs "$RUNS" --export-json "$name.json" "$@" >/dev/null 2>&1
}

row ppm "$BATCH photo.ppm o.ppm" "vips copy photo.ppm v.ppm" "$IM photo.ppm m.ppm"
row invert "$BATCH photo.ppm o.ppm INVERT" "vips invert photo.ppm v.ppm" \
  "$IM photo.ppm -negate m.ppm"
row blur "$BATCH photo.ppm o.ppm LIGHTBLUR" "vips conv photo.ppm v.ppm box.mat --precision integer" \
  "$IM photo.ppm -define convolve:scale=! -morphology Convolve 3x3:1,1,1,1,1,1,1,1,1 m.ppm"
row resize "$BATCH photo.ppm o.ppm BitsResample:3000,2000" "vips resize photo.ppm v.ppm 0.5" \
  "$IM photo.ppm -resize 50% m.ppm"
row rotate "$BATCH photo.ppm o.ppm BitsRotate90" "vips rot photo.ppm v.ppm d90" \
  "$IM photo.ppm -rotate 90 m.ppm"
# The program writes JPEG at best quality (100); libvips is asked for the same, and is
# also timed at its own default of 75.
row jpeg "$BATCH photo.jpg o.jpg" "vips copy photo.jpg v.jpg[Q=100]" "vips copy photo.jpg w.jpg"
row png "$BATCH photo.png o.png" "vips copy photo.png v.png"
# Isolation: the same decodes in the helper process.
row isolation "$BATCH photo.ppm o.ppm" "env OSTRIVEX_ISOLATE_DECODERS=1 $BATCH photo.ppm o.ppm" \
  "$BATCH photo.jpg o.ppm" "env OSTRIVEX_ISOLATE_DECODERS=1 $BATCH photo.jpg o.ppm" \
  "$BATCH photo.png o.ppm" "env OSTRIVEX_ISOLATE_DECODERS=1 $BATCH photo.png o.ppm" \
  "$BATCH tiny.ppm o.ppm" "$BATCH tiny.tga o.ppm"

python3 - "$RUNS" <<'EOF'
import json, statistics, sys
runs = sys.argv[1]
def medians(name):
    with open(name + ".json") as f:
        return [statistics.median(r["times"]) * 1000 for r in json.load(f)["results"]]
rows = [("PPM in, PPM out (plain copy)", "ppm"), ("+ invert", "invert"), ("+ 3 x 3 blur", "blur"),
        ("+ resize to 50 %", "resize"), ("+ rotate 90", "rotate"), ("JPEG in, JPEG out", "jpeg"),
        ("PNG in, PNG out", "png")]
print(f"Medians of {runs} runs, milliseconds, one thread.\n")
print("| Work | ostrivex-batch | libvips 8.14 | ImageMagick 6.9 | x libvips | ImageMagick / ours | goals |")
print("|---|---:|---:|---:|---:|---:|---|")
for label, name in rows:
    m = medians(name)
    ours, vips = m[0], m[1]
    im = m[2] if name not in ("jpeg", "png") else None
    if name == "jpeg":
        label += " (Q 100; libvips at its default Q 75: %.0f ms)" % m[2]
    ok = ours <= 1.5 * vips and (im is None or im >= 2 * ours)
    print(f"| {label} | {ours:.0f} | {vips:.0f} | {'-' if im is None else f'{im:.0f}'} | "
          f"{ours / vips:.2f} | {'-' if im is None else f'{im / ours:.2f}'} | {'met' if ok else 'MISSED'} |")
m = medians("isolation")
print("\n| Decode of the photo, then a PPM written | in the program | in the helper | helper costs |")
print("|---|---:|---:|---:|")
for i, label in enumerate(["PPM", "JPEG", "PNG"]):
    print(f"| {label} | {m[2 * i]:.0f} | {m[2 * i + 1]:.0f} | +{m[2 * i + 1] - m[2 * i]:.0f} ms |")
print(f"| 1 x 1 picture (PPM here, Targa in the helper) | {m[6]:.0f} | {m[7]:.0f} | +{m[7] - m[6]:.0f} ms |")
EOF
