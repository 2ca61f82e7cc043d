@@ Kept games: the slots "1", "2" and so on, "quick", "auto" and "older". A file is three lines: the checksum of the
@@ others, what a list of slots shows, and the game. Beside it lies a small picture. A page is kept by its name and
@@ its neighbours' names, so that an edited story finds it again.

NOVEL_SAVE_FORM = 1
NOVEL_KEPT_PATH = 120
novelVolatile = Vesper["getPath"]() + "../Resources/volatile/"
novelFirstEdition = []

function novelSavePath(slot)
    return novelVolatile + "novel-" + slot + ".save"
end

function novelPicturePath(slot)
    return novelVolatile + "novel-" + slot + ".png"
end

function novelReadPath()
    return novelVolatile + "novel-read.json"
end

@@ A game that kept pages by their number before it used this library tells what pages those were: their names, from
@@ the first page on.
function Novel["firstEdition"](names)
    novelFirstEdition = names
end

@@ The way so far, with each set of variables written once.
function novelPathRecord()
    local path = []
    local sets = []
    local last = not
    for number = math["max"](1, #novelPath - NOVEL_KEPT_PATH + 1), #novelPath
        local record = novelPath[number]
        if #sets == 0 or record["vars"] != last
            last = record["vars"]
            push(sets, last)
        end
        local stage = record["stage"]
        push(path, {name = record["name"], scene = record["scene"], who = record["who"] or "", text = record["text"], vars = #sets, place = stage["place"], music = stage["music"], cast = novelCastText(stage["cast"]), picked = record["picked"] or ""})
    end
    return {path = path, sets = sets}
end

function novelCastText(cast)
    return (cast[1] or "") + "," + (cast[2] or "") + "," + (cast[3] or "") + "," + (cast[4] or "")
end

function novelGameRecord()
    local entry = novelHere()
    local record = novelPathRecord()
    record["name"] = entry["name"]
    record["scene"] = novelAt["scene"]
    record["order"] = novelOrder(novelAt["scene"])
    return record
end

function novelSaveHeader()
    local said = novelLastSaid()
    local line = ""
    if said != not
        line = said["text"]
    end
    settings["kept"] = (settings["kept"] or 0) + 1
    return {form = NOVEL_SAVE_FORM, game = novelGame["name"], scene = novelAt["scene"], line = line, name = (said or novelHere())["name"], seconds = novelNow(), count = settings["kept"]}
end

function novelNow()
    if fastForward
        return 1700000000 + novelFrame
    end
    return os["time"]()
end

@@ Keeps the game in a slot; false when the disk did not take it. The old file stays as it was then.
function novelKeep(slot)
    local body = novelJson(novelSaveHeader()) + "\n" + novelJson(novelGameRecord()) + "\n"
    local kept = Vesper["replaceFile"](novelSavePath(slot), Vesper["checksum"](body) + "\n" + body)
    if kept
        novelKeepThumbnail(slot)
    end
    novelKeepRead()
    return kept
end

@@ What has been read outlives games: skipping goes by it.
function novelKeepRead()
    Vesper["replaceFile"](novelReadPath(), novelJson(novelRead) + "\n")
end

function novelTakeRead()
    local text = vesperContentsIfPresent(novelReadPath())
    if text != not
        local ok, names = pcall(Vesper["jsonDecode"], text)
        if ok and typeOf(names) == "table"
            novelRead = names
        end
    end
end

@@ State and header of a slot: "empty", "damaged", "good", or "old" for a page kept by its number.
function novelSlotState(slot)
    local text = vesperContentsIfPresent(novelSavePath(slot))
    if text == not
        return novelOldSlotState(slot)
    end
    local lines = novelSplit(text, "\n")
    if #lines != 4 or lines[1] != toString(Vesper["checksum"](lines[2] + "\n" + lines[3] + "\n"))
        return "damaged", not
    end
    local ok, header = pcall(Vesper["jsonDecode"], lines[2])
    if not ok or typeOf(header) != "table" or header["form"] != NOVEL_SAVE_FORM or typeOf(header["seconds"]) != "number" or typeOf(header["count"]) != "number" or typeOf(header["line"]) != "string" or typeOf(header["name"]) != "string"
        return "damaged", not
    end
    return "good", header
end

@@ Opens a slot and shows its page. The player is told why where that fails, and the game stays as it was.
function novelOpen(slot)
    local state, header = novelSlotState(slot)
    if state == "empty"
        novelTell(novelSay("Nothing has been saved here yet."))
        return false
    elseif state == "damaged"
        novelTell(novelSay("This save was changed after it was made, so it stays closed."))
        return false
    elseif state == "old"
        return novelOpenOld(slot)
    end
    local ok, record = pcall(Vesper["jsonDecode"], novelSplit(vesperContentsIfPresent(novelSavePath(slot)), "\n")[3])
    if not ok
        novelTell(novelSay("This save cannot be read."))
        return false
    end
    return novelResume(record)
end

@@ A table that was read, as an array.
function novelList(from)
    local list = []
    for n = 1, #(from or [])
        push(list, from[n])
    end
    return list
end

function novelResume(record)
    local ok, found = pcall(novelUnderstand, record)
    if not ok
        novelTell(novelSay("This save cannot be read."))
        return false
    end
    if found["position"] == not
        novelTell(novelSay("This page is no longer in the story. The save stays where it is."))
        return false
    end
    local here = pop(found["path"])
    novelPath = found["path"]
    novelVars = here["vars"]
    novelScene = here["stage"]
    novelHeard = []
    if found["exact"]
        novelAt = found["position"]
        novelNote()
    elseif not novelGoTo(found["position"])
        return false
    end
    if not found["exact"]
        novelTell(novelSay("The story was changed since. This is the nearest page."))
    end
    novelStopHurry()
    novelDropBox()
    novelPresent(12)
    novelRestCamera()
    novelFinishBox()
    return true
end

@@ All that a record says, before anything is changed by it. Raises where it makes no sense.
function novelUnderstand(record)
    local order = novelList(record["order"])
    for name in order
        assert(typeOf(name) == "string")
    end
    assert(typeOf(record["name"]) == "string" and typeOf(record["scene"]) == "string")
    local found = {path = []}
    found["position"], found["exact"] = novelFind(record["name"], record["scene"], order)
    local sets = novelList(record["sets"])
    for kept in novelList(record["path"])
        push(found["path"], novelRecordOf(kept, sets))
    end
    assert(#found["path"] > 0)
    return found
end

@@ A page of the kept way, found again in the story as it is now.
function novelRecordOf(kept, sets)
    for field in ["name", "scene", "who", "text", "place", "cast", "picked", "music"]
        assert(kept[field] == not or typeOf(kept[field]) == "string")
    end
    local vars = sets[kept["vars"]]
    for name, value in pairs(vars)
        assert(typeOf(value) != "table")
    end
    local position = novelFindName(kept["name"])
    local record = {name = kept["name"], scene = kept["scene"], at = 0, who = kept["who"], text = kept["text"], vars = vars}
    if position == not
        record["gone"] = true
    else
        record["name"] = novelEntryAt(position)["name"]
        record["scene"] = position["scene"]
        record["at"] = position["at"]
    end
    if kept["who"] == ""
        record["who"] = not
    end
    if kept["picked"] != not and kept["picked"] != ""
        record["picked"] = kept["picked"]
    end
    record["stage"] = {place = novelKnownPlace(kept["place"]), music = novelKnownMusic(kept["music"] or "", kept["place"]), cast = novelKnownCast(novelSplit(kept["cast"] or "", ","))}
    return record
end

@@ Places and people may have left the story; the player is told.
function novelKnownPlace(place)
    if place == not or place == "" or novelPlaces[place] != not
        return place or ""
    end
    novelTellMissing(novelReplace(novelSay("The place {name} is no longer in the story."), "{name}", place))
    return ""
end

@@ Music that has left the game gives way to what its place has now.
function novelKnownMusic(music, place)
    if music != "" and not novelIsThere(novelSoundPath(music, ".wav")) and not novelIsThere(novelSoundPath(music, ".ogg")) and novelPlaces[place or ""] != not
        return novelPlaces[place]["music"] or ""
    end
    return music
end

function novelKnownCast(cast)
    local known = ["", "", "", ""]
    for slot = 1, 4
        local name = cast[slot] or ""
        if name == "" or novelPeople[novelPersonOf(name)] != not
            known[slot] = name
        else
            novelTellMissing(novelReplace(novelSay("{name} is no longer in the story."), "{name}", name))
        end
    end
    return known
end

@@ The newest of all good saves, by time and count; nothing where there is none.
function novelNewest()
    local best = not
    local newest = {seconds = -1, count = -1}
    local slots = ["auto", "quick"]
    for number = 1, NOVEL_SLOTS
        push(slots, "" + number)
    end
    for slot in slots
        local state, header = novelSlotState(slot)
        if state == "good" and (header["seconds"] > newest["seconds"] or header["seconds"] == newest["seconds"] and header["count"] > newest["count"])
            best = slot
            newest = header
        elseif state == "old" and best == not
            best = slot
        end
    end
    return best
end

@@ At each choice, and whenever the story is left.
function novelAutosave()
    if novelAt != not and novelIsReading() and #novelPath > 0
        novelTakeThumbnail()
        if not novelKeep("auto")
            novelTell(novelSay("The game could not be saved."))
        end
        novelKeepSettings()
    end
end

@@ A new game does not take the place of the one before it.
function novelKeepOlderAutosave()
    local text = vesperContentsIfPresent(novelSavePath("auto"))
    if text != not
        Vesper["replaceFile"](novelSavePath("older"), text)
        local ok, picture = pcall(novelReadPicture, novelPicturePath("auto"))
        if ok
            pcall(Plush["saveImage"], novelPicturePath("older"), picture)
            vesperKillSurface(picture)
        end
    end
end

@@ Pages that were kept by number: the boot library's save, which is read and not run, and a record beside it.
function novelOldSlotState(slot)
    local number = toNumber(slot)
    if number == not or #novelFirstEdition == 0
        return "empty", not
    end
    local save = vesperContentsIfPresent(vesperSavePath(number * 2))
    if save == not
        return "empty", not
    end
    local sum = vesperContentsIfPresent(vesperSavePath(number * 2 + 1))
    local story = vesperContentsIfPresent(novelVolatile + "story" + slot + ".json")
    local storySum = vesperContentsIfPresent(novelVolatile + "story" + slot + ".json.sum")
    if story == not or sum != toString(Vesper["checksum"](save)) or storySum != toString(Vesper["checksum"](story))
        return "damaged", not
    end
    return "old", not
end

function novelOpenOld(slot)
    local save = vesperContentsIfPresent(vesperSavePath(toNumber(slot) * 2))
    local page = string["match"](save, "re:pagenum = ([0-9]+)")
    local ok, record = pcall(Vesper["jsonDecode"], vesperContentsIfPresent(novelVolatile + "story" + slot + ".json"))
    local name = novelFirstEdition[toNumber(page or "0")]
    if not ok or name == not
        novelTell(novelSay("This save cannot be read."))
        return false
    end
    local vars = {}
    for key, value in pairs(record)
        if string["sub"](key, 1, 6) == "chose "
            vars[string["sub"](key, 7)] = true
        end
    end
    local kept = {name = name, scene = record["scene"] or "", text = "", who = "", vars = 1, place = record["place"], cast = novelCastText([record["cast1"], record["cast2"], record["cast3"], record["cast4"]])}
    if novelPlaces[record["place"] or ""] != not
        kept["music"] = novelPlaces[record["place"]]["music"]
    end
    return novelResume({name = name, scene = record["scene"] or "", order = novelFirstEdition, sets = [vars], path = [kept]})
end
