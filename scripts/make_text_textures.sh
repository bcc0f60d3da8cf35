#!/usr/bin/env bash
# Makes the textures of the text dialogs in assets/Textures: the 3D text's texture list
# shows the folder's gif, bmp and jpg files, and the logo maker offers them as its fixed
# textures. Small seamless tiles drawn by ImageMagick (blurred noise uses the tile
# virtual-pixel method, so each tile wraps without a seam). Run it again only to remake
# the files.
set -euo pipefail
cd "$(dirname "$0")/../assets/Textures"
S=64
tint() { # low colour, high colour, output: grey input on stdin
  convert - -colorspace sRGB -type TrueColor +level-colors "$1","$2" -strip -quality 92 "$3"
}
noise() { # seed, blur, two colours, output
  convert -size ${S}x${S} -seed "$1" xc: +noise Random -colorspace Gray -virtual-pixel tile \
    -blur "$2" -auto-level miff:- | tint "$3" "$4" "$5"
}
noise 21 0x3 '#8a5a00' '#ffe680' Gold.jpg
noise 22 0x8 '#7a0a00' '#ffb020' Lava.jpg
noise 23 0x5 '#2a5db0' '#f0f6ff' BMP3:Sky.bmp
convert -size ${S}x${S} -seed 24 xc: +noise Random -colorspace Gray -virtual-pixel tile \
  -motion-blur 0x12+0 -auto-level miff:- | tint '#55606a' '#e4eaf0' Steel.jpg
noise 25 0x0.8 '#505050' '#b8b0a0' Stone.gif
convert -size ${S}x${S} tile:pattern:left45 -scale 200% -crop ${S}x${S}+0+0 +repage miff:- |
  tint '#103070' '#ffd040' Stripes.gif
