#!/usr/bin/env bash
# Draws the window pictures and program icons into res/ (or the folder given) with ImageMagick.
# Each picture is designed on a grid of whole pixels, drawn 8 times larger and reduced with a box
# filter, which gives clean anti-aliased edges at the small sizes the windows use.
set -euo pipefail

here="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
out="${1:-$here/res}"
mkdir -p "$out"
command -v convert >/dev/null || {
    echo "make-images: ImageMagick's convert is needed (apt-get install imagemagick)" >&2
    exit 1
}

# Flat palette.
SLATE_DARK='#37474F' SLATE='#546E7A' SLATE_LIGHT='#90A4AE' PAPER='#FAFAFA'
GREEN='#43A047' GREEN_LIGHT='#69F0AE' RED='#E53935' BLUE='#1E88E5' BLUE_DARK='#1565C0'
BLUE_PALE='#BBDEFB' ORANGE='#F57C00' ORANGE_DARK='#E64A19' AMBER='#FFA000' AMBER_LIGHT='#FFCA28'
PURPLE='#7E57C2' SKY='#0288D1'

# render NAME GRID SIZE: draws the MVG on stdin, laid out on a GRID x GRID design, as SIZE x SIZE.
render() {
    local name=$1 grid=$2 size=$3 big=$(($3 * 8))
    local scale
    scale=$(awk -v b="$big" -v g="$grid" 'BEGIN { printf "%.6f", b / g }')
    convert -size "${big}x${big}" xc:none -draw "scale $scale,$scale
$(cat)" -filter Box -resize "${size}x${size}" -strip \
        -define png:exclude-chunks=date,time "PNG32:$out/$name.png"
}

# gear CX CY OUTER INNER TEETH: polygon of a gear outline.
gear() {
    awk -v cx="$1" -v cy="$2" -v ro="$3" -v ri="$4" -v n="$5" 'BEGIN {
        pi = atan2(0, -1); step = 2 * pi / n; printf "polygon"
        for (i = 0; i < n; i++) {
            a = i * step
            split("-0.28 -0.14 0.14 0.28", f, " ")
            split(ri " " ro " " ro " " ri, r, " ")
            for (k = 1; k <= 4; k++)
                printf " %.3f,%.3f", cx + r[k] * cos(a + f[k] * step),
                    cy + r[k] * sin(a + f[k] * step)
        }
        print ""
    }'
}

# page X0 Y0 X1 Y1 FOLD: a sheet with a folded corner, outlined.
page() {
    local x0=$1 y0=$2 x1=$3 y1=$4 f=$5
    cat <<EOF
fill '$PAPER' stroke '$SLATE' stroke-width 1 stroke-linejoin round
polygon $x0,$y0 $(awk "BEGIN{print $x1-$f}"),$y0 $x1,$(awk "BEGIN{print $y0+$f}") $x1,$y1 $x0,$y1
fill '$SLATE_LIGHT' stroke '$SLATE' stroke-width 1
polygon $(awk "BEGIN{print $x1-$f}"),$y0 $(awk "BEGIN{print $x1-$f}"),$(awk "BEGIN{print $y0+$f}") $x1,$(awk "BEGIN{print $y0+$f}")
EOF
}

# pencil COLOUR: a pencil lying from the bottom left towards the top right of a 16 grid.
pencil() {
    cat <<EOF
stroke none fill '$1'
polygon 8.2,11.2 13.2,6.2 15.3,8.3 10.3,13.3
fill '#FFE0B2'
polygon 8.2,11.2 10.3,13.3 7,14.5
fill '$SLATE_DARK'
polygon 7.6,13.1 8.4,13.9 7,14.5
EOF
}

# chevron: the small "opens a menu" mark at the bottom right of a 16 grid.
chevron() {
    echo "fill '$SLATE_DARK' stroke none polygon 11,11.5 16,11.5 13.5,14.5"
}

