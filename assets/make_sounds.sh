#!/bin/sh
# Makes the ten wave files of the game: 44100 Hz, 16 bits, one channel. Needs sox.
# -R fixes sox's random numbers and -D leaves out dither, so every run gives the same bytes.
set -eu
cd "$(dirname "$0")/sounds"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# make NAME PEAK_DB EFFECT...: starts from silence, ends at that peak.
make() {
  name=$1 peak=$2
  shift 2
  sox -R -D -n -r 44100 -c 1 -b 16 "$name.wav" "$@" gain -n "$peak"
}

product() { awk "BEGIN { print $1 * $2 }"; }

# note FILE SECONDS START PITCH: a struck bar, that is a tone and a quieter, shorter one two octaves up.
note() {
  sox -R -D -n -r 44100 -c 1 -e float -b 32 "$scratch/low.wav" \
    synth "$2" sine "$4" fade l 0.004 "$2" "$(product "$2" 0.9)" gain -4
  sox -R -D -n -r 44100 -c 1 -e float -b 32 "$scratch/high.wav" \
    synth "$(product "$2" 0.4)" sine "$(product "$4" 4)" \
    fade l 0.002 "$(product "$2" 0.4)" "$(product "$2" 0.35)" gain -20
  sox -R -D -m -v 0.5 "$scratch/low.wav" -v 0.5 "$scratch/high.wav" "$scratch/$1.wav" pad "$3" 0
}

# mix NAME PEAK_DB FILE...: notes of the scratch folder laid over one another.
mix() {
  name=$1 peak=$2
  shift 2
  for part; do
    shift
    set -- "$@" -v 0.3 "$scratch/$part.wav"
  done
  sox -R -D -m "$@" -b 16 -e signed "$name.wav" gain -n "$peak" fade t 0 -0 0.02
}

# A puzzle solved: four dozen pairs of hands. Each claps at its own pitch and pace.
pair=0
set --
while [ $pair -lt 48 ]; do
  pitch=$((700 + pair * 397 % 1500))
  gap=0.$((130 + pair * 37 % 110))
  start=0.$((100 + pair * 211 % 290))
  sox -R -D -n -r 44100 -c 1 -e float -b 32 "$scratch/clap$pair.wav" \
    synth 0.05 whitenoise trim 0.00$((pair % 9 + 1)) 0.035 bandpass $pitch 1.2q fade l 0.001 0.035 0.033 \
    pad 0 "$gap" repeat 12 pad "$start" 0
  set -- "$@" -v 0.2 "$scratch/clap$pair.wav"
  pair=$((pair + 1))
done
sox -R -D -m "$@" -e float -b 32 "$scratch/hands.wav"
# The limiter evens out the chance moments at which many clap together.
sox -R -D "$scratch/hands.wav" -b 16 -e signed Applause.wav reverb 25 60 40 highpass 250 \
  gain -n -3 gain -l 12 trim 0.1 1.9 fade t 0.15 1.9 1.1 gain -n -3.5

# The board swept clean, at a restart and with each new puzzle.
make Discard -9 synth 0.32 pinknoise bandpass 1400 1.5q fade h 0.12 0.32 0.19

# A click on a field: heard most, so the softest.
make Assign -12 synth 0.08 sine 1250:900 fade l 0.002 0.08 0.077

make ResetCell -12 synth 0.09 sine 800:520 fade l 0.002 0.09 0.087

# The solution shown: a chord falls and comes to rest.
note a 0.40 0 784
note b 0.40 0.13 659.3
note c 0.55 0.26 523.3
note d 0.55 0.26 329.6
mix Solution -7 a b c d

make Label -12 synth 0.06 triangle 1900 fade l 0.002 0.06 0.057

# A step back or forward: two short strokes.
note a 0.09 0 587.3
note b 0.12 0.055 880
mix UndoRedo -11 a b

# A hint found: two bells upward.
note a 0.35 0 659.3
note b 0.50 0.12 987.8
mix Hint -7 a b

# Something is wrong on the board: two dull tones downward.
sox -R -D -n -r 44100 -c 1 -e float -b 32 "$scratch/a.wav" synth 0.16 square 220 lowpass 800 fade h 0.01 0.16 0.1
sox -R -D -n -r 44100 -c 1 -e float -b 32 "$scratch/b.wav" \
  synth 0.26 square 165 lowpass 800 fade h 0.01 0.26 0.2 pad 0.17 0
mix Error -9 a b

# A plain slip: six quick chirps, "hihihihihihi", up and down again.
chirp=0
set --
for pitch in 620 700 760 720 650 580; do
  sox -R -D -n -r 44100 -c 1 -e float -b 32 "$scratch/chirp$chirp.wav" \
    synth 0.085 triangle $pitch:$((pitch * 3 / 4)) lowpass 3000 fade h 0.012 0.085 0.06 \
    pad $(awk "BEGIN { print $chirp * 0.105 }") 0
  set -- "$@" "chirp$chirp"
  chirp=$((chirp + 1))
done
mix Giggle -9 "$@"
