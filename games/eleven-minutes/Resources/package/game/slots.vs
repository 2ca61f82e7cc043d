@@ Three places for kept pages, to write or to read.

function slotLabel(slot)
    local state = stateOfSlot(slot)
    if state == "empty"
        return slot + "   nothing yet"
    end
    if state == "damaged"
        return slot + "   a damaged page"
    end
    local record = Vesper["jsonDecode"](Vesper["contents"](storyPath(slot)))
    return slot + "   " + (sceneNames[record["scene"]] or "a page")
end

function showSlots(head, act)
    holdQueue()
    menuHead(head)
    local list = []
    for slot = 1, SLOT_COUNT
        push(list, {say = slotLabel(slot), slot = slot, act = act})
    end
    push(list, {say = "Back", act = backToMenu})
    showItems(list, "choice", CHOICE_WIDE, (VESPER_SCREEN_X - CHOICE_WIDE) \ 2, 160)
end

function openSaving(item)
    showSlots("Keep this page", saveInto)
    mode = VESPER_MENU_SAVE
end

function openLoading(item)
    showSlots("Another page", loadFrom)
    mode = VESPER_GAME_LOAD
end

function saveInto(item)
    keepGame(item["slot"])
    openSaving()
    focusOn(item["slot"])
end

function loadFrom(item)
    if not openGame(item["slot"])
        openLoading()
        focusOn(item["slot"])
    end
end
