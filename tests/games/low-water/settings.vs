@@ Settings of the time when sound was on or off, volumes, and the night that a closed window keeps.

settings = {sound = 2, picture = 2}

function testNight()
    os["remove"](savePath())
    print(settings["musicVolume"], settings["soundVolume"], settings["sound"], settings["picture"])
    openPause()
    openOptions()
    for step in [1, 1, -1]
        turnVolume(items[1], step)
    end
    nextVolume(items[2])
    print(items[1]["say"], items[2]["say"], items[4]["say"])
    switchScreen(items[4])
    print(items[4]["say"], Metal["isFullscreen"]())
    closeOptions()
    print(mode == VESPER_MENU_PAUSE, items[1]["say"], stateOfSave())
end

runFile("night.vs")
print(stateOfSave())
settings = {}
runFile(volatileFolder + "save-1.plush")
print(settings["musicVolume"], settings["soundVolume"])
