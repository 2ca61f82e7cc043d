@@ The player's settings, kept in the chunk that the boot library runs at start.

TEXT_SPEEDS = ["calm", "brisk", "at once"]
if typeOf(settings) != "table"
    settings = {}
end

function settingOr(name, usual, most)
    local value = settings[name]
    if typeOf(value) != "number" or value < 1 or value > most or value != math["floor"](value)
        settings[name] = usual
    end
end

settingOr("music", 3, 3)
settingOr("sounds", 3, 3)
settingOr("speed", 2, 3)

function keepSettings()
    if not Vesper["replaceFile"](volatileFolder + "save-1.plush", "settings = " + Vesper["jsonEncode"](settings) + "\n")
        tell("The settings could not be kept.")
    end
end
