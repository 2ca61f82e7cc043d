@@ The three pieces with a tune: notes, chords and the voices that play them. Everything goes round: what sounds at the
@@ end of a piece goes on at its beginning, echoes too, so that it repeats without a seam.

PIECE_RATE = 22050
STEPS = {C = 0, D = 2, E = 4, F = 5, G = 7, A = 9, B = 11}
CHORDS = {
    Am = [9, 12, 16], F = [5, 9, 12], C = [0, 4, 7], G = [7, 11, 14], Em = [4, 7, 11], Dm = [2, 5, 9], E = [4, 8, 11],
    Bb = [10, 14, 17], A = [9, 13, 16], Gm = [7, 10, 14], D = [2, 6, 9], Bm = [11, 14, 18], Fsm = [6, 9, 13]
}

@@ Half tones above the lowest C from a name like "F#5" or "Bb4".
function stepOf(name)
    local step = STEPS[string["sub"](name, 1, 1)] + toNumber(string["sub"](name, -1)) * 12
    if string["sub"](name, 2, 2) == "#"
        return step + 1
    elseif string["sub"](name, 2, 2) == "b"
        return step - 1
    end
    return step
end

function pitchOf(step)
    return 440.0 * 2.0 ^ ((step - 57) / 12)
end

function newPiece(seconds)
    return silence(floor(seconds * PIECE_RATE))
end

@@ A string that is plucked: the higher its overtone, the sooner it is gone.
function pluck(samples, start, pitch, loud, dull)
    local count = #samples
    local first = floor(start * PIECE_RATE)
    local turn = pitch * TURN / PIECE_RATE
    local one = loud
    local two = loud * 0.42 * dull
    local three = loud * 0.2 * dull
    local keepOne = 1 - 1.7 / PIECE_RATE
    local keepTwo = 1 - 3.6 / PIECE_RATE
    local keepThree = 1 - 7.5 / PIECE_RATE
    local attack = PIECE_RATE \ 250
    for i = 0, floor(PIECE_RATE * 2.6)
        local angle = i * turn
        local value = sin(angle) * one + sin(angle * 2) * two + sin(angle * 3) * three
        if i < attack
            value = value * i / attack
        end
        local at = (first + i) % count + 1
        samples[at] += value
        one = one * keepOne
        two = two * keepTwo
        three = three * keepThree
    end
end

@@ Breath-like, without a beginning or an end that could be told.
function pad(samples, start, long, pitch, loud)
    local count = #samples
    local first = floor(start * PIECE_RATE)
    local length = floor((long + 0.9) * PIECE_RATE)
    local turn = pitch * TURN / PIECE_RATE
    for i = 0, length - 1
        local swell = sin(i / length * 3.14159265)
        local at = (first + i) % count + 1
        samples[at] += (sin(i * turn) + sin(i * turn * 1.0035) * 0.8 + sin(i * turn * 2.001) * 0.18) * swell * swell * loud
    end
end

@@ A small dry knock, for clockwork.
function knock(samples, start, pitch, loud)
    local count = #samples
    local first = floor(start * PIECE_RATE)
    for i = 0, 700
        local fade = (1 - i / 700) ^ 4
        local at = (first + i) % count + 1
        samples[at] += sin(i * pitch * TURN / PIECE_RATE) * fade * loud
    end
end

function namesIn(bar)
    local names = []
    local name = ""
    for i = 1, #bar
        local letter = string["sub"](bar, i, i)
        if letter == " "
            push(names, name)
            name = ""
        else
            name += letter
        end
    end
    push(names, name)
    return names
end

@@ A tune of bars: names, "-" to hold and "." to rest, each one slot long.
function tune(samples, bars, slot, lift, loud, dull)
    local at = 0
    for bar in bars
        for name in namesIn(bar)
            if name != "-" and name != "."
                pluck(samples, at * slot, pitchOf(stepOf(name) + lift), loud, dull)
            end
            at += 1
        end
    end
end

@@ Of each bar's chord the root below, a figure above it, and the whole chord as a breath.
function accompany(samples, chords, slots, slot, figure, loud, breathLoud)
    for bar, name in ipairs(chords)
        local chord = CHORDS[name]
        local start = (bar - 1) * slots * slot
        pluck(samples, start, pitchOf(24 + chord[1] % 12), loud * 1.5, 0.5)
        for i, note in ipairs(figure)
            if note > 0
                pluck(samples, start + (i - 1) * slot, pitchOf(36 + chord[(note - 1) % 3 + 1] + (note - 1) \ 3 * 12), loud, 0.5)
            end
        end
        for step in chord
            pad(samples, start, slots * slot, pitchOf(36 + step), breathLoud)
        end
    end
end

@@ A room around it: echoes, each softer, that go round the end.
function echo(samples, loud)
    local count = #samples
    local dry = silence(count)
    for i = 1, count
        dry[i] = samples[i]
    end
    for n, delay in ipairs([0.113, 0.197, 0.311, 0.463, 0.619])
        local shift = count - floor(delay * PIECE_RATE)
        local share = loud * (1 - n * 0.15)
        for i = 1, count
            samples[i] += dry[(i - 1 + shift) % count + 1] * share
        end
    end
