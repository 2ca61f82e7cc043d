@@ Plays every sound of the game into files.
@@     vesper run games/eleven-minutes/art/sounds.vs [FOLDER]
@@ `art/make sounds` plays them and packs the long ones, in place.
@@ Mono, 16 bits. Music repeats without a seam, since all that sounds at its end goes on at its beginning.

folder = arguments[1] or "games/eleven-minutes/Resources/package/audio"
runFile("../../library/art/sound.vs")

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
