@@ What the player has set, kept in the chunk that the boot library runs at start.

NOVEL_TEXT_SIZES = ["small", "middle", "large"]
NOVEL_TEXT_SPEEDS = ["calm", "brisk", "at once"]
NOVEL_AUTO_SPEEDS = ["slow", "middle", "quick"]
NOVEL_SCALINGS = ["nearest", "smooth", "whole"]
NOVEL_BOXES = ["clear", "middle", "solid"]
NOVEL_LOUDEST = 10

if typeOf(settings) != "table"
    settings = {}
end

function novelWhole(name, usual, least, most)
    local value = settings[name]
    if typeOf(value) != "number" or value < least or value > most or value != math["floor"](value)
        settings[name] = usual
    end
end

function novelSwitch(name, usual)
    if typeOf(settings[name]) != "boolean"
        settings[name] = usual
    end
end

@@ Loudness was off, soft or full once; the speed has kept its three.
function novelLoudnessOf(old)
    local levels = [0, 4, NOVEL_LOUDEST]
    if typeOf(settings[old]) == "number"
        return levels[settings[old]] or NOVEL_LOUDEST
    end
    return NOVEL_LOUDEST
end

function novelMendSettings()
    novelWhole("textSpeed", 2, 1, 3)
    if typeOf(settings["speed"]) == "number" and settings["speed"] >= 1 and settings["speed"] <= 3
        settings["textSpeed"] = math["floor"](settings["speed"])
    end
    novelWhole("musicVolume", novelLoudnessOf("music"), 0, NOVEL_LOUDEST)
    novelWhole("soundVolume", novelLoudnessOf("sounds"), 0, NOVEL_LOUDEST)
    erase(settings, "speed")
    erase(settings, "music")
    erase(settings, "sounds")
    novelWhole("textSize", 1, 1, 3)
    novelWhole("autoSpeed", 2, 1, 3)
    novelWhole("scaling", 2, 1, 3)
    novelWhole("box", 2, 1, 3)
    novelSwitch("plainFont", false)
    novelSwitch("skipAll", false)
    novelSwitch("lessMotion", false)
    novelSwitch("readAloud", false)
    if typeOf(settings["language"]) != "string"
        settings["language"] = novelLanguages[1][1]
    end
end

@@ As a script, since that is what the boot library runs.
function novelKeepSettings()
    local lines = []
    for name, value in pairs(settings)
        local said = toString(value)
        if typeOf(value) == "string"
            said = "\"" + novelEscaped(value) + "\""
        end
        push(lines, "settings[\"" + novelEscaped(name) + "\"] = " + said)
    end
    if not Vesper["replaceFile"](vesperSavePath(-1), "settings = {}\n" + table["concat"](lines, "\n") + "\n")
        novelTell(novelSay("The settings could not be kept."))
    end
end
