@@ Text for the render queue.

function textWidth(text, font)
    if font[1] == not
        return 0
    end
    local surface = Font["renderText"](text, font[1], 255, 255, 255, 255)
    if surface == not
        return 0
    end
    local w = Plush["imageSize"](surface)
    Plush["killImage"](surface)
    return w
end

@@ The text as lines, none wider than `width` pixels.
function wrapped(text, font, width)
    local lines = []
    local line = ""
    for i, word in ipairs(string["gmatch"](text, "%S+"))
        local longer = word
        if line != ""
            longer = line + " " + word
        end
        if line != "" and textWidth(longer, font) > width
            push(lines, line)
            line = word
        else
            line = longer
        end
    end
    push(lines, line)
    return lines
end

@@ The same in as few lines, of about the same length.
function evenly(text, font, width)
    local lines = wrapped(text, font, width)
    for share = 1, 6
        local narrow = wrapped(text, font, textWidth(text, font) / #lines * (1 + share * 0.04))
        if #lines > 1 and #narrow == #lines
            return narrow
        end
    end
    return lines
end

@@ A line by its left edge; with `width`, in the middle of that much room.
function textEntry(name, text, font, ink, x, y, width)
    return {type = VESPER_TEXT, layer = VESPER_LAYER_SUPERGROUND, identifier = name, text = text, font = font, colour = ink, x = x, y = y, fw = width, scale = 1, rotation = 0}
end

@@ A picture that the game has made; the queue owns it.
function pictureEntry(name, surface, layer, x, y)
    return {type = VESPER_IMAGE, layer = layer, identifier = name, surface = surface, x = x, y = y, scale = 1, rotation = 0}
end

function addEntry(entry)
    table["insert"](renderQueue, entry)
end

@@ A line with a shadow that keeps it readable on anything.
function addText(name, text, font, ink, x, y, width)
    addEntry(textEntry(name, text, font, [4, 8, 14, 255], x + 2, y + 2, width))
    addEntry(textEntry(name, text, font, ink, x, y, width))
end

@@ Takes all entries of that name out of the queue.
function dropEntries(name)
    for i = #renderQueue, 1, -1
        if renderQueue[i]["identifier"] == name
            vesperKillSurface(renderQueue[i]["surface"])
            table["remove"](renderQueue, i)
        end
    end
end
