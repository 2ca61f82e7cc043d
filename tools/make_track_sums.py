#!/usr/bin/env python3
"""Makes tests/audio/track_sums.txt: what edits of random tracks come to, worked out by plain formulas.

Each line holds a seed and the CRC-32 of the results of `CASES` edits that follow from it. The test draws the same
numbers (tests/audio/track_edit_test.cpp). Needs only the standard library; takes about a minute.
"""
import math
import pathlib
import struct
import zlib

OUT = pathlib.Path(__file__).resolve().parent.parent / "tests" / "audio" / "track_sums.txt"
SEEDS, CASES = 150, 20
FAR = 0x7FFFFFFF
RATES = [8000, 11025, 22050, 44100, 48000, 1000, 7]
FACTORS = [0.5, 2.0, 1.0, 0.333, 1.5, 3.7, 0.9999, 1.059463, 40.0, 0.25]


class Draw:
    def __init__(self, seed):
        self.state = seed

    def __call__(self, below):
        self.state = (self.state * 6364136223846793005 + 1442695040888963407) % 2 ** 64
        return (self.state >> 33) % below


class Track:
    def __init__(self, rate, samples):
        self.rate, self.samples = rate, samples

    def frames(self):
        return len(self.samples) // 2


def lround(v):
    whole = math.floor(abs(v))
    return int(math.copysign(whole + (abs(v) - whole >= 0.5), v))


def stored(v):
    return -32768 if v <= -32768.0 else 32767 if v >= 32767.0 else lround(v)


def frames_of(ms, rate):
    d = float(ms) * rate / 1000.0
    return lround(d) if d < 2147483647.0 else FAR


def interpolated(source, place, channel):
    count = source.frames()
    if not place < count:
        return 0.0
    base = math.floor(place)
    a = source.samples[base * 2 + channel]
    b = source.samples[min(base + 1, count - 1) * 2 + channel]
    return a + (b - a) * (place - base)


def resample(source, frames, step):
    return [stored(interpolated(source, step * i, c)) for i in range(frames) for c in (0, 1)]


def form(frequency, length, shape, side):
    samples = []
    for i in range(frames_of(length, 44100)):
        t = float(frequency) * i / 44100
        part = t - math.floor(t)
        v = {"square": 1.0 if part < 0.5 else -1.0, "sine": math.sin(t * 6.283185307179586), "saw": 2 * part - 1}[shape]
        s = stored(v * 0.75 * 32767.0) if frequency > 0 else 0
        samples += [s if side != "right" else 0, s if side != "left" else 0]
    return Track(44100, samples)


def add(target, source, offset_ms):
    offset = frames_of(offset_ms, target.rate)
    if len(target.samples) < 2 or len(source.samples) < 2 or offset >= target.frames():
        return
    source = Track(source.rate, list(source.samples))
    step = source.rate / target.rate
    for i in range(min(math.ceil(source.frames() / step), target.frames() - offset)):
        for c in (0, 1):
            at = (offset + i) * 2 + c
            target.samples[at] = stored(target.samples[at] + interpolated(source, step * i, c))


def trim(track, start, end):
    start, end = (min(frames_of(ms, track.rate), track.frames()) for ms in (start, end))
    track.samples = track.samples[start * 2:end * 2]


def pitch(track, factor):
    if factor != 1.0 and len(track.samples) >= 2:
        track.samples = resample(track, track.frames(), factor)


def speed(track, factor):
    if factor != 1.0 and len(track.samples) >= 2:
        track.samples = resample(track, lround(track.frames() / factor), factor)


def strength(track, frequency, start, end):
    frames, best = end - start, 0.0
    if frames <= 3:
        return 0.0
    step = frequency * 6.283185307179586 / track.rate
    cosine, sine = math.cos(step), math.sin(step)
    for c in (0, 1):
        xs = [track.samples[i * 2 + c] * 3.0517578125e-05 for i in range(start, end)]
        mean = sum(xs) / frames
        re, im, sum_re, sum_im, energy = 1.0, 0.0, 0.0, 0.0, 0.0
        for x in xs:
            x -= mean
            sum_re += x * re
            sum_im += x * im
            energy += x * x
            re, im = re * cosine - im * sine, sine * re + im * cosine
        if energy > 1e-10:
            best = max(best, 2 * (sum_re ** 2 + sum_im ** 2) / (energy * frames))
    return best


def find(track, frequency, tolerance, minimum, threshold):
    low, high = max(8, track.rate // 50), track.rate // 4
    window = min(min(max(math.ceil(track.rate * 8.0 / frequency), low), high), track.frames())
    around = [frequency] + ([frequency - tolerance, frequency - tolerance / 2, frequency + tolerance / 2,
                             frequency + tolerance] if tolerance > 0 else [])
    around = [f for f in around if 0 < f < track.rate / 2]
    runs, run = [], None
    for start in range(0, track.frames() - window + 1, max(1, window // 4)) if window > 3 else []:
        if max(strength(track, f, start, start + window) for f in around) >= threshold:
            run = (run[0] if run else start, start + window)
        else:
            runs, run = runs + ([run] if run else []), None
    return [r for r in runs + ([run] if run else []) if r[1] - r[0] >= minimum]


# ---- the cases, as the test draws them

def draw_track(draw):
    rate = RATES[draw(len(RATES))]
    frames = draw(300)
    loud = draw(3) == 0
    return Track(rate, [(32767 if draw(2) else -32768) if loud else draw(65536) - 32768 for _ in range(frames * 2)])


def add_tone(track, frequency, start, end):
    for i in range(start, end):
        phase = i * frequency % track.rate
        track.samples[i * 2] = 9000 if phase * 2 < track.rate else -9000


def draw_case(draw):
    kind = draw(6)
    if kind == 0:
        shape, side = ["square", "sine", "saw"][draw(3)], ["left", "right", "both"][draw(3)]
        frequency = draw(30000) if draw(4) else draw(4)
        return form(frequency, draw(9), shape, side).samples
    if kind == 5:
        track = Track(8000, [draw(2001) - 1000 for _ in range(1600 * 2)])
        frequency = 200 + draw(1000)
        start = draw(1000)
        add_tone(track, frequency, start, start + draw(600))
        tolerance = draw(3) * 5
        minimum = draw(400)
        threshold = (1 + draw(12)) / 10
        found = find(track, float(frequency + draw(5)), float(tolerance), minimum, threshold)
        return [v for match in found for v in match]
    track = draw_track(draw)
    if kind == 1:
        source = track if draw(8) == 0 else draw_track(draw)
        add(track, source, draw(30) if draw(5) else draw(FAR))
    elif kind == 2:
        start = draw(30)
        trim(track, start, start + (draw(30) if draw(5) else draw(FAR - 30)))
    else:
        (pitch if kind == 3 else speed)(track, FACTORS[draw(len(FACTORS))])
    return track.samples


def main():
    lines = []
    for seed in range(1, SEEDS + 1):
        draw, crc = Draw(seed), 0
        for _ in range(CASES):
            values = draw_case(draw)
            crc = zlib.crc32(struct.pack(f"<{len(values) + 1}i", len(values), *values), crc)
        lines.append(f"{seed} {crc:08x}")
    OUT.write_text("\n".join(lines) + "\n")


main()
