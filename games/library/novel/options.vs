@@ Settings. Left and right, Enter or a click go on to another value, which is kept at once.

function novelOpeners["options"]()
    novelHead(novelSay("Settings"))
    local list = [
        novelChoiceItem("Text size", "textSize", NOVEL_TEXT_SIZES), novelSwitchItem("Plain font", "plainFont"),
        novelChoiceItem("Text speed", "textSpeed", NOVEL_TEXT_SPEEDS), novelChoiceItem("Auto speed", "autoSpeed", NOVEL_AUTO_SPEEDS),
        novelSwitchItem("Skip unread text", "skipAll"), novelChoiceItem("Text box", "box", NOVEL_BOXES), novelSwitchItem("Less motion", "lessMotion"),
        novelVolumeItem("Music", "musicVolume"), novelVolumeItem("Sounds", "soundVolume")
    ]
    if Metal["speak"] != not
        push(list, novelSwitchItem("Read aloud", "readAloud"))
    end
    if Metal["setFullscreen"] != not
        push(list, novelScreenItem())
    end
    if Metal["setScaling"] != not
        push(list, novelChoiceItem("Scaling", "scaling", NOVEL_SCALINGS))
    end
    if #novelLanguages > 1
        push(list, novelLanguageItem())
    end
    push(list, {say = novelSay("Back"), act = novelBack})
    local left = (#list + 1) \ 2
    for i, item in ipairs(list)
        item["x"] = 60 + (i - 1) \ left * 430
        item["y"] = 112 + (i - 1) % left * 54
        item["w"] = 410
        novelAddItem(item)
    end
    novelFocusOn(1)
end

function novelSteppers["options"]()
    novelStepMenu()
end

function novelChoiceItem(say, name, values)
    return {say = novelSay(say), value = novelSay(values[settings[name]]), setting = name, most = #values, act = novelNextValue, turn = novelTurnValue}
end

function novelOnOff(is)
    if is
        return novelSay("on")
    end
    return novelSay("off")
end

function novelSwitchItem(say, name)
    return {say = novelSay(say), value = novelOnOff(settings[name]), setting = name, act = novelFlip, turn = novelFlip}
end

@@ The window remembers by itself whether it has the whole screen.
function novelScreenItem()
    return {say = novelSay("Full screen"), value = novelOnOff(Metal["isFullscreen"]()), act = novelFlipScreen, turn = novelFlipScreen}
end

function novelFlipScreen(item, step)
    Metal["setFullscreen"](not Metal["isFullscreen"]())
    novelShowAgain()
end

function novelVolumeItem(say, name)
    return {say = novelSay(say), value = settings[name] * 100 \ NOVEL_LOUDEST + " %", setting = name, act = novelNextVolume, turn = novelTurnVolume}
end

function novelLanguageItem()
    local name = settings["language"]
    for pair in novelLanguages
        if pair[1] == name
            name = pair[2]
        end
    end
    return {say = novelSay("Language"), value = name, act = novelNextLanguage, turn = novelTurnLanguage}
end

function novelNextValue(item)
    novelTurnValue(item, 1)
end

function novelTurnValue(item, step)
    local most = item["most"]
    settings[item["setting"]] = (settings[item["setting"]] - 1 + step + most) % most + 1
    novelApplySettings(item["setting"])
end

function novelFlip(item, step)
    settings[item["setting"]] = not settings[item["setting"]]
    novelApplySettings(item["setting"])
end

function novelNextVolume(item)
    local next = settings[item["setting"]] + 2
    if next > NOVEL_LOUDEST
        next = 0
    end
    settings[item["setting"]] = next
    novelApplySettings(item["setting"])
end

function novelTurnVolume(item, step)
    settings[item["setting"]] = Vesper["clamp"](settings[item["setting"]] + step, 0, NOVEL_LOUDEST)
    novelApplySettings(item["setting"])
end

function novelNextLanguage(item)
    novelTurnLanguage(item, 1)
end

function novelTurnLanguage(item, step)
    local at = 1
    for i, pair in ipairs(novelLanguages)
        if pair[1] == settings["language"]
            at = i
        end
    end
    settings["language"] = novelLanguages[(at - 1 + step + #novelLanguages) % #novelLanguages + 1][1]
    novelApplySettings("language")
end

@@ Makes a changed setting felt at once.
function novelApplySettings(name)
    if name == "textSize" or name == "plainFont"
        novelOpenFonts()
    elseif name == "language"
        novelSetLanguage(settings["language"])
    elseif name == "musicVolume" or name == "soundVolume"
        novelApplyLoudness()
    elseif name == "scaling"
        novelApplyScaling()
    elseif name == "box"
        novelDropPanels()
    end
    if name == "readAloud"
        novelHush()
        novelSaidHead = ""
    end
    if name == "lessMotion" and novelPlace != ""
        novelStartWeather(novelPlaces[novelPlace])
        novelRestCamera()
    end
    novelDropBox()
    novelDropBar()
    novelKeepSettings()
    novelShowAgain()
end

function novelApplyScaling()
    if Metal["setScaling"] != not
        Metal["setScaling"](NOVEL_SCALINGS[settings["scaling"]])
    end
end
