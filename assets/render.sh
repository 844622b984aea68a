#!/bin/sh
# Renders the tile pictures, Picture1 and the icon from their SVG sources.
# Needs rsvg-convert (librsvg2-bin) and convert (imagemagick).
set -eu
cd "$(dirname "$0")"
scratch=$(mktemp)
trap 'rm -f "$scratch"' EXIT

# render SOURCE WIDTH HEIGHT FORMAT TARGET [STYLESHEET]
# FORMAT: PNG24 has no alpha, PNG32 has one. Without dates, so that the same source gives the same bytes.
render() {
  rsvg-convert --width "$2" --height "$3" ${6:+--stylesheet "$6"} --output "$scratch" "$1"
  convert "$scratch" -strip -define png:compression-level=9 -define png:exclude-chunks=all \
    -depth 8 "$4:$5"
}

# A third as large, each pixel is the mean of nine; with a palette where that loses nothing.
tile() {
  render "tiles/$1.svg" 540 540 PNG24 "tiles/part$2.png" ${3:+"tiles/$3.css"}
  convert "tiles/part$2.png" -filter box -resize 180x180 -strip -define png:compression-level=9 \
    -define png:exclude-chunks=all -depth 8 "PNG:tiles/third$2.png"
}
tile open 0
tile grass 1
tile tent 2
tile tree 3
tile open 4 marked
tile tree 7 marked
# A marked grass or tent field looks like any other.
cp tiles/part1.png tiles/part5.png
cp tiles/part2.png tiles/part6.png

render tiles/picture1.svg 240 104 PNG24 tiles/picture1.png
render tiles/picture1.svg 960 416 PNG24 tiles/picture1@4x.png

for size in 16 32 48 64 128 256; do
  render icon/bivouac.svg "$size" "$size" PNG32 "icon/bivouac-$size.png"
done
