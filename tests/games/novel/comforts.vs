@@ Settings are felt at once and kept; damaged ones get their usual values.

runFile(Vesper["getPath"]() + "../Resources/scripts/driver.vs")

function tellBox()
    print("box " + novelBox["high"] + ", words " + novelSizeOf("words"))
end

function tellMotion()
    print("camera rests: " + novelCameraRests() + ", hint rises: " + novelHintRise())
end

function tellSettings()
    local said = ""
    for name in ["autoSpeed", "box", "language", "lessMotion", "musicVolume", "plainFont", "scaling", "skipAll", "soundVolume", "textSize", "textSpeed"]
        said += " " + name + " " + settings[name]
    end
    print("settings:" + said)
end

function spoil()
    settings = {textSize = "huge", textSpeed = 7, musicVolume = -1, lessMotion = 3, language = 5, music = 2, sounds = 1, speed = 1}
    novelMendSettings()
    tellSettings()
end

function runKept()
    settings = {}
    local chunk = load(vesperContentsIfPresent(vesperSavePath(-1)))
    chunk()
    tellSettings()
end

function countDraws()
    draws = 0
end

function tellDraws()
    print("drawn while nothing changed: " + draws)
end

realRender = Metal["renderImage"]
function Metal["renderImage"](image)
    draws = (draws or 0) + 1
    realRender(image)
end

playSteps([
    "wait 20", tellSettings, "return", "return", "wait 6", tellBox,
    "escape", "up", "up", "up", "return", tellScreen, "right", "right", "escape", "escape", tellBox,
    "escape", "up", "up", "up", "return", "down", "down", "right", "down", "down", "down", "down", "right", "down", "left", "escape", "escape", tellMotion,
    "wait 10", countDraws, "wait 60", tellDraws, tellSettings, runKept, spoil
])
