@@ Kept pages. The boot library keeps the page and the music; beside it lies what the story remembers, as JSON.
@@ Both have their checksums, and what does not match is not run.

SLOT_COUNT = 3
sceneNames = {lighthouse = "The lighthouse", library = "The library", grove = "The beeches", night = "Under the lamp", steady = "The end of the night", crossing = "The crossing"}

function storyPath(slot)
    return volatileFolder + "story" + slot + ".json"
end

function quoted(text)
    return "\"" + replaceAll(text, "\"", "\\\"") + "\""
end

@@ What lies beside a kept page.
function storyText()
    local out = "{\"scene\": " + quoted(pages[pagenum]["scene"]) + ", \"place\": " + quoted(placeName)
    for slot = 1, 4
        out += ", \"cast" + slot + "\": " + quoted(cast[slot])
    end
    for name, value in pairs(memory)
        out += ", " + quoted("chose " + name) + ": true"
    end
    return out + "}\n"
end

function keepGame(slot)
    local kept = pcall(Vesper["saveGame"], slot)
    local text = storyText()
    kept = kept and Vesper["replaceFile"](storyPath(slot), text) and Vesper["replaceFile"](storyPath(slot) + ".sum", toString(Vesper["checksum"](text)))
    if kept
        tell("The page is kept.")
    else
        tell("The page could not be kept.")
    end
    return kept
end

function matches(path, sumPath)
    if not isThere(path) or not isThere(sumPath)
        return false
    end
    return toString(Vesper["checksum"](Vesper["contents"](path))) == Vesper["contents"](sumPath)
end

@@ "empty", "damaged" or "good".
function stateOfSlot(slot)
    local path = vesperSavePath(slot * 2)
    if not isThere(path)
        return "empty"
    end
    if matches(path, vesperSavePath(slot * 2 + 1)) and matches(storyPath(slot), storyPath(slot) + ".sum")
        return "good"
    end
    return "damaged"
end

function openGame(slot)
    local state = stateOfSlot(slot)
    if state == "empty"
        tell("Nothing has been kept here yet.")
        return false
    end
    if state == "damaged"
        tell("This page was changed after it was kept, so it stays closed.")
        return false
    end
    local record = Vesper["jsonDecode"](Vesper["contents"](storyPath(slot)))
    local now = {pagenum = pagenum, mode = mode, oldAudio = oldAudio}
    local chunk = load(Vesper["contents"](vesperSavePath(slot * 2)))
    chunk()
    if fitsStory(record)
        resumeFrom(record)
        return true
    end
    pagenum = now["pagenum"]
    mode = now["mode"]
    oldAudio = now["oldAudio"]
    tell("This page belongs to another telling of the story.")
    return false
end

@@ A page may have been kept by an older version of the game.
function fitsStory(record)
    for slot = 1, 4
        local name = record["cast" + slot]
        if name != "" and (typeOf(name) != "string" or people[name] == not)
            return false
        end
    end
    return pages[pagenum] != not and typeOf(record["place"]) == "string" and places[record["place"]] != not
end

function resumeFrom(record)
    forget()
    for name, value in pairs(record)
        if string["sub"](name, 1, 6) == "chose "
            memory[string["sub"](name, 7)] = true
        end
    end
    dissolve(12)
    closeHeld()
    mode = VESPER_GAME_VISUAL_NOVEL
    oldAudio = not
    musicName = ""
    Audio["clear"]()
    enterPlace(record["place"])
    yOffset = CAMERA_DOWN
    castPage(pages[pagenum], [record["cast1"], record["cast2"], record["cast3"], record["cast4"]])
    showBox(pages[pagenum])
    finishBox()
end
