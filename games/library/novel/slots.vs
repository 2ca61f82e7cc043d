@@ Pages of slots, to save to or to load from. The first page holds what was saved by itself.

NOVEL_SLOTS = 24
NOVEL_SLOTS_A_PAGE = 6
NOVEL_SLOT_NAMES = {auto = "Autosave", quick = "Quick save", older = "The game before"}
novelSlotPage = 1
novelSaving = false

function novelSlotsOf(page)
    if page == 0
        return ["auto", "quick", "older"]
    end
    local slots = []
    for n = 1, NOVEL_SLOTS_A_PAGE
        push(slots, "" + ((page - 1) * NOVEL_SLOTS_A_PAGE + n))
    end
    return slots
end

function novelSlotName(slot)
    if NOVEL_SLOT_NAMES[slot] != not
        return novelSay(NOVEL_SLOT_NAMES[slot])
    end
    return slot
end

function novelOpeners["slots"]()
    local head = novelSay("Load")
    if novelSaving
        head = novelSay("Save")
    end
    novelPutText(head, "head", "gold", VESPER_SCREEN_X \ 2, 14, "middle")
    for i, slot in ipairs(novelSlotsOf(novelSlotPage))
        novelAddSlot(slot, 42 + (i - 1) % 3 * 298, 72 + (i - 1) \ 3 * 206)
    end
    novelAddSlotPages()
    novelRow = 3
end

function novelAddSlot(slot, x, y)
    local state, header = novelSlotState(slot)
    local item = {x = x, y = y, w = 280, h = 196, slot = slot, state = state, act = novelTakeSlot, marks = []}
    local said = novelSay("empty")
    local line = ""
    if state == "damaged"
        said = novelSay("damaged")
    elseif state == "old"
        said = novelSay("from an earlier version")
    elseif state == "good"
        said = novelDate(header["seconds"] + novelZone())
        line = novelShortened(novelTranslated(header["name"], header["line"]), 38 - 4 * settings["textSize"])
    end
    item["aloud"] = novelJoinWords([novelSlotName(slot), said, line])
    novelMarkLine(item, novelSlotName(slot), "paper", 116)
    novelMarkLine(item, said, "gold", 140)
    novelMarkLine(item, line, "paper", 164)
    novelMark(item, novelSlotPicture(slot, state), 44, 7)
    novelAddItem(item)
end

function novelMarkLine(item, text, ink, y)
    local picture = novelTextPicture(text, "small", ink)
    novelMark(item, picture, 14, y)
end

function novelSlotPicture(slot, state)
    if state != "good" or not novelIsThere(novelPicturePath(slot))
        return not
    end
    local ok, picture = pcall(novelReadThumbnail, novelPicturePath(slot))
    if not ok
        return not
    end
    return picture
end

function novelAddSlotPages()
    local first = 0
    local pages = NOVEL_SLOTS \ NOVEL_SLOTS_A_PAGE
    if novelSaving
        first = 1
    end
    local x = 42
    for page = first, pages
        local label = "" + page
        local aloud = novelReplace(novelSay("Page {name}"), "{name}", label)
        local width = 60
        if page == 0
            label = novelSay("Automatic")
            aloud = label
            width = novelWidthFor([label], 60)
        end
        if page == novelSlotPage
            label = "· " + label + " ·"
            width += 20
        end
        novelAddItem({say = label, aloud = aloud, x = x, y = 488, w = width, page = page, act = novelTurnSlots})
        x += width + 10
    end
    local back = novelSay("Back")
    local wide = novelWidthFor([back], 140)
    novelAddItem({say = back, x = 918 - wide, y = 488, w = wide, act = novelBack})
end

function novelTurnSlots(item)
    novelSlotPage = item["page"]
    novelShowAgain()
end

function novelSteppers["slots"]()
    local pages = NOVEL_SLOTS \ NOVEL_SLOTS_A_PAGE
    if novelPressed["pageDown"] and novelSlotPage < pages
        novelTurnSlots({page = novelSlotPage + 1})
    elseif novelPressed["pageUp"] and (novelSlotPage > 1 or novelSlotPage == 1 and not novelSaving)
        novelTurnSlots({page = novelSlotPage - 1})
    else
        novelStepMenu()
    end
end

@@ Anything that is there, damaged or not, is asked about before it is overwritten.
function novelTakeSlot(item)
    if not novelSaving
        novelLoadSlot(item["slot"])
    elseif item["state"] == "empty"
        novelSaveSlot(item["slot"])
    else
        novelAsk(novelReplace(novelSay("Overwrite save {name}?"), "{name}", item["slot"]), novelSaveSlot, item["slot"])
    end
end

function novelSaveSlot(slot)
    novelTellKept(novelKeep(slot), novelReplace(novelSay("Save {name}"), "{name}", slot))
    novelKeepSettings()
    novelShowAgain()
end

function novelTellKept(kept, name)
    if kept
        novelTell(name + ": " + novelSay("saved."))
    else
        novelTell(novelSay("The game could not be saved."))
    end
end

@@ Only what would be lost is asked about: the autosave keeps the page that is left.
function novelLoadSlot(slot)
    if novelIsReading() and slot != "auto"
        novelAutosave()
    end
    novelOpen(slot)
end

function novelQuickLoad()
    local state = novelSlotState("quick")
    if state == "good"
        novelAsk(novelSay("Load the quick save?"), novelLoadSlot, "quick")
    else
        novelOpen("quick")
    end
end
