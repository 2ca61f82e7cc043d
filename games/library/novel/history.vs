@@ What was said, and the way back to it: a picked page is gone back to, with the variables of that moment.

NOVEL_HISTORY_TOP = 96
NOVEL_HISTORY_LOW = 470

function novelOpeners["history"]()
    novelHistoryAt = #novelPath
    novelLayOutHistory()
end

@@ The page that is picked stands lowest, as many as fit above it.
function novelLayOutHistory()
    novelClearScreen()
    novelPut(novelMakePanel(904, 404, "note"), 28, 86)
    novelHead(novelSay("History"))
    local y = NOVEL_HISTORY_LOW
    local number = novelHistoryAt
    while number >= 1
        local high = novelPutRecord(number, y)
        if high == 0
            break
        end
        y -= high
        number -= 1
    end
    novelPutText(novelSay("Enter or a click goes back to the marked page"), "small", "dim", VESPER_SCREEN_X \ 2, 500, "middle")
end

function novelRecordText(record)
    local position = novelLines[record["name"]]
    local text = record["text"]
    if position != not and not record["gone"]
        local entry = novelEntryAt(position)
        text = novelTextOf(entry)
        if entry["runes"] != not
            text = "“" + entry["runes"] + "”"
        end
    end
    if record["picked"] != not
        text += "  →  " + novelTranslated(record["name"] + "/" + novelFingerprint(record["picked"]), record["picked"])
    end
    return text
end

@@ Puts a record with its foot at y; its height, or 0 when it does not fit.
function novelPutRecord(number, y)
    local record = novelPath[number]
    local text, lines = novelWrap(novelRecordText(record), "small", 620)
    local high = lines * novelLineHeight("small") + 12
    if y - high < NOVEL_HISTORY_TOP
        return 0
    end
    local ink = "paper"
    if number == novelHistoryAt
        novelPut(novelMakePanel(880, high - 2, "lit"), 40, y - high - 2)
    elseif record["gone"]
        ink = "dim"
    end
    if record["who"] != not and novelPeople[record["who"]] != not
        novelPutText(novelPersonName(record["who"]), "small", novelPeople[record["who"]]["ink"] or "gold", 232, y - high + 2, "right")
    end
    novelPutText(text, "small", ink, 256, y - high + 2, "left")
    return high
end

function novelSteppers["history"]()
    local step = 0
    if novelPressed["up"] or novelPressed["wheelUp"]
        step = -1
    elseif novelPressed["pageUp"] or novelPressed["left"]
        step = -5
    elseif novelPressed["down"] or novelPressed["wheelDown"]
        step = 1
    elseif novelPressed["pageDown"] or novelPressed["right"]
        step = 5
    elseif novelPressed["first"]
        step = -#novelPath
    elseif novelPressed["last"]
        step = #novelPath
    end
    if novelPressed["menu"] or novelPressed["history"] or step > 0 and novelHistoryAt == #novelPath
        novelBack()
    elseif step != 0
        novelHistoryAt = Vesper["clamp"](novelHistoryAt + step, 1, #novelPath)
        novelLayOutHistory()
    elseif novelPressed["go"] or novelPressed["click"]
        if novelHistoryAt == #novelPath
            novelBack()
        else
            novelReturnTo(novelHistoryAt)
        end
    end
end
