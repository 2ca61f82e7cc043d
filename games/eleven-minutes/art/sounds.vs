@@ Plays every sound of the game into files.
@@     vesper run games/eleven-minutes/art/sounds.vs [FOLDER]
@@ `art/make sounds` plays them and packs the long ones, in place.
@@ Mono, 16 bits. Music repeats without a seam, since all that sounds at its end goes on at its beginning.

folder = arguments[1] or "games/eleven-minutes/Resources/package/audio"
sin = math["sin"]
floor = math["floor"]
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
    for i = 1, #samples
        local value = floor(math["max"](-1, math["min"](1, samples[i])) * 32000)
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

function silence(count)
    local samples = []
    for i = 1, count
        samples[i] = 0.0
    end
    return samples
end

@@ A plucked or struck tone that dies away, wrapped round the end of the samples.
function tone(samples, rate, start, pitch, long, loud, overtones)
    local count = #samples
    local first = floor(start * rate)
    local length = floor(long * rate)
    for i = 0, length - 1
        local t = i / rate
        local fade = (1 - i / length) * (1 - i / length) * math["min"](1, t * 60)
        local angle = t * pitch * TURN
        local value = sin(angle) + sin(angle * 2.0) * 0.32 * overtones + sin(angle * 3.01) * 0.16 * overtones
        local at = (first + i) % count + 1
        samples[at] += value * fade * loud
    end
end

@@ Breath of wind or sea: noise through a slow filter, swelling so often in a round.
function breath(samples, rate, loud, dull, swells)
    local count = #samples
    local value = 0.0
    local tail = count \ 6
    local noises = []
    for i = 1, count + tail
        value += (random() * 2 - 1 - value) * dull
        push(noises, value)
    end
    for i = 1, count
        local swell = 0.6 + 0.4 * sin(i / count * TURN * swells)
        local noise = noises[i]
        if i <= tail
            noise = noise * (i / tail) + noises[count + i] * (1 - i / tail)
        end
        samples[i] += noise * loud * swell
    end
end

@@ Notes of the minor scale on A that these tunes live in.
notes = {a = 220.0, b = 246.94, c = 261.63, d = 293.66, e = 329.63, f = 349.23, g = 392.0, A = 440.0, B = 493.88, C = 523.25, D = 587.33, E = 659.26}

function melody(samples, rate, line, beat, octave, loud, overtones, long)
    for i = 1, #line
        local pitch = notes[line[i]]
        if pitch != not
            tone(samples, rate, (i - 1) * beat, pitch * octave, long, loud, overtones)
        end
    end
end

MUSIC_RATE = 11025

function makeMusic()
    local sea = silence(MUSIC_RATE * 16)
    breath(sea, MUSIC_RATE, 1.3, 0.06, 2)
    saveSound("sea", MUSIC_RATE, sea)
    local grove = silence(MUSIC_RATE * 16)
    breath(grove, MUSIC_RATE, 0.6, 0.11, 3)
    melody(grove, MUSIC_RATE, "c...g...a...e...f...c...d...g...", 0.5, 0.5, 0.14, 0.6, 3)
    melody(grove, MUSIC_RATE, "E.C.D.g.C.A.B...A.C.E.D.C.D.B...", 0.5, 1, 0.08, 0.9, 1.8)
    saveSound("grove", MUSIC_RATE, grove)
    local rain = silence(MUSIC_RATE * 16)
    breath(rain, MUSIC_RATE, 0.34, 0.6, 1)
    breath(rain, MUSIC_RATE, 0.5, 0.08, 2)
    for i = 1, 150
        tone(rain, MUSIC_RATE, random() * 16, 900 + random() * 1600, 0.03, 0.06 * random(), 0)
    end
    melody(rain, MUSIC_RATE, "d...a...f...c...d...a...e...a...", 0.5, 0.5, 0.12, 0.4, 3.2)
    melody(rain, MUSIC_RATE, "..A...C.D...A...f.A...C.B...A...", 0.5, 1, 0.07, 0.5, 2.4)
    saveSound("rain", MUSIC_RATE, rain)
end

SOUND_RATE = 22050

function rustle(long, loud, dull)
    local samples = silence(floor(SOUND_RATE * long))
    local value = 0.0
    for i = 1, #samples
        local t = i / #samples
        value += (random() * 2 - 1 - value) * dull
        samples[i] = value * loud * sin(t * 3.14159) * (0.5 + 0.5 * sin(t * 17))
    end
    return samples
end

function struck(long, strikes)
    local samples = silence(floor(SOUND_RATE * long))
    for i, strike in ipairs(strikes)
        tone(samples, SOUND_RATE, strike[1], strike[2], strike[3], strike[4], strike[5])
    end
    return samples
end

function makeSounds()
    saveSound("tick", SOUND_RATE, struck(0.03, [[0, 1300, 0.025, 0.4, 0.4]]))
    saveSound("click", SOUND_RATE, struck(0.03, [[0, 1300, 0.025, 0.4, 0.4]]))
    saveSound("move", SOUND_RATE, struck(0.08, [[0, 660, 0.07, 0.2, 0.3]]))
    saveSound("choose", SOUND_RATE, struck(0.5, [[0, 523.25, 0.4, 0.22, 0.6], [0.07, 783.99, 0.42, 0.2, 0.6]]))
    saveSound("chime", SOUND_RATE, struck(1.6, [[0, 880, 1.4, 0.18, 1], [0.12, 1318.5, 1.3, 0.12, 1], [0.26, 1760, 1.2, 0.08, 1]]))
    saveSound("bell", SOUND_RATE, struck(2.6, [[0, 196, 2.5, 0.4, 1.2], [0, 470.4, 1.8, 0.16, 1], [0, 117.6, 2.5, 0.25, 0.4]]))
    saveSound("page", SOUND_RATE, rustle(0.36, 0.45, 0.5))
    local gears = []
    for i = 0, 7
        push(gears, [i * 0.16, 180 + i % 2 * 60, 0.05, 0.4, 1.5])
        push(gears, [i * 0.16 + 0.02, 1900, 0.02, 0.12, 1])
    end
    saveSound("gears", SOUND_RATE, struck(1.4, gears))
    local birds = silence(SOUND_RATE * 2)
    for i = 1, 16
        local start = random() * 1.7
        local pitch = 5600 + random() * 1500
        local first = floor(start * SOUND_RATE)
        local loud = 0.03 + random() * 0.09
        for n = 0, 4400
            local t = n / 4400
            local at = first + n + 1
            if at <= #birds
                birds[at] += sin(n / SOUND_RATE * (pitch - t * 1300) * TURN) * sin(t * 3.14159) * loud
            end
        end
    end
    saveSound("birds", SOUND_RATE, birds)
end

runFile("music.vs")
math["randomseed"](1410)
makeMusic()
makeSounds()
makePieces()
