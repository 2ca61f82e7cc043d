@@ Saved games. A save is itself a script: loading one is running it. Its companion holds its checksum.

function vesperSavePath(number)
    return Vesper["getPath"]() + "../Resources/volatile/save" + number + ".plush"
end

function vesperWriteSave(path, text, failure)
    local file = io["open"](path, "w")
    if not file
        error(failure + path)
    end
    file["write"](file, text)
    file["close"](file)
end

function Vesper["saveGame"](slot)
    local path = vesperSavePath(slot * 2)
    local file = io["open"](path, "a")
    if not file
        error("Failed to open save file: " + path)
    end
    file["close"](file)
    @@ The music tells where it is by stopping for a moment.
    loadOffset = Audio["pause"](oldAudio)
    Audio["play"](oldAudio, true, loadOffset)
    local savestring = "pagenum = " + pagenum + "\n"
    savestring += "loadOffset = " + loadOffset + "\n"
    savestring += "oldAudio = 0\n"
    savestring += "saveslot = " + slot + "\n"
    savestring += "mode = " + previousMode + "\n"
    savestring += "latched = false\n"
    vesperWriteSave(path, savestring, "Failed to open save file: ")
    vesperWriteSave(vesperSavePath(slot * 2 + 1), Vesper["checksum"](savestring), "Failed to open checksum file: ")
end
