@@ A column of things to pick, by keys or by mouse. An item has `say` and `act`, a function that gets the item.

ITEM_HIGH = 44
ITEM_STEP = 54
ITEM_RISE = 9
items = []
focus = 1

@@ Puts them into the render queue and on the boot library's list of buttons, from the row `y` down.
function showItems(list, picture, width, x, y)
    hideItems()
    items = list
    itemPicture = picture
    itemsX = x
    itemsY = y
    for i, item in ipairs(items)
        local top = y + (i - 1) * ITEM_STEP
        table["insert"](renderQueue, imageEntry("item" + i, picturePath(uiFolder, picture + ".png"), VESPER_LAYER_SUPERGROUND, x, top))
        table["insert"](renderQueue, textEntry("said" + i, item["say"], itemFont, paper, x, top + ITEM_RISE, width))
        Vesper["pushButton"](x, x + width, top - 1, top + ITEM_HIGH, i)
    end
    focus = 0
    focusOn(1)
end

function hideItems()
    Vesper["clearButtons"]()
    items = []
    for i = #renderQueue, 1, -1
        local name = renderQueue[i]["identifier"]
        if typeOf(name) == "string" and (string["sub"](name, 1, 4) == "item" or string["sub"](name, 1, 4) == "said")
            vesperKillSurface(renderQueue[i]["surface"])
            table["remove"](renderQueue, i)
        end
    end
end

function paintItem(which, lit)
    local at = Vesper["findID"](renderQueue, "item" + which)
    if at == -1
        return not
    end
    local name = itemPicture + ".png"
    if lit
        name = itemPicture + "-lit.png"
    end
    vesperKillSurface(renderQueue[at]["surface"])
    renderQueue[at]["surface"] = not
    renderQueue[at]["text"] = picturePath(uiFolder, name)
end

function focusOn(which)
    if which == focus
        return not
    end
    paintItem(focus, false)
    focus = which
    paintItem(focus, true)
end

@@ The item that was picked in this frame, or nothing.
function pickedItem()
    if #items == 0
        return not
    end
    local under = Vesper["checkButton"](mouseX, mouseY)
    if mouseMoved and under > 0
        focusOn(under)
    end
    if pressed["down"] or pressed["up"]
        local step = 1
        if pressed["up"]
            step = #items - 1
        end
        focusOn((focus - 1 + step) % #items + 1)
        playSound("move")
    end
    for i, name in ipairs(["one", "two", "three"])
        if pressed[name] and i <= #items
            focusOn(i)
            return items[i]
        end
    end
    if pressed["go"]
        return items[focus]
    end
    if pressed["click"] and under > 0
        focusOn(under)
        return items[under]
    end
    return not
end

function stepItems()
    local item = pickedItem()
    if item != not
        playSound("choose")
        local act = item["act"]
        act(item)
    end
end
