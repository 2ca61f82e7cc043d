@@ Plays the sounds that the game's others are made of into files:
@@     vesper run games/low-water/art/sounds.vs [FOLDER]
@@ Mono, 16 bits. Ambiences repeat without a seam: all that sounds at their end goes on at their beginning.

folder = arguments[1] or "games/low-water/Resources/package/audio"
sin = math["sin"]
floor = math["floor"]
least = math["min"]
most = math["max"]
TURN = 6.2831853

function little(value, bytes)
    local text = ""
    for i = 1, bytes
        text += string["char"](value % 256)
        value = value \ 256
    end
    return text
end

@@ Samples between -1 and 1.
function saveSound(name, rate, samples)
    local parts = []
    local part = ""
    for sample in samples
        local value = floor(most(-1, least(1, sample)) * 32000)
        if value < 0
            value += 65536
        end
        part += string["char"](value % 256, value \ 256)
        if #part > 4000
            push(parts, part)
            part = ""
        end
    end
    push(parts, part)
    local data = table["concat"](parts)
    local file = io["open"](folder + "/" + name + ".wav", "w")
    file["write"](file, "RIFF" + little(#data + 36, 4) + "WAVEfmt " + little(16, 4) + little(1, 2) + little(1, 2) + little(rate, 4) + little(rate * 2, 4) + little(2, 2) + little(16, 2) + "data" + little(#data, 4) + data)
    file["close"](file)
end

function silence(rate, seconds)
    local samples = []
    for i = 1, floor(rate * seconds)
        samples[i] = 0.0
    end
    return samples
end

@@ A tone that dies away, wrapped round the end.
function tone(samples, rate, start, pitch, long, loud)
    local count = #samples
    local first = floor(start * rate)
    local length = floor(long * rate)
    local step = pitch * TURN / rate
    for i = 0, length - 1
        local left = 1 - i / length
        local at = (first + i) % count + 1
        samples[at] += sin(i * step) * left * left * loud * least(1, i / rate * 200)
    end
end

@@ A struck bell: hum, prime, tierce, quint, nominal and what rings above.
function bell(samples, rate, start, pitch, long, loud)
    for part in [[0.5, 1, 0.5], [1, 0.8, 0.62], [1.2, 0.6, 0.46], [1.5, 0.45, 0.24], [2, 0.5, 0.5], [2.51, 0.28, 0.2], [3.01, 0.2, 0.14], [4.1, 0.12, 0.1]]
        tone(samples, rate, start, pitch * part[1], long * part[2], loud * part[3])
    end
end

@@ Noise through a slow filter; `shape` is its loudness over the share of its time.
function breath(samples, rate, start, long, dull, loud, shape)
    local count = #samples
    local first = floor(start * rate)
    local length = floor(long * rate)
    local value = 0.0
    local slow = 0.0
    for i = 0, length - 1
        value += (random() * 2 - 1 - value) * dull
        slow += (value - slow) * dull * 0.1
        local at = (first + i) % count + 1
        samples[at] += (value - slow) * loud * shape(i / length)
    end
end

function fading(share)
    return (1 - share) * (1 - share) * least(1, share * 40)
end

function swelling(share)
    return sin(share * TURN / 2)
end

function lapping(share)
    return sin(share * TURN / 2) * (0.55 + 0.45 * sin(share * TURN * 3))
end

SOUND = 22050
AMBIENT = 11025

function makeSounds()
    local rung = silence(SOUND, 3.4)
    bell(rung, SOUND, 0, 262, 3.3, 0.19)
    breath(rung, SOUND, 0, 0.05, 0.7, 0.3, fading)
    saveSound("bell", SOUND, rung)
    local step = silence(SOUND, 0.16)
    breath(step, SOUND, 0, 0.05, 0.5, 0.5, fading)
    breath(step, SOUND, 0.05, 0.1, 0.2, 0.4, fading)
    tone(step, SOUND, 0, 118, 0.07, 0.3)
    saveSound("step", SOUND, step)
    local soft = silence(SOUND, 0.22)
    breath(soft, SOUND, 0, 0.2, 0.13, 0.9, swelling)
    saveSound("soft-step", SOUND, soft)
    local splash = silence(SOUND, 0.5)
    breath(splash, SOUND, 0, 0.34, 0.34, 0.42, fading)
    for i = 1, 7
        tone(splash, SOUND, 0.05 + random() * 0.3, 500 + random() * 900, 0.07, 0.1)
    end
    saveSound("splash", SOUND, splash)
    local chime = silence(SOUND, 1.5)
    for i, pitch in ipairs([659.26, 880, 1046.5, 1318.5])
        tone(chime, SOUND, i * 0.09 - 0.09, pitch, 1.1, 0.15)
        tone(chime, SOUND, i * 0.09 - 0.09, pitch * 2.76, 0.4, 0.04)
    end
    saveSound("chime", SOUND, chime)
    local choose = silence(SOUND, 0.4)
    tone(choose, SOUND, 0, 523.25, 0.3, 0.2)
    tone(choose, SOUND, 0.07, 783.99, 0.32, 0.18)
    saveSound("choose", SOUND, choose)
    local door = silence(SOUND, 0.9)
    for i = 0, 5
        tone(door, SOUND, i * 0.05 + i * i * 0.004, 190 + i * 17, 0.07, 0.14)
    end
    breath(door, SOUND, 0.46, 0.3, 0.12, 1.2, fading)
    tone(door, SOUND, 0.46, 74, 0.3, 0.5)
    saveSound("door", SOUND, door)
    local creak = silence(SOUND, 1.2)
    for i = 0, 11
        tone(creak, SOUND, i * 0.085, 130 + i % 4 * 22, 0.1, 0.2)
    end
    tone(creak, SOUND, 0.3, 65, 0.9, 0.2)
    saveSound("creak", SOUND, creak)
    local flutter = silence(SOUND, 0.7)
    for i = 0, 6
        breath(flutter, SOUND, i * 0.09, 0.08, 0.24, 0.5 - i * 0.05, swelling)
    end
    saveSound("flutter", SOUND, flutter)
    local page = silence(SOUND, 0.4)
    breath(page, SOUND, 0, 0.38, 0.6, 0.24, lapping)
    saveSound("page", SOUND, page)
end

@@ A tune of few notes, far off, over what the place breathes.
function faintTune(samples, line, beat, octave, loud)
    local pitches = {d = 146.83, e = 164.81, f = 174.61, g = 196.0, a = 220.0, c = 261.63, D = 293.66, E = 329.63, F = 349.23, G = 392.0, A = 440.0}
    for i = 1, #line
        local pitch = pitches[line[i]]
        if pitch != not
            tone(samples, AMBIENT, (i - 1) * beat, pitch * octave, 3.4, loud)
            tone(samples, AMBIENT, (i - 1) * beat, pitch * octave * 2, 1.6, loud * 0.3)
        end
    end
end

function makeAmbiences()
    local night = silence(AMBIENT, 24)
    for i = 0, 7
        breath(night, AMBIENT, i * 3, 4.4, 0.05, 0.9, swelling)
    end
    for i = 1, 9
        local at = random() * 24
        for n = 0, 3 + random(3)
            tone(night, AMBIENT, at + n * 0.11, 2300 + random(90), 0.05, 0.018)
        end
    end
    faintTune(night, "d..a..g.f...e.....d..c..a.g...a....", 0.68, 1, 0.06)
    faintTune(night, "D.....F.....E...D.....A.....G......", 0.68, 1, 0.03)
    saveSound("night", AMBIENT, night)
    local lake = silence(AMBIENT, 24)
    for i = 0, 9
        breath(lake, AMBIENT, i * 2.4, 2.9, 0.11, 0.62, lapping)
    end
    faintTune(lake, "d...f...a.....g...d...c...a........", 0.68, 1, 0.08)
    faintTune(lake, "..D...E...F...D.....A...G...E......", 0.68, 1, 0.045)
    saveSound("lake", AMBIENT, lake)
    local drip = silence(AMBIENT, 18)
    for i = 0, 3
        breath(drip, AMBIENT, i * 4.5, 6, 0.025, 1.1, swelling)
    end
    for i = 1, 16
        local at = random() * 18
        local pitch = 700 + random(900)
        for echo = 0, 3
            tone(drip, AMBIENT, at + echo * 0.19, pitch, 0.09, 0.16 / (1 + echo * 1.6))
        end
    end
    faintTune(drip, "d.......c.......a........", 0.7, 0.5, 0.12)
    saveSound("drip", AMBIENT, drip)
end

math["randomseed"](2207)
makeSounds()
makeAmbiences()
