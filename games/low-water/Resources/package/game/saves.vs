@@ One night is kept, as JSON with its checksum. It is kept whenever a lamp comes home, and from the pause.

function savePath()
    return volatileFolder + "night.json"
end

function quoted(text)
    return "\"" + text + "\""
end

@@ Names and numbers only: nothing in a night's words needs an escape but quotes, which they have none of.
function jsonOf(value)
    if typeOf(value) == "string"
        return quoted(value)
    elseif typeOf(value) == "table"
        local parts = []
        for key, inner in pairs(value)
            push(parts, quoted("" + key) + ": " + jsonOf(inner))
        end
        return "{" + table["concat"](parts, ", ") + "}"
    end
    return "" + value
end

function nightText()
    local record = {seed = night["seed"], place = place["name"], x = playerX, y = playerY, turn = playerTurn, told = night["told"], families = night["families"], years = night["years"], picks = night["picks"]}
    record["lantern"] = lanternLit
    record["home"] = table["concat"](night["home"], " ")
    record["stones"] = table["concat"](night["stones"], "|")
    record["seen"] = {}
    for name, chart in pairs(charts)
        record["seen"][name] = seenText(name)
    end
    record["lamps"] = {}
    for lamp in lampStates
        record["lamps"][lamp["name"]] = lamp["state"]
    end
    for i, name in ipairs(night["home"])
        record["lamps"][name] = "home"
    end
    return jsonOf(record)
end

function keepNight()
    local text = nightText()
    local kept = Vesper["replaceFile"](savePath(), text) and Vesper["replaceFile"](savePath() + ".sum", toString(Vesper["checksum"](text)))
    if not kept
        tell("The night could not be kept.")
    end
    return kept
end

@@ "empty", "damaged" or "good".
function stateOfSave()
    if not isThere(savePath()) or not isThere(savePath() + ".sum")
        return "empty"
    end
    if toString(Vesper["checksum"](Vesper["contents"](savePath()))) == Vesper["contents"](savePath() + ".sum")
        return "good"
    end
    return "damaged"
end

function loadNight()
    local good, record = pcall(Vesper["jsonDecode"], Vesper["contents"](savePath()))
    if not good or places[record["place"]] == not and record["place"] != "vaults"
        return false
    end
    night = {seed = record["seed"], families = record["families"], years = record["years"], picks = record["picks"], told = record["told"], rung = false}
    night["home"] = string["gmatch"](record["home"], "%a+")
    night["stones"] = string["gmatch"](record["stones"], "re:[^|]+")
    prepareNight()
    for name, text in pairs(record["seen"])
        restoreSeen(name, text)
    end
    for i, name in ipairs(night["home"])
        lightHome(LAMP_HOMES[name], name)
    end
    wakeLamps(record["lamps"])
    lanternLit = record["lantern"]
    arriveAt(record["place"], [record["x"], record["y"], record["turn"]])
    return true
end
