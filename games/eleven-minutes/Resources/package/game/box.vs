@@ The box at the foot of the picture: a name, the words that slide in, and a hint that there is more.

BOX_X = 60
BOX_Y = 392
BOX_WIDE = 840
BOX_HIGH = 132
PLATE_X = 84
PLATE_Y = 370
PLATE_WIDE = 196
WORDS_X = 92
WORDS_Y = 418
WORDS_WIDE = 776
CHOICE_WIDE = 440
CHOICE_LOW = 330

function showBox(page)
    hideItems()
    VESPER_SLIDE_PROGRESS = {}
    VESPER_SLIDE_TEXT = {}
    putEntry(PANEL_AT, imageEntry("panel", picturePath(uiFolder, "box.png"), VESPER_LAYER_SUPERGROUND, BOX_X, BOX_Y))
    putEntry(PLATE_AT, nothingThere())
    putEntry(NAME_AT, nothingThere())
    putEntry(HINT_AT, nothingThere())
    if page["runes"] != not
        putEntry(WORDS_AT, textEntry("words", inRunes(page["runes"]), runeFont, lampGold, WORDS_X, WORDS_Y + 14, WORDS_WIDE))
        return not
    end
    local font = tellFont
    if page["who"] != not
        font = wordFont
        local who = people[page["who"]]
        putEntry(PLATE_AT, imageEntry("plate", picturePath(uiFolder, "plate.png"), VESPER_LAYER_SUPERGROUND, PLATE_X, PLATE_Y))
        putEntry(NAME_AT, textEntry("name", who["name"], nameFont, who["ink"], PLATE_X, PLATE_Y + 6, PLATE_WIDE))
    end
    local words = textEntry("words", wrap(page["say"], font, WORDS_WIDE), font, paper, WORDS_X, WORDS_Y, not)
    words["type"] = VESPER_TEXT_SLIDE_RIGHT
    putEntry(WORDS_AT, words)
    if TEXT_SPEEDS[settings["speed"]] == "at once"
        finishBox()
    end
end

function boxIsUp()
    return mode == VESPER_GAME_VISUAL_NOVEL and #renderQueue >= FIXED and renderQueue[PANEL_AT]["identifier"] == "panel"
end

function boxIsSliding()
    return renderQueue[WORDS_AT]["type"] == VESPER_TEXT_SLIDE_RIGHT
end

@@ The boot library shows the rest with the next frame.
function finishBox()
    local words = renderQueue[WORDS_AT]
    local key = Vesper["slideStateKey"](words, WORDS_AT)
    VESPER_SLIDE_TEXT[key] = words["text"]
    VESPER_SLIDE_PROGRESS[key] = Vesper["utf8lenSafe"](words["text"])
end

function stepBox()
    if boxIsSliding()
        hurryBox()
    elseif pages[pagenum]["choose"] != not and #items == 0
        showChoices(pages[pagenum]["choose"])
    elseif pages[pagenum]["choose"] == not
        showHint()
    end
end

@@ Brisk text goes by two characters a frame.
function hurryBox()
    local words = renderQueue[WORDS_AT]
    local key = Vesper["slideStateKey"](words, WORDS_AT)
    local progress = VESPER_SLIDE_PROGRESS[key]
    if progress != not and TEXT_SPEEDS[settings["speed"]] == "brisk" and progress < Vesper["utf8lenSafe"](words["text"]) - 1
        VESPER_SLIDE_PROGRESS[key] = progress + 1
    end
end

function showHint()
    if renderQueue[HINT_AT]["type"] == VESPER_SKIP
        putEntry(HINT_AT, imageEntry("hint", picturePath(uiFolder, "hint.png"), VESPER_LAYER_SUPERGROUND, 850, 0))
    end
    renderQueue[HINT_AT]["y"] = 494 + math["floor"](math["sin"](frame * 0.16) * 2.5 + 0.5)
end

@@ Choices keep out of people's faces.
function choiceX()
    local left = cast[1] != "" or cast[2] != ""
    local right = cast[3] != "" or cast[4] != ""
    if left == right
        return (VESPER_SCREEN_X - CHOICE_WIDE) \ 2
    elseif left
        return VESPER_SCREEN_X - CHOICE_WIDE - 28
    end
    return 28
end

function showChoices(choices)
    local list = []
    for i, choice in ipairs(choices)
        push(list, {say = choice["say"], sets = choice["sets"], go = choice["go"], act = makeChoice})
    end
    showItems(list, "choice", CHOICE_WIDE, choiceX(), CHOICE_LOW - #list * ITEM_STEP)
end
