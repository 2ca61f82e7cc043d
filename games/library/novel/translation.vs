@@ The story in other languages. A line is looked for by its name, then by its words; what has no translation
@@ stays as it was written. The first language of the list is the one that the story is written in.

novelLanguages = [["en", "English"]]
novelLanguage = "en"
novelByName = {}
novelByWords = {}

@@ Pairs of a code, which is the name of the tables, and the language's own name for itself.
function Novel["languages"](languages)
    novelLanguages = languages
    novelLanguage = languages[1][1]
end

function novelTakeTable(path)
    local text = vesperContentsIfPresent(path)
    if text == not
        return not
    end
    local entries, faults = novelReadPo(text)
    for entry in entries
        if entry["str"] != "" and not entry["given"] and entry["id"] != not
            novelByName[entry["context"] + "|"] = entry["str"]
            novelByWords[entry["id"]] = entry["str"]
            if entry["context"] == "menu"
                novelByName["menu|" + entry["id"]] = entry["str"]
            end
        end
    end
    if #faults > 0
        novelTell("The translation " + path + " is damaged: " + faults[1])
    end
end

@@ The library has the words of its menus in some languages; a game's table goes before them.
function novelSetLanguage(code)
    novelByName = {}
    novelByWords = {}
    novelLanguage = code
    novelTakeTable(novelFolder + "words/" + code + ".po")
    if code != novelLanguages[1][1]
        novelTakeTable(append + "/translations/" + code + ".po")
    end
end

@@ A text of the game, under its name.
function novelTranslated(name, text)
    return novelByName[name + "|"] or novelByWords[text] or text
end

@@ A word of the menus.
function novelSay(text)
    return novelByName["menu|" + text] or text
end

@@ With {name} for what the story remembers.
function novelFilled(text)
    if string["find"](text, "{", 1, true) == not
        return text
    end
    for name, value in pairs(novelVars)
        text = novelReplace(text, "{" + name + "}", "" + value)
    end
    return text
end

function novelTextOf(entry)
    if entry["text"] == not
        return ""
    end
    return novelFilled(novelTranslated(entry["name"], entry["text"]))
end

function novelOptionText(entry, option)
    return novelFilled(novelTranslated(entry["name"] + "/" + novelFingerprint(option["text"]), option["text"]))
end

function novelPersonName(who)
    return novelTranslated("person " + who, novelPeople[who]["name"])
end