# cylinder COLOUR X0 X1 TOP BOTTOM: a database drum.
cylinder() {
    local c=$1 x0=$2 x1=$3 top=$4 bottom=$5
    local cx rx
    cx=$(awk "BEGIN{print ($x0+$x1)/2}")
    rx=$(awk "BEGIN{print ($x1-$x0)/2}")
    cat <<EOF
stroke none fill '$c'
rectangle $x0,$top $x1,$bottom
ellipse $cx,$bottom $rx,2 0,360
fill '#FFFFFF' fill-opacity 0.35
ellipse $cx,$(awk "BEGIN{print ($top+$bottom)/2}") $rx,2 0,180
fill-opacity 1 fill '$c'
ellipse $cx,$(awk "BEGIN{print ($top+$bottom)/2 - 0.9}") $rx,2 0,180
fill '#FFFFFF' fill-opacity 0.55
ellipse $cx,$top $rx,2 0,360
fill-opacity 1
EOF
}

# globe CX CY R: a blue globe with meridian and parallels.
globe() {
    local cx=$1 cy=$2 r=$3
    awk -v cx="$cx" -v cy="$cy" -v r="$r" -v b="$BLUE" -v p="$BLUE_PALE" 'BEGIN {
        w = r / 6.5
        printf "stroke none fill \x27%s\x27 circle %s,%s %s,%s\n", b, cx, cy, cx + r, cy
        printf "fill none stroke \x27%s\x27 stroke-width %.3f\n", p, w
        printf "ellipse %s,%s %.3f,%.3f 0,360\n", cx, cy, r * 0.45, r - w / 2
        printf "line %.3f,%s %.3f,%s\n", cx - r + w, cy, cx + r - w, cy
        printf "line %.3f,%.3f %.3f,%.3f\n", cx - r * 0.8, cy - r * 0.5, cx + r * 0.8, cy - r * 0.5
        printf "line %.3f,%.3f %.3f,%.3f\n", cx - r * 0.8, cy + r * 0.5, cx + r * 0.8, cy + r * 0.5
    }'
}

# The program mark: a blue rounded square with a white K, on a 64 grid.
logo_mvg() {
    cat <<EOF
stroke none fill '$BLUE_DARK'
roundrectangle 2,2 62,62 13,13
fill '$BLUE'
roundrectangle 2,2 62,54 13,13
fill '#FFFFFF'
rectangle 17,13 26,51
polygon 26,31 40,13 51,13 35.5,32.5 26,41
polygon 31.5,28 51,51 40,51 26,35
EOF
}

# status STATE: the server stack with a stopped or running badge, on a 48 grid.
status_mvg() {
    local led badge mark
    if [ "$1" = running ]; then
        led=$GREEN_LIGHT badge=$GREEN
        mark="fill none stroke '#FFFFFF' stroke-width 3 stroke-linecap round stroke-linejoin round
polyline 30,35.5 33.8,39.2 40.2,31.8"
    else
        led=$SLATE_LIGHT badge=$RED
        mark="fill '#FFFFFF' stroke none roundrectangle 31,31 39,39 1.2,1.2"
    fi
    cat <<EOF
stroke none fill '$SLATE_DARK'
roundrectangle 3,5 39,19 3,3
roundrectangle 3,22 39,36 3,3
fill '$led'
circle 9.5,12 11.8,12
circle 9.5,29 11.8,29
fill none stroke '$SLATE_LIGHT' stroke-width 1.8 stroke-linecap round
line 17,10 33,10
line 17,14 33,14
line 17,27 26,27
line 17,31 26,31
stroke '#FFFFFF' stroke-width 2.5 fill '$badge'
circle 35,35 46,35
$mark
EOF
}

# Status pictures.
status_mvg stopped | render status_stopped 48 48
status_mvg running | render status_running 48 48

# Bitmap buttons and button pictures, 16 x 16.
{
    page 2.5 1.5 12.5 14.5 3
    echo "fill none stroke '$SLATE_LIGHT' stroke-width 1.2 stroke-linecap round"
    echo "line 4.5,6.5 8.5,6.5 line 4.5,9 10.5,9 line 4.5,11.5 7.5,11.5"
    chevron
} | render btn_logs 16 16

