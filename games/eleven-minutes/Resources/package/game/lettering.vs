@@ Text of many lines, and the old letters.

@@ The boot library's runes are positions of a rune font. Ours is a font with the real ones.
startTag = "<rune>"
endTag = "</rune>"
runeLetters = [["à", "ᚪ"], ["b", "ᛒ"], ["ć", "ᚳ"], ["đ", "ᛞ"], ["é", "ᛖ"], ["ƒ", "ᚠ"], ["ğ", "ᚷ"], ["ħ", "ᚻ"], ["í", "ᛁ"], ["ĵ", "ᛄ"], ["ķ", "ᛣ"], ["ľ", "ᛚ"], ["ṁ", "ᛗ"], ["ń", "ᚾ"], ["ó", "ᚩ"], ["ṗ", "ᛈ"], ["ǫ", "ᛢ"], ["ŕ", "ᚱ"], ["ş", "ᛋ"], ["ţ", "ᛏ"], ["ú", "ᚢ"], ["ṽ", "ᚡ"], ["ŵ", "ᚹ"], ["ẋ", "ᛪ"], ["ý", "ᚣ"], ["ž", "ᛉ"], ["Þ", "ᚦ"], ["Ṅ", "ᛝ"], ["Ŝ", "ᛥ"], ["*", " ᛫ "]]

function inRunes(text)
    local line = Vesper["processRunes"](text)
    for i, pair in ipairs(runeLetters)
        line = replaceAll(line, pair[1], pair[2])
    end
    return line
end

function replaceAll(text, old, new)
    local at = 1
    local out = ""
    while true
        local first, last = string["find"](text, old, at, true)
        if first == not
            return out + string["sub"](text, at)
        end
        out += string["sub"](text, at, first - 1) + new
        at = last + 1
    end
end

function textWidth(text, font)
    if font[1] == not
        return 0
    end
    local surface = Font["renderText"](text, font[1], 255, 255, 255, 255)
    local w = Plush["imageSize"](surface)
    Plush["killImage"](surface)
    return w
end

@@ Breaks the text so that no line is wider than `width` pixels.
function wrap(text, font, width)
    local lines = ""
    local line = ""
    for i, word in ipairs(string["gmatch"](text, "%S+"))
        local longer = word
        if line != ""
            longer = line + " " + word
        end
        if line != "" and textWidth(longer, font) > width
            lines += line + "\n"
            line = word
        else
            line = longer
        end
    end
    return lines + line
end

@@ A line of the render queue, by its left edge; with `width`, in the middle of that much room.
function textEntry(name, text, font, ink, x, y, width)
    return {type = VESPER_TEXT, layer = VESPER_LAYER_SUPERGROUND, identifier = name, text = text, font = font, colour = ink, x = x, y = y, fw = width, scale = 1, rotation = 0}
end

function imageEntry(name, path, layer, x, y)
    return {type = VESPER_IMAGE, layer = layer, identifier = name, text = path, text2 = nobmp, x = x, y = y, scale = 1, rotation = 0}
end
