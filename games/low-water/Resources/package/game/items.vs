@@ A column of things to pick, by keys or by mouse. An item has `say`, `act`, a function that gets the
@@ item, and may have `turn`, one that gets the item and 1 or -1 for the keys to the right and left.

ITEM_STEP = 46
items = []
focus = 0

function showItems(list, x, y, width)
    hideItems()
    items = list
    itemsX = x
    itemsY = y
    itemsWide = width
    for i, item in ipairs(items)
        Vesper["pushButton"](x, x + width, y + (i - 1) * ITEM_STEP - 1, y + i * ITEM_STEP, i)
    end
    focusOn(1)
end

function hideItems()
    Vesper["clearButtons"]()
    dropEntries("item")
    items = []
    focus = 0
end

function focusOn(which)
    if which == focus or which < 1
        return not
    end
    focus = which
    dropEntries("item")
    for i, item in ipairs(items)
        local top = itemsY + (i - 1) * ITEM_STEP
        local ink = dimPaper
        if i == focus
            ink = lampGold
            addEntry(pictureEntry("item", Plush["createImage"](itemsWide, ITEM_STEP - 6, 20, 34, 44, 190), VESPER_LAYER_SUPERGROUND, itemsX, top))
            addEntry(pictureEntry("item", Plush["createImage"](3, ITEM_STEP - 6, 255, 206, 130, 255), VESPER_LAYER_SUPERGROUND, itemsX, top))
        end
        addText("item", item["say"], itemFont, ink, itemsX + 18, top + 3, not)
    end
end

function stepItems()
    if #items == 0
        return not
    end
    local under = Vesper["checkButton"](mouseX, mouseY)
    if mouseMoved and under > 0
        focusOn(under)
    end
    local step = 0
    if pressed["behind"]
        step = 1
    elseif pressed["ahead"]
        step = #items - 1
    end
    if step > 0
        focusOn((focus - 1 + step) % #items + 1)
        playSound("tick")
    end
    local chosen = items[focus]
    if chosen["turn"] != not and (pressed["turnLeft"] or pressed["turnRight"])
        local turn = chosen["turn"]
        if pressed["turnLeft"]
            turn(chosen, -1)
        else
            turn(chosen, 1)
        end
        return not
    end
    local picked = 0
    if pressed["act"] or pressed["bell"]
        picked = focus
    elseif pressed["click"] and under > 0
        picked = under
    end
    if picked > 0
        playSound("choose")
        local item = items[picked]
        local act = item["act"]
        act(item)
    end
end