end

@@ To the same loudness, so that one can follow another.
function level(samples, wanted)
    local sum = 0.0
    for i = 1, #samples
        sum += samples[i] * samples[i]
    end
    local share = wanted / math["sqrt"](sum / #samples)
    for i = 1, #samples
        samples[i] = samples[i] * share
    end
end

@@ The title, the Point in the evening and in the morning: a slow round of three beats.
function makeLight()
    local slot = 0.29
    local chords = ["Am", "F", "C", "G", "Am", "F", "G", "Em", "F", "G", "C", "Am", "F", "Dm", "E", "E", "Am", "F", "C", "G", "F", "G", "Am", "Am"]
    local piece = newPiece(slot * 6 * #chords)
    accompany(piece, chords, 6, slot, [1, 3, 4, 5, 4, 3], 0.05, 0.022)
    tune(piece, [
        "A4 - - - B4 C5", "C5 - - - B4 A4", "G4 - - - C5 D5", "B4 - - - - -", "C5 - - - D5 E5", "F5 - - E5 D5 C5", "D5 - - - B4 G4", "B4 - - - - .",
        "A4 - C5 - F5 -", "E5 - - D5 - -", "E5 - - - D5 C5", "C5 - - B4 A4 -", "A4 - - - B4 C5", "D5 - - - F5 E5", "E5 - - D5 C5 B4", "B4 - - G#4 - -",
        "A4 - - - B4 C5", "C5 - - - D5 E5", "G5 - - - E5 -", "D5 - - - - .", "C5 - - - B4 A4", "B4 - - - A4 G4", "A4 - - - - -", ". . . . E4 -"
    ], slot, 0, 0.13, 0.8)
    echo(piece, 0.22)
    breath(piece, PIECE_RATE, 0.55, 0.035, 4)
    level(piece, 0.085)
    saveSound("light", PIECE_RATE, piece)
end

@@ Among the wheels: a musical box that has to keep time.
function makeClockwork()
    local slot = 0.27
    local chords = ["Dm", "Dm", "Bb", "A", "Dm", "F", "Gm", "A", "F", "C", "Gm", "Dm", "Bb", "F", "Gm", "Dm"]
    local piece = newPiece(slot * 8 * #chords)
    accompany(piece, chords, 8, slot, [1, 0, 3, 0, 2, 0, 3, 0], 0.045, 0.02)
    tune(piece, [
        "D5 - A4 - F5 - E5 D5", "C5 - - - A4 - - -", "D5 - F5 - A5 - G5 F5", "E5 - - - C#5 - - -", "D5 - A4 - F5 - E5 D5", "C5 - F5 - A5 - - -", "Bb5 - A5 G5 F5 - D5 -", "E5 - - - - - . .",
        "A5 - - G5 F5 - C5 -", "E5 - - F5 G5 - - -", "D5 - Bb4 - G4 - A4 Bb4", "A4 - - - D5 - - -", "F5 - D5 - Bb4 - C5 D5", "C5 - A4 - F4 - - -", "G4 - Bb4 - D5 - C#5 -", "D5 - - - - - . ."
    ], slot, 12, 0.06, 0.35)
    for i = 0, #chords * 4 - 1
        knock(piece, i * slot * 2, 1500 - i % 2 * 420, 0.05)
    end
    echo(piece, 0.18)
    level(piece, 0.075)
    saveSound("clockwork", PIECE_RATE, piece)
end

@@ The dark and what goes over in it.
function makeWings()
    local slot = 0.31
    local chords = ["D", "A", "Bm", "G", "D", "G", "A", "A", "Bm", "Fsm", "G", "D", "G", "Em", "A", "D"]
    local piece = newPiece(slot * 6 * #chords)
    accompany(piece, chords, 6, slot, [1, 2, 3, 4, 5, 6], 0.05, 0.03)
    tune(piece, [
        "F#5 - - - - E5", "E5 - - - C#5 -", "D5 - - - F#5 -", "B5 - - A5 G5 -", "A5 - - - F#5 -", "G5 - - - F#5 D5", "E5 - - - - -", ". . . A4 C#5 E5",
        "F#5 - - B5 - -", "A5 - - - F#5 -", "G5 - - F#5 G5 A5", "F#5 - - - D5 -", "B5 - - - A5 G5", "G5 - - F#5 E5 -", "E5 - - D5 C#5 -", "D5 - - - - -"
    ], slot, 0, 0.11, 0.6)
    echo(piece, 0.26)
    breath(piece, PIECE_RATE, 0.5, 0.03, 3)
    level(piece, 0.085)
    saveSound("wings", PIECE_RATE, piece)
end

function makePieces()
    math["randomseed"](3)
    makeLight()
    makeClockwork()
    makeWings()
end
