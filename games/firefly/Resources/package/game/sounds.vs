@@ What is heard: the night, steps, a higher note for each firefly, the morning. Without sound the night goes on.

@@ Half tones above the first note, a scale of five.
CATCH_STEPS = [0, 2, 4, 7, 9, 12, 14, 16]
PAUSE_VOLUME = 0.3
catchTracks = []
isMute = false

function openSound(name)
    local track = Audio["open"](append + "/audio/" + name + ".wav")
    return track
end

function openSounds()
    if not MIXER_ENABLED
        return not
    end
    nightTrack = openSound("night")
    stepTrack = openSound("step")
    beginTrack = openSound("begin")
    dawnTrack = openSound("dawn")
    for half in CATCH_STEPS
        local track = openSound("catch")
        if track != not
            Audio["speed"](track, 2 ^ (half / 12))
        end
        push(catchTracks, track)
    end
end

function hear(track, loop)
    if track != not
        Audio["play"](track, loop == true, 0)
    end
end

function applyLoudness()
    if MIXER_ENABLED
        local volume = 1
        if isMute
            volume = 0
        elseif isPaused
            volume = PAUSE_VOLUME
        end
        Audio["setMasterVolume"](volume)
    end
end
