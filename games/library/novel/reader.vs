@@ Where the reader is, what the story remembers, and the way that led there. Nothing here draws or sounds.

novelAt = not
novelVars = {}
novelPath = []
novelScene = {place = "", cast = ["", "", "", ""], music = ""}
novelRead = {}
novelHeard = []
NOVEL_PATH_LENGTH = 300
NOVEL_STEPS = 10000

@@ Snapshots share what did not change, so a change makes a new table.
function novelSet(name, value)
    novelVars = novelCopy(novelVars)
    novelVars[name] = value
end

@@ `sets` is a name that becomes true, or a table of names and values.
function novelRemember(sets, adds)
    if typeOf(sets) == "string"
        novelSet(sets, true)
    elseif sets != not
        for name, value in pairs(sets)
            novelSet(name, value)
        end
    end
    if adds != not
        for name, value in pairs(adds)
            novelSet(name, (novelVars[name] or 0) + value)
        end
    end
end

@@ A name that is true, a list of such names, or a table of names and values: numbers hold from that value up.
function novelHolds(wanted)
    if typeOf(wanted) == "string"
        return novelIsTrue(novelVars[wanted])
    end
    for name, value in pairs(wanted)
        if typeOf(name) == "number"
            if not novelIsTrue(novelVars[value])
                return false
            end
        elseif typeOf(value) == "number"
            if (novelVars[name] or 0) < value
                return false
            end
        elseif (novelVars[name] or false) != value
            return false
        end
    end
    return true
end

function novelIsTrue(value)
    return value != not and value != false and value != 0
end

function novelCounts(entry)
    if entry["when"] != not and not novelHolds(entry["when"])
        return false
    end
    return entry["unless"] == not or not novelHolds(entry["unless"])
end

function novelOptions(entry)
    local open = []
    for option in entry["choice"]
        if novelCounts(option)
            push(open, option)
        end
    end
    return open
end

@@ Goes on from a position to the first page that counts, and leaves what stands on the way done: its place, its
@@ people, what it sets. True when there is one; behind the last entry there is none.
function novelSeek(position)
    novelHeard = []
    for step = 1, NOVEL_STEPS
        if position == not or novelEntryAt(position) == not
            return false
        end
        local entry = novelEntryAt(position)
        if novelCounts(entry)
            novelPass(entry)
            if novelShows(entry)
                novelAt = position
                return true
            end
        end
        position = novelAfter(position)
    end
    error("Novel: the story goes round in circles at " + position["scene"] + ", entry " + position["at"])
end

function novelPass(entry)
    local scene = novelCopy(novelScene)
    if entry["place"] != not
        scene["place"] = entry["place"]
        scene["music"] = novelPlaces[entry["place"]]["music"] or scene["music"]
    end
    if entry["cast"] != not
        scene["cast"] = entry["cast"]
    end
    if entry["music"] != not
        scene["music"] = entry["music"]
    end
    novelScene = scene
    if entry["sound"] != not
        push(novelHeard, entry["sound"])
    end
    novelRemember(entry["set"], entry["add"])
    if entry["act"] != not
        entry["act"](entry)
    end
end

function novelAfter(position)
    local entry = novelEntryAt(position)
    if entry["go"] != not and novelCounts(entry)
        return novelTarget(entry["go"])
    end
    return novelBehind(position)
end

@@ One more page of the way. The record holds all that it takes to come back to it.
function novelNote()
    local entry = novelEntryAt(novelAt)
    push(novelPath, {name = entry["name"], scene = novelAt["scene"], at = novelAt["at"], who = entry["who"], text = entry["text"] or "", vars = novelVars, stage = novelScene})
    if #novelPath > NOVEL_PATH_LENGTH
        erase(novelPath, 1)
    end
end

function novelStart()
    novelVars = {}
    novelPath = []
    novelScene = {place = "", cast = ["", "", "", ""], music = ""}
    return novelGoTo({scene = novelScenes[1], at = 1})
end

function novelGoTo(position)
    local found = novelSeek(position)
    if found
        novelNote()
    end
    return found
end

function novelGoOn()
    return novelGoTo(novelAfter(novelAt))
end

function novelChoose(option)
    novelPath[#novelPath]["picked"] = option["text"]
    novelRemember(option["set"], option["add"])
    if option["go"] != not
        return novelGoTo(novelTarget(option["go"]))
    end
    return novelGoTo(novelBehind(novelAt))
end

@@ Back to a page of the way, with the variables of that moment. False when an edit took the page away.
function novelBackTo(number)
    local record = novelPath[number]
    if record == not or record["gone"]
        return false
    end
    novelAt = {scene = record["scene"], at = record["at"]}
    novelVars = record["vars"]
    novelScene = record["stage"]
    novelHeard = []
    record["picked"] = not
    while #novelPath > number
        pop(novelPath)
    end
    return true
end

@@ The nearest page before this one that is still there; 0 where there is none.
function novelPageBefore()
    for number = #novelPath - 1, 1, -1
        if not novelPath[number]["gone"]
            return number
        end
    end
    return 0
end

function novelHere()
    return novelEntryAt(novelAt)
end

function novelWasRead()
    return novelRead[novelHere()["name"]] == true
end
