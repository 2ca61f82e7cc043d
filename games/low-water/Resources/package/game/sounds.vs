@@ Sounds come from a few files; the rest is made of them at start: five bells of one, steps of one step, and the
@@ peal, in the order in which the lamps came home. What goes on in the air is the library's music.

runFile(libraryFolder + "text.vs")
runFile(libraryFolder + "settings.vs")
runFile(libraryFolder + "sound.vs")
tracks = {}

@@ Sound was on or off once.
for name in ["musicVolume", "soundVolume"]
    novelWhole(name, NOVEL_LOUDEST * (2 - (settings["sound"] or 1)), 0, NOVEL_LOUDEST)
end
erase(settings, "sound")

function novelTellMissing(text)
    tellMissing(text)
end

@@ Ratios of the five bells, a scale down from the treble.
BELLS = [1.5, 1.3333, 1.25, 1.125, 1.0]
PEAL_ROUNDS = 3
PEAL_BEAT_MS = 620

function openSound(name)
    local track, opened = Audio["open"](append + "/audio/" + name + ".wav")
    if not opened
        tellMissing("The sound " + name + " is missing.")
        return not
    end
    return track
end

@@ A copy at another speed.
function openSped(name, factor)
    local track = openSound(name)
    if track != not
        Audio["speed"](track, factor)
    end
    return track
end

function soundOf(name)
    if not contains(tracks, name)
        tracks[name] = openSound(name)
    end
    return tracks[name]
end

function loadSounds()
    for i, ratio in ipairs(BELLS)
        tracks["bell" + i] = openSped("bell", ratio)
    end
    for i = 1, 3
        tracks["step" + i] = openSped("step", 0.86 + i * 0.1)
        tracks["soft-step" + i] = openSped("soft-step", 0.86 + i * 0.1)
        tracks["splash" + i] = openSped("splash", 0.84 + i * 0.12)
    end
    tracks["wrong"] = openSound("chime")
    if tracks["wrong"] != not
        Audio["pitch"](tracks["wrong"], 0.5)
        Audio["trim"](tracks["wrong"], 0, 700)
    end
    tracks["handbell"] = handBell()
    tracks["tick"] = Audio["form"](1320, 18, "sine", "both")
end

@@ Two strokes of a small bell, one ear a little later than the other.
function handBell()
    local track = Audio["form"](0, 900, "sine", "both")
    local stroke = openSped("bell", 3)
    if stroke != not
        Audio["trim"](stroke, 0, 600)
        Audio["add"](track, stroke, 0)
        Audio["speed"](stroke, 1.06)
        Audio["add"](track, stroke, 210)
        Audio["free"](stroke)
    end
    return track
end

footfalls = 0

function playSound(name)
    if not MIXER_ENABLED or settings["soundVolume"] == 0
        return not
    end
    if name == "step" or name == "soft-step" or name == "splash"
        footfalls += 1
        name = name + (footfalls * 7 % 3 + 1)
    end
    local track = soundOf(name)
    if track != not
        Audio["play"](track, false, 0)
    end
end

function playBell(number)
    playSound("bell" + number)
end

@@ Rounds: each lamp has its bell by the order of coming home, and with each round two of them change places.
function playPeal()
    local length = (PEAL_ROUNDS * 5 + 6) * PEAL_BEAT_MS
    local peal = Audio["form"](0, length, "sine", "both")
    local order = [1, 2, 3, 4, 5]
    for i, name in ipairs(LAMPS)
        for j, came in ipairs(night["home"])
            if came == name
                order[i] = j
            end
        end
    end
    local at = 0
    for round = 1, PEAL_ROUNDS
        for bell in order
            local track = tracks["bell" + bell]
            if track != not
                Audio["add"](peal, track, at)
            end
            at += PEAL_BEAT_MS
        end
        order[round], order[round + 1] = order[round + 1], order[round]
    end
    if tracks["peal"] != not
        Audio["free"](tracks["peal"])
    end
    tracks["peal"] = peal
    playSound("peal")
end

loadSounds()
novelApplyLoudness()
