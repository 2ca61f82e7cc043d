@@ Makes, merges and checks the tables of translations.
@@   vesper run games/library/translate.vs GAME LANGUAGE      games/GAME/Resources/package/translations/LANGUAGE.po
@@   vesper run games/library/translate.vs menus LANGUAGE     the words of the library's own menus
@@ A third argument is a folder that holds another `games`.
@@ What a table holds already is kept: moved lines whole, reworded ones as fuzzy, lines that are gone with #~.

for part in ["text", "po", "story", "reader", "translation", "settings", "box", "slots"]
    runFile("novel/" + part + ".vs")
end

@@ Nothing of these is translated.
function Novel["firstEdition"](names)
end

function Novel["weather"](kind, how)
end

wanted = []

function want(context, text, note)
    if text != not and text != ""
        push(wanted, {context = context, id = text, str = "", fuzzy = false, notes = ["#. " + note]})
    end
end

function wantStory()
    for who, person in pairs(novelPeople)
        want("person " + who, person["name"], "a name")
    end
    for scene in novelScenes
        for at, entry in ipairs(novelEntries[scene])
            local note = scene + " " + at
            if entry["who"] != not
                note += ", " + novelPeople[entry["who"]]["name"]
            end
            want(entry["name"], entry["text"], note)
            for option in entry["choice"] or []
                want(entry["name"] + "/" + novelFingerprint(option["text"]), option["text"], note + ", a choice")
            end
        end
    end
    for name, ending in pairs(novelEndings)
        want("ending " + name, ending["title"], "the ending " + name)
        want("ending " + name + " line", ending["line"], "the ending " + name)
    end
    for part in ["title", "credits"]
        for line in gameCards[part] or []
            want("card " + line["text"], line["text"], part)
        end
    end
end

function wantMenus()
    local words = []
    for part in ["saves", "notices", "sound", "drawing", "stage", "box", "items", "screens", "reading", "slots", "options", "history", "cards", "aloud", "loop", "settings"]
        local source = readSource("novel/" + part + ".vs")
        for word in string["gmatch"](source, "re:(?:novelSay|novelChoiceItem|novelSwitchItem|novelVolumeItem)\\(\"([^\"]+)\"")
            push(words, word)
        end
    end
    for list in [NOVEL_TEXT_SIZES, NOVEL_TEXT_SPEEDS, NOVEL_AUTO_SPEEDS, NOVEL_SCALINGS, NOVEL_BOXES, values(NOVEL_SLOT_NAMES)]
        for word in list
            push(words, word)
        end
    end
    for pair in NOVEL_BAR
        push(words, pair[1])
    end
    table["sort"](words)
    for i, word in ipairs(words)
        if i == 1 or word != words[i - 1]
            push(wanted, {context = "menu", id = word, str = "", fuzzy = false, notes = []})
        end
    end
end

function readSource(path)
    local file = io["open"](root + "games/library/" + path)
    local text = file["read"]("*a")
    file["close"]()
    return text
end

function words(text)
    local found = {}
    for word in string["gmatch"](string["lower"](text), "re:[^ .,;:!?]+")
        found[word] = true
    end
    return found
end

