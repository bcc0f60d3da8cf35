#!/usr/bin/env bash
# Makes the textures shipped in assets/Textures: small seamless tiles drawn by ImageMagick.
# Blurred noise uses the tile virtual-pixel method, so each tile wraps without a seam;
# the built-in patterns are tiles by nature. Run it again only to remake the files.
set -euo pipefail
cd "$(dirname "$0")/../assets/Textures"
S=64
colour() { # low colour, high colour, output: grey input on stdin -> 24-bit PNG
  convert - -colorspace sRGB -type TrueColor +level-colors "$1","$2" -strip -depth 8 \
    "PNG24:$3"
}
noise() { # seed, blur, two colours, output
  convert -size ${S}x${S} -seed "$1" xc: +noise Random -colorspace Gray -virtual-pixel tile \
    -blur "$2" -auto-level miff:- | colour "$3" "$4" "$5"
}
noise 11 0x6 '#3a5f9a' '#a9d2f2' Water.png
noise 12 0x1.2 '#2f6b22' '#8fcf5a' Grass.png
noise 13 0x2.5 '#b9a77f' '#f1e6cc' Canvas.png
noise 14 0x10 '#6d6d78' '#e8e8ee' Marble.png
convert -size ${S}x${S} -seed 15 xc: +noise Random -colorspace Gray -virtual-pixel tile \
  -morphology Convolve 'Blur:0x9,0' -auto-level miff:- | colour '#6b3e1e' '#c98b4f' Wood.png
convert -size ${S}x${S} tile:pattern:bricks miff:- | colour '#7a2a1a' '#d8c8b0' Bricks.png
convert -size ${S}x${S} tile:pattern:checkerboard miff:- | colour '#404040' '#e0e0e0' Checks.png
convert -size ${S}x${S} tile:pattern:hexagons miff:- | colour '#1d4f6e' '#f4d35e' Hexagons.png
