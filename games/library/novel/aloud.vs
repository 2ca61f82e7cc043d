@@ What is shown as words to be read aloud or copied. While the setting is on, whatever changes is said: the page, the
@@ screen, the item under the arrow or the mouse, notes. A key says all of it once more.

NOVEL_ALOUD_BASE = 36
NOVEL_ALOUD_EACH = 2.2
novelShownWords = []
novelSaidHead = ""
novelSaidItem = ""
novelSpeaking = false
novelMuteTold = false

@@ Parts one after the other, with a stop behind those that have none.
function novelJoinWords(parts)
    local text = ""
    for part in parts
        if part != ""
            if text != ""
                text += "\n"
            end
            text += novelReplace(part, "\n", " ")
            if not string["find"](text, "re:[.,:;!?…”]$")
                text += "."
            end
        end
    end
    return text
end

@@ Of a page its speaker, its words and what may be picked; of other screens what stands on them beside their items.
function novelHeadWords()
    if novelScreen == "history"
        return novelSay("History")
    elseif novelScreen != "read"
        return novelJoinWords(novelShownWords)
    end
    local entry = novelHere()
    local text = novelTextOf(entry)
    if entry["runes"] != not
        text = novelSay("A line in old letters")
    elseif entry["who"] != not and text != ""
        text = novelPersonName(entry["who"]) + ": " + text
    end
    local parts = [text]
    if entry["choice"] != not
        for i, option in ipairs(novelOptions(entry))
            push(parts, "" + i + ": " + novelOptionText(entry, option))
        end
    end
    return novelJoinWords(parts)
end

@@ What is picked: an item, a page of the history, or a word of the row below the box.
function novelItemWords()
    if novelScreen == "history"
        local record = novelPath[novelHistoryAt]
        local said = novelRecordText(record)
        if record["who"] != not and novelPeople[record["who"]] != not
            said = novelPersonName(record["who"]) + ": " + said
        end
        return said
    elseif novelScreen == "read" and novelBarUnder > 0
        return novelSay(NOVEL_BAR[novelBarUnder][1])
    end
    local item = novelItems[novelFocus]
    if item == not
        return ""
    elseif item["aloud"] != not
        return item["aloud"]
    elseif item["value"] != not
        return item["say"] + ": " + item["value"]
    end
    return item["say"] or ""
end

@@ V and C, wherever the player is. They are no presses for the screen.
function novelAloudKeys()
    if novelPressed["aloud"]
        novelPressed["aloud"] = false
        novelUtter(novelJoinWords([novelHeadWords(), novelItemWords()]))
    end
    if novelPressed["copy"]
        novelPressed["copy"] = false
        novelCopyShown()
    end
end

@@ Says what has changed since it was last asked. What is skipped is not said.
function novelStepAloud()
    if not settings["readAloud"] or novelMaySkip()
        return not
    end
    local parts = []
    for note in novelNotes
        if not note["said"]
            note["said"] = true
            push(parts, note["text"])
        end
    end
    local head = novelHeadWords()
    local item = novelItemWords()
    if head != novelSaidHead
        push(parts, head)
        push(parts, item)
    elseif item != novelSaidItem
        push(parts, item)
    end
    novelSaidHead = head
    novelSaidItem = item
    local words = novelJoinWords(parts)
    if words != ""
        novelUtter(words)
    end
end

@@ A system without a speaker is told of once.
function novelUtter(words)
    novelSpeaking = true
    if (Metal["speak"] == not or not Metal["speak"](words, novelLanguage)) and not novelMuteTold
        novelMuteTold = true
        novelTell(novelSay("Nothing here can read aloud. C copies the words instead."))
    end
end

function novelHush()
    if novelSpeaking and Metal["speak"] != not
        Metal["speak"]("")
    end
    novelSpeaking = false
end

function novelCopyShown()
    if Metal["copyText"] != not and Metal["copyText"](novelJoinWords([novelHeadWords(), novelItemWords()]))
        novelTell(novelSay("Copied."))
    else
        novelTell(novelSay("The words could not be copied."))
    end
end

@@ How long a page takes to say, in frames: pages that turn by themselves wait for it.
function novelAloudFrames()
    if settings["readAloud"]
        return math["floor"](NOVEL_ALOUD_BASE + Vesper["utf8lenSafe"](novelHeadWords()) * NOVEL_ALOUD_EACH)
    end
    return 0
end
