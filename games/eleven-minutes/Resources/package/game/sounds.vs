@@ Music and sounds. Each is there twice, full and soft; a game without them is silent but goes on.

LOUDNESS = ["off", "soft", "full"]
tracks = {}
oldAudio = not
musicName = ""

function trackOf(name, loudness)
    local file = name + "-" + loudness + ".wav"
    if tracks[file] == not
        local track, opened = Audio["open"](append + "/audio/" + file)
        if not opened
            tellMissing("The sound " + name + " is missing.")
            track = false
        end
        tracks[file] = track
    end
    if tracks[file] == false
        return not
    end
    return tracks[file]
end

function playSound(name)
    local loudness = LOUDNESS[settings["sounds"]]
    if not MIXER_ENABLED or loudness == "off"
        return not
    end
    local track = trackOf(name, loudness)
    if track != not
        Audio["play"](track, false, 0)
    end
end

@@ Goes on where it is when it is the same; `offset` is where a saved game left it, in milliseconds.
function playMusic(name, offset)
    if not MIXER_ENABLED or name == musicName
        return not
    end
    if oldAudio != not
        Audio["pause"](oldAudio)
    end
    oldAudio = not
    musicName = name
    local loudness = LOUDNESS[settings["music"]]
    if loudness == "off"
        return not
    end
    oldAudio = trackOf(name, loudness)
    if oldAudio != not
        Audio["play"](oldAudio, true, offset or 0)
    end
end

@@ The tick of sliding text is the boot library's; here it gets its loudness.
function applyLoudness()
    MIXER_SKIP_SLIDE = LOUDNESS[settings["sounds"]] == "off"
    if not MIXER_SKIP_SLIDE and MIXER_ENABLED
        click = trackOf("tick", LOUDNESS[settings["sounds"]])
    end
    local name = musicName
    musicName = ""
    playMusic(name)
end