@@ Share of the words that two texts have in common.
function likeness(one, other)
    local first = words(one)
    local second = words(other)
    local common = 0
    for word, is in pairs(first)
        if second[word]
            common += 1
        end
    end
    return common / math["max"](#keys(first), #keys(second), 1)
end

function takeFrom(entry, old, fuzzy)
    entry["str"] = old["str"]
    entry["fuzzy"] = old["fuzzy"] or fuzzy
    if fuzzy
        entry["old"] = old["id"]
    else
        entry["old"] = old["old"]
    end
    old["used"] = true
end

@@ The old entry of an entry: of its name and words, of its words, of its name, of words much like it.
function findOld(entry, entries)
    for old in entries
        if not old["used"] and old["context"] == entry["context"] and old["id"] == entry["id"]
            return old, false
        end
    end
    for old in entries
        if not old["used"] and old["id"] == entry["id"] and old["str"] != ""
            return old, false
        end
    end
    for old in entries
        if not old["used"] and entry["context"] != "menu" and old["context"] == entry["context"]
            return old, true
        end
    end
    return not, false
end

function findLike(entry, entries)
    local best = not
    local most = 0.6
    for old in entries
        if not old["used"] and old["str"] != "" and entry["context"] != "menu"
            local alike = likeness(old["id"], entry["id"])
            if alike >= most
                most = alike
                best = old
            end
        end
    end
    return best
end

function poEntry(entry, mark)
    local out = ""
    for note in entry["notes"]
        out += note + "\n"
    end
    if entry["fuzzy"]
        out += mark + "#, fuzzy\n"
    end
    if entry["old"] != not and mark == ""
        out += "#| msgid \"" + novelEscaped(entry["old"]) + "\"\n"
    end
    if entry["context"] != ""
        out += mark + "msgctxt \"" + novelEscaped(entry["context"]) + "\"\n"
    end
    return out + mark + "msgid \"" + novelEscaped(entry["id"]) + "\"\n" + mark + "msgstr \"" + novelEscaped(entry["str"]) + "\"\n\n"
end

@@ What {stands in braces} has to stand in the translation as well.
function checkEntry(entry)
    for name in string["gmatch"](entry["id"], "re:\\{[a-zA-Z0-9_]+\\}")
        if entry["str"] != "" and string["find"](entry["str"], name, 1, true) == not
            print(entry["context"] + ": " + name + " is missing")
        end
    end
end

function merge(path, language)
    local file = io["open"](path)
    local entries = []
    local faults = []
    if file
        entries, faults = novelReadPo(file["read"]("*a"))
        file["close"]()
    end
    for fault in faults
        print(path + ": " + fault)
    end
    if #faults > 0
        error("the table is damaged and stays as it is")
    end
    local out = "msgid \"\"\nmsgstr \"\"\n\"Language: " + language + "\\n\"\n\"Content-Type: text/plain; charset=UTF-8\\n\"\n\n"
    for entry in wanted
        local old, reworded = findOld(entry, entries)
        if old != not
            takeFrom(entry, old, reworded)
        end
    end
    local counts = {done = 0, fuzzy = 0, missing = 0, gone = 0}
    for entry in wanted
        if entry["str"] == ""
            local like = findLike(entry, entries)
            if like != not
                takeFrom(entry, like, true)
            end
        end
        checkEntry(entry)
        out += poEntry(entry, "")
        count(counts, entry)
    end
    for old in entries
        if not old["used"] and old["str"] != "" and old["id"] != ""
            old["notes"] = []
            out += poEntry(old, "#~ ")
            counts["gone"] += 1
        end
    end
    file = io["open"](path, "w")
    file["write"](out)
    file["close"]()
    print(path + ": " + counts["done"] + " translated, " + counts["fuzzy"] + " fuzzy, " + counts["missing"] + " missing, " + counts["gone"] + " gone")
end

function count(counts, entry)
    if entry["str"] == ""
        counts["missing"] += 1
    elseif entry["fuzzy"]
        counts["fuzzy"] += 1
    else
        counts["done"] += 1
    end
end

if #arguments < 2
    error("vesper run games/library/translate.vs GAME|menus LANGUAGE [FOLDER]")
end
root = ""
if arguments[3] != not
    root = arguments[3] + "/"
end
if arguments[1] == "menus"
    wantMenus()
    merge(root + "games/library/novel/words/" + arguments[2] + ".po", arguments[2])
else
    append = root + "games/" + arguments[1] + "/Resources/package"
    runFile(append + "/story/story.vs")
    wantStory()
    merge(append + "/translations/" + arguments[2] + ".po", arguments[2])
end
