@@ Saved games. A save is itself a script: loading one is running it. Its companion holds its checksum. Each file
@@ is replaced as a whole, so that a crash or a full disk leaves the old one.

function vesperSavePath(number)
    return Vesper["getPath"]() + "../Resources/volatile/save" + number + ".plush"
end

function vesperWriteSave(path, text, failure)
    if not Vesper["replaceFile"](path, text)
        error(failure + path)
    end
end

function Vesper["saveGame"](slot)
    local path = vesperSavePath(slot * 2)
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
    vesperWriteSave(vesperSavePath(slot * 2 + 1), toString(Vesper["checksum"](savestring)), "Failed to open checksum file: ")
end