cat <<EOF | render btn_stats 16 16
fill '$PAPER' stroke '$SLATE' stroke-width 1
roundrectangle 1.5,1.5 14.5,14.5 2,2
fill none stroke '#A5D6A7' stroke-width 0.8
line 2,5.5 14,5.5 line 2,9.5 14,9.5
stroke-linecap round stroke-linejoin round stroke-width 1.5
stroke '$RED' polyline 3.5,11.5 6.5,10 9.5,11 12.5,8.5
stroke '$BLUE' polyline 3.5,9 6.5,5 9.5,7.5 12.5,3.5
EOF

{
    page 1.5 1.5 10.5 14.5 3
    pencil "$PURPLE"
} | render btn_edit_php 16 16
{
    page 1.5 1.5 10.5 14.5 3
    pencil "$ORANGE_DARK"
} | render btn_edit_apache 16 16

{
    echo "stroke '$GREEN' stroke-width 1.5 stroke-linejoin round fill '$GREEN'"
    echo "polygon 2.5,2.5 2.5,12.5 10.5,7.5"
    chevron
} | render btn_start_menu 16 16
{
    echo "stroke none fill '$RED' roundrectangle 1.5,2.5 10.5,11.5 1.5,1.5"
    chevron
} | render btn_stop_menu 16 16

cat <<EOF | render start 16 16
stroke none fill '$GREEN' circle 8,8 15,8
fill '#FFFFFF' stroke '#FFFFFF' stroke-width 1 stroke-linejoin round
polygon 6.3,4.8 6.3,11.2 11.3,8
EOF
cat <<EOF | render stop 16 16
stroke none fill '$RED' circle 8,8 15,8
fill '#FFFFFF' roundrectangle 5.2,5.2 10.8,10.8 1,1
EOF

globe 8 8 6.8 | render www_site 16 16
cat <<EOF | render www_folder 16 16
stroke none fill '$AMBER'
roundrectangle 1,2.5 7,6 1,1
roundrectangle 1,3.5 15,13.5 1.2,1.2
fill '$AMBER_LIGHT'
roundrectangle 1,5.5 15,13.5 1.2,1.2
EOF
cylinder "$ORANGE" 2.5 13.5 3.5 12.5 | render phpmyadmin 16 16
cylinder "$SKY" 3.5 12.5 4.5 12 | render sqlite 16 16
cat <<EOF | render phpinfo 16 16
stroke none fill '$PURPLE' circle 8,8 15,8
fill '#FFFFFF' circle 8,4.6 9.3,4.6
roundrectangle 6.8,6.8 9.2,12.2 0.6,0.6
EOF
cat <<EOF | render preferences 16 16
fill none stroke '$SLATE' stroke-width 1.4 stroke-linecap round
line 2,4 14,4 line 2,8 14,8 line 2,12 14,12
stroke '$PAPER' stroke-width 1.2 fill '$BLUE'
circle 10,4 12.2,4
circle 5,8 7.2,8
circle 11,12 13.2,12
EOF
{
    echo "stroke none fill '$PURPLE'"
    gear 8 8 7.5 5.4 8
    echo "fill '#FFFFFF' circle 8,8 10.3,8"
} | render php_config 16 16
{
    echo "stroke none fill '$ORANGE_DARK'"
    gear 8 8 7.5 5.4 8
    echo "fill '#FFFFFF' circle 8,8 10.3,8"
} | render apache_config 16 16

# Decorative pictures.
logo_mvg | render logo 64 48
{
    echo "stroke none fill '$SLATE_LIGHT'"
    gear 12 12 11 8 10
    echo "fill '$SLATE' circle 12,12 16,12"
    echo "fill '#FFFFFF' circle 12,12 14.2,12"
} | render gear 24 24
globe 12 12 10.5 | render globe 24 24

# Program icon.
for size in 16 24 32 48 64; do
    logo_mvg | render "icon_$size" 64 "$size"
done
