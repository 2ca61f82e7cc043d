@@ The story as data: scenes of entries, in the order in which they are given, and the names of their lines.

novelScenes = []
novelEntries = {}
novelMarks = {}
novelLines = {}
novelPrints = {}
novelPeople = {}
novelPlaces = {}
novelEndings = {}

@@ What makes an entry a page.
function novelShows(entry)
    return entry["text"] != not or entry["runes"] != not or entry["choice"] != not or entry["ending"] != not
end

@@ The words by which an entry is known while it has no name of its own.
function novelWords(entry)
    local words = (entry["who"] or "") + "|" + (entry["text"] or entry["runes"] or entry["ending"] or "")
    if entry["text"] == not and entry["choice"] != not
        for option in entry["choice"]
            words += "|" + option["text"]
        end
    end
    return words
end

@@ Scene and fingerprint, counted where a scene says a thing twice; or the author's own name with a # in front,
@@ which outlives a change of the words.
function novelName(scene, entry, times)
    if entry["id"] != not
        return "#" + entry["id"]
    end
    local print = novelFingerprint(novelWords(entry))
    times[print] = (times[print] or 0) + 1
    if times[print] > 1
        print += "." + times[print]
    end
    return scene + "." + print
end

@@ The words of a page alone, wherever it stands.
function novelPrintOf(name)
    if name[1] == "#"
        return name
    end
    return string["match"](name, "re:([^.]+)(?:\\.[0-9]+)?$")
end

function Novel["scene"](scene, entries)
    if novelEntries[scene] != not
        error("Novel: the scene " + scene + " is given twice")
    end
    push(novelScenes, scene)
    novelEntries[scene] = entries
    local times = {}
    for at, entry in ipairs(entries)
        if entry["mark"] != not
            novelMarks[entry["mark"]] = {scene = scene, at = at}
        end
        if novelShows(entry)
            local name = novelName(scene, entry, times)
            if novelLines[name] != not
                error("Novel: the line " + name + " is given twice")
            end
            entry["name"] = name
            novelLines[name] = {scene = scene, at = at}
            local print = novelPrintOf(name)
            novelPrints[print] = novelPrints[print] or []
            push(novelPrints[print], name)
        end
    end
end

function Novel["people"](people)
    novelPeople = people
end

function Novel["places"](places)
    novelPlaces = places
end

function Novel["endings"](endings)
    novelEndings = endings
end

function novelEntryAt(position)
    local entries = novelEntries[position["scene"]]
    if entries == not
        return not
    end
    return entries[position["at"]]
end

@@ The position behind one, in the next scene where this one ends; nothing behind the last.
function novelBehind(position)
    local scene = position["scene"]
    if position["at"] < #novelEntries[scene]
        return {scene = scene, at = position["at"] + 1}
    end
    for i, name in ipairs(novelScenes)
        if name == scene and i < #novelScenes
            return {scene = novelScenes[i + 1], at = 1}
        end
    end
    return not
end

@@ Where `go` leads: a mark, or the first entry of a scene.
function novelTarget(name)
    if novelMarks[name] != not
        return novelMarks[name]
    end
    if novelEntries[name] != not
        return {scene = name, at = 1}
    end
    return not
end

@@ The names of a scene's pages in their order.
function novelOrder(scene)
    local names = []
    for entry in novelEntries[scene] or []
        if entry["name"] != not
            push(names, entry["name"])
        end
    end
    return names
end

@@ Mistakes of the author that would show up hours into the story, all at once.
function novelFaults()
    local faults = []
    for scene in novelScenes
        for at, entry in ipairs(novelEntries[scene])
            local where = "scene " + scene + ", entry " + at + ": "
            novelFaultIf(faults, entry["go"] != not and novelTarget(entry["go"]) == not, where + "go leads nowhere: " + (entry["go"] or ""))
            novelFaultIf(faults, entry["who"] != not and novelPeople[entry["who"]] == not, where + "nobody is called " + (entry["who"] or ""))
            novelFaultIf(faults, entry["place"] != not and novelPlaces[entry["place"]] == not, where + "there is no place " + (entry["place"] or ""))
            novelFaultIf(faults, entry["ending"] != not and novelEndings[entry["ending"]] == not, where + "there is no ending " + (entry["ending"] or ""))
            for option in entry["choice"] or []
                novelFaultIf(faults, option["go"] != not and novelTarget(option["go"]) == not, where + "a choice leads nowhere: " + (option["go"] or ""))
            end
            for who in entry["cast"] or []
                novelFaultIf(faults, who != "" and novelPeople[novelPersonOf(who)] == not, where + "nobody is called " + who)
            end
        end
    end
    return faults
end

function novelFaultIf(faults, wrong, text)
    if wrong
        push(faults, text)
    end
end

@@ Of "tansy:worried" the person, and the face or nothing.
function novelPersonOf(name)
    local colon = string["find"](name, ":", 1, true)
    if colon == not
        return name
    end
    return string["sub"](name, 1, colon - 1)
end

function novelFaceOf(name)
    local colon = string["find"](name, ":", 1, true)
    if colon == not
        return not
    end
    return string["sub"](name, colon + 1)
end
