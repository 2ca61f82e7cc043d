@@ Plays every sound of the game into files.
@@     vesper run games/firefly/art/sounds.vs [FOLDER]

folder = arguments[1] or "games/firefly/Resources/package/audio"
runFile("../../library/art/sound.vs")

@@ Crickets near and far, each chirp three strokes, over a little wind. It goes round without a seam.
function makeNight()
    local rate = 11025
    local night = silence(rate * 12)
    breath(night, rate, 0.35, 0.07, 2)
    for i = 0, 17
        local start = i * 0.66 + random() * 0.2
        local pitch = 3300 + i % 3 * 260
        local loud = 0.02 + i % 3 * 0.016
        for stroke = 0, 2
            chirp(night, rate, start + stroke * 0.052, pitch, loud)
        end
    end
    saveSound("night", rate, night)
end

function chirp(samples, rate, start, pitch, loud)
    local count = #samples
    local first = floor(start * rate)
    local length = floor(rate * 0.036)
    for i = 0, length - 1
        local at = (first + i) % count + 1
        samples[at] += sin(i * pitch * TURN / rate) * sin(i / length * 3.14159) * loud
    end
end

math["randomseed"](77)
makeNight()
saveSound("catch", SOUND_RATE, struck(1.3, [[0, 523.25, 1.2, 0.2, 0.7], [0.05, 1046.5, 0.8, 0.09, 0.5], [0.02, 1570, 0.5, 0.03, 0]]))
saveSound("step", SOUND_RATE, rustle(0.11, 0.16, 0.35))
saveSound("begin", SOUND_RATE, struck(1.5, [[0, 392, 1.3, 0.14, 0.5], [0.14, 523.25, 1.3, 0.14, 0.5]]))
saveSound("dawn", SOUND_RATE, struck(5.2, [[0, 261.63, 4.5, 0.12, 0.5], [0.5, 329.63, 4.2, 0.11, 0.5], [1.0, 392, 4, 0.11, 0.5], [1.5, 523.25, 3.6, 0.12, 0.5], [2.1, 659.26, 3, 0.1, 0.5], [2.7, 783.99, 2.4, 0.08, 0.4]]))
