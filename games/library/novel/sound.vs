@@ Music and sounds, by the names of their files without endings. A game without them is silent but goes on.

NOVEL_FADE_SECONDS = 1.2
NOVEL_FADE_FRAMES = 44
novelTracks = {}
novelMusic = ""
novelFading = []
oldAudio = not

function novelTrack(name, group)
    if not MIXER_ENABLED
        return not
    end
    if novelTracks[name] == not
        novelTracks[name] = novelOpenTrack(name, group)
    end
    if novelTracks[name] == false
        return not
    end
    return novelTracks[name]
end

function novelSoundPath(name, ending)
    return append + "/audio/" + name + ending
end

function novelOpenTrack(name, group)
    for ending in [".wav", ".ogg"]
        local path = novelSoundPath(name, ending)
        if novelIsThere(path)
            local track, opened = Audio["open"](path)
            if opened
                Audio["setGroup"](track, group)
                return track
            end
        end
    end
    novelTellMissing("The sound " + name + " is missing.")
    return false
end

function novelPlaySound(name)
    if settings["soundVolume"] == 0
        return not
    end
    local track = novelTrack(name, "sound")
    if track != not
        Audio["play"](track, false, 0)
    end
end

@@ The library's own sounds are no loss where a game does not have them.
function novelClick(name)
    if novelLook["sounds"] != not and novelLook["sounds"][name] != not
        novelPlaySound(novelLook["sounds"][name])
    end
end

@@ One piece of music passes into another; it goes on where it is when it is the same.
function novelPlayMusic(name)
    if name == novelMusic
        return not
    end
    if oldAudio != not
        Audio["fade"](oldAudio, 0, NOVEL_FADE_SECONDS)
        push(novelFading, {track = oldAudio, left = NOVEL_FADE_FRAMES})
    end
    oldAudio = not
    novelMusic = name
    if name != ""
        oldAudio = novelTrack(name, "music")
    end
    if oldAudio != not
        novelKeepFrom(oldAudio)
        Audio["setVolume"](oldAudio, 0)
        Audio["fade"](oldAudio, 1, NOVEL_FADE_SECONDS)
        Audio["play"](oldAudio, true, 0)
    end
end

@@ What faded away is stopped a little later; unless it is wanted again.
function novelStepFading()
    for i = #novelFading, 1, -1
        novelFading[i]["left"] -= 1
        if novelFading[i]["left"] <= 0
            Audio["pause"](novelFading[i]["track"])
            erase(novelFading, i)
        end
    end
end

function novelKeepFrom(track)
    for i = #novelFading, 1, -1
        if novelFading[i]["track"] == track
            erase(novelFading, i)
        end
    end
end

function novelApplyLoudness()
    if MIXER_ENABLED
        Audio["setGroupVolume"]("music", settings["musicVolume"] / NOVEL_LOUDEST)
        Audio["setGroupVolume"]("sound", settings["soundVolume"] / NOVEL_LOUDEST)
    end
end
