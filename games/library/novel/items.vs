@@ What can be picked on a screen, by keys or by mouse. An item has `say`, a place and a size, and `act`, a function
@@ that gets the item. `aloud` is what is read aloud of it where that is not what it says. `turn` is a function that gets the item and 1 or -1, for the keys to the right and left.

NOVEL_ITEM_HIGH = 44
NOVEL_ITEM_SINK = 2
NOVEL_GUARD = 13
novelItems = []
novelFocus = 0
novelSince = 0
novelGuard = 0
novelSprites = []

@@ Pictures that stand on the screen until it changes; they are the screen's to kill.
function novelPut(picture, x, y)
    if picture != not
        push(novelSprites, {picture = picture, x = x, y = y})
    end
    novelDirty = true
end

@@ A line of text; `align` is "left", "middle" or "right" of x.
function novelPutText(text, font, ink, x, y, align)
    push(novelShownWords, text)
    local picture, w, h = novelTextPicture(text, font, ink)
    if align == "middle"
        x -= w \ 2
    elseif align == "right"
        x -= w
    end
    novelPut(picture, x, y)
    return w, h
end

function novelClearScreen()
    for sprite in novelSprites
        vesperKillSurface(sprite["picture"])
    end
    novelSprites = []
    novelShownWords = []
    novelClearItems()
end

function novelClearItems()
    for item in novelItems
        for mark in item["marks"]
            vesperKillSurface(mark["picture"])
        end
    end
    novelItems = []
    novelFocus = 0
    novelDirty = true
end

@@ Adds an item; its words stand in its middle, or with `value` at both its ends.
function novelAddItem(item)
    item["marks"] = item["marks"] or []
    item["h"] = item["h"] or NOVEL_ITEM_HIGH
    if item["say"] != not
        local picture, w, h = novelTextPicture(item["say"], item["font"] or "item", "paper")
        local x = (item["w"] - w) \ 2
        if item["value"] != not
            x = 18
            local value, wide = novelTextPicture(item["value"], "item", "gold")
            novelMark(item, value, item["w"] - 18 - wide, (item["h"] - h) \ 2 + NOVEL_ITEM_SINK)
        end
        novelMark(item, picture, x, (item["h"] - h) \ 2 + NOVEL_ITEM_SINK)
    end
    push(novelItems, item)
    novelDirty = true
end

@@ For items that were added from the last to the first.
function novelTurnItemsRound()
    local turned = []
    for i = #novelItems, 1, -1
        push(turned, novelItems[i])
    end
    novelItems = turned
end

@@ A picture that stands in an item.
function novelMark(item, picture, x, y)
    if picture != not
        push(item["marks"], {picture = picture, x = x, y = y})
    end
end

@@ A column of items of one width.
function novelAddColumn(list, x, y, width, step)
    for i, item in ipairs(list)
        item["x"] = x
        item["y"] = y + (i - 1) * step
        item["w"] = width
        novelAddItem(item)
    end
end

@@ The width that the longest of some texts wants, with room at its sides.
function novelWidthFor(texts, least)
    local wide = least
    for text in texts
        wide = math["max"](wide, novelTextWidth(text, "item") + 48)
    end
    return wide
end

@@ A guarded screen takes nothing for a moment, so that a key meant for what was there before picks nothing here.
function novelGuardItems(frames)
    novelGuard = frames
    novelSince = 0
end

function novelFocusOn(which)
    if which != novelFocus
        novelFocus = which
        novelDirty = true
    end
end

function novelItemUnder()
    for i, item in ipairs(novelItems)
        if novelMouseX > item["x"] and novelMouseX < item["x"] + item["w"] and novelMouseY >= item["y"] and novelMouseY < item["y"] + item["h"]
            return i
        end
    end
    return 0
end

function novelMoveFocus(step)
    if #novelItems == 0
        return not
    end
    if novelFocus == 0
        novelFocusOn(1)
        if step < 0
            novelFocusOn(#novelItems)
        end
    else
        novelFocusOn((novelFocus - 1 + step + #novelItems) % #novelItems + 1)
    end
    novelClick("move")
end

@@ The item that was picked in this frame, or nothing.
function novelPicked()
    novelSince += 1
    if #novelItems == 0
        return not
    end
    local under = novelItemUnder()
    if novelMouseMoved and under > 0
        novelFocusOn(under)
    end
    if novelPressed["down"] or novelPressed["wheelDown"]
        novelMoveFocus(novelStepDown())
    elseif novelPressed["up"] or novelPressed["wheelUp"]
        novelMoveFocus(-novelStepDown())
    end
    if novelSince < novelGuard
        return not
    end
    for i, name in ipairs(NOVEL_DIGITS)
        if novelPressed[name] and i <= #novelItems
            novelFocusOn(i)
            return novelItems[i]
        end
    end
    if novelPressed["go"]
        return novelItems[novelFocus]
    end
    if novelPressed["click"] and under > 0 and (novelFocus == under or novelGuard == 0)
        novelFocusOn(under)
        return novelItems[under]
    end
    return not
end

@@ Grids go down by their rows.
function novelStepDown()
    return novelRow or 1
end

function novelStepItems()
    local item = novelPicked()
    if item == not
        item = novelItems[novelFocus]
        if item != not and (novelPressed["left"] or novelPressed["right"])
            if item["turn"] != not and novelPressed["left"]
                item["turn"](item, -1)
            elseif item["turn"] != not
                item["turn"](item, 1)
            elseif novelRow != not and novelPressed["left"]
                novelMoveFocus(-1)
            elseif novelRow != not
                novelMoveFocus(1)
            end
        end
        return not
    end
    novelClick("choose")
    item["act"](item)
end

function novelDrawItems()
    for sprite in novelSprites
        novelBlit(sprite["picture"], sprite["x"], sprite["y"])
    end
    for i, item in ipairs(novelItems)
        local kind = "item"
        if i == novelFocus
            kind = "lit"
        end
        novelBlit(novelPanel(item["w"], item["h"], kind), item["x"], item["y"])
        for mark in item["marks"]
            novelBlit(mark["picture"], item["x"] + mark["x"], item["y"] + mark["y"])
        end
    end
end
