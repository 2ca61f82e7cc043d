@@ Fonts, words as pictures, and panels. Measures are pixels of the stage.

novelLook = {
    fonts = {words = ["words.ttf", 22], tell = ["words.ttf", 22], name = ["words.ttf", 23], item = ["words.ttf", 22], small = ["words.ttf", 17], tiny = ["words.ttf", 14], head = ["words.ttf", 38], title = ["words.ttf", 62], runes = ["words.ttf", 46]},
    inks = {paper = [240, 234, 220, 255], dim = [176, 176, 184, 255], gold = [255, 206, 130, 255], dark = [14, 18, 34, 255]},
    panels = {
        box = {radius = 16, inset = 7, thick = 1.2, strong = 0.9, top = [26, 34, 64], bottom = [10, 14, 32], rim = [200, 154, 104], rimBelow = [74, 74, 104]},
        plate = {radius = 12, inset = 0, thick = 1.2, strong = 1, top = [42, 36, 64], bottom = [20, 26, 52], rim = [200, 154, 104], rimBelow = [108, 92, 104]},
        item = {radius = 14, inset = 0, thick = 1.4, strong = 0.86, top = [35, 43, 75], bottom = [16, 21, 44], rim = [108, 116, 148], rimBelow = [108, 116, 148]},
        lit = {radius = 14, inset = 0, thick = 1.4, strong = 0.95, top = [124, 74, 52], bottom = [58, 32, 48], rim = [255, 208, 138], rimBelow = [255, 208, 138]},
        note = {radius = 10, inset = 0, thick = 1, strong = 0.9, top = [24, 30, 52], bottom = [24, 30, 52], rim = [90, 96, 128], rimBelow = [90, 96, 128]}
    }
}

@@ What a game says of its look goes over what the library has.
function Novel["look"](look)
    for part in ["fonts", "inks", "panels"]
        for name, value in pairs(look[part] or {})
            novelLook[part][name] = value
        end
    end
    for part, value in pairs(look)
        if not contains({fonts = 1, inks = 1, panels = 1}, part)
            novelLook[part] = value
        end
    end
end

NOVEL_WORD_SIZES = [1, 1.2, 1.4]
NOVEL_MENU_SIZES = [1, 1.08, 1.16]
novelFonts = {}
novelWidths = {}

function novelSizeOf(name)
    local size = novelLook["fonts"][name][2]
    if name == "words" or name == "tell"
        return math["floor"](size * NOVEL_WORD_SIZES[settings["textSize"]] + 0.5)
    elseif name == "item" or name == "small"
        return math["floor"](size * NOVEL_MENU_SIZES[settings["textSize"]] + 0.5)
    end
    return size
end

@@ A font by its use. A missing file is told; any font is better than none.
function novelOpenFont(name)
    local file = novelLook["fonts"][name][1]
    if settings["plainFont"] and novelLook["plain"] != not and name != "runes"
        file = novelLook["plain"]
    end
    local font = Font["loadFont"](append + "/fonts/" + file, novelSizeOf(name))
    if font == not
        novelTellMissing("The font " + file + " is missing.")
        for use, other in pairs(novelLook["fonts"])
            if font == not
                font = Font["loadFont"](append + "/fonts/" + other[1], novelSizeOf(name))
            end
        end
    end
    return font
end

function novelOpenFonts()
    novelCloseFonts()
    for name, file in pairs(novelLook["fonts"])
        novelFonts[name] = [novelOpenFont(name)]
    end
end

function novelCloseFonts()
    for name, font in pairs(novelFonts)
        Font["killFont"](font[1])
    end
    novelFonts = {}
    novelWidths = {}
end

@@ A new picture of the words, its width and height; nothing, 0 and 0 without words or font. The ink is one of the
@@ look's or a colour.
function novelTextPicture(text, font, ink)
    local handle = novelFonts[font][1]
    if text == "" or handle == not
        return not, 0, 0
    end
    local colour = ink
    if typeOf(ink) == "string"
        colour = novelLook["inks"][ink]
    end
    local picture = Font["renderText"](text, handle, colour[1], colour[2], colour[3], colour[4])
    if not Plush["checkImage"](picture)
        return not, 0, 0
    end
    local w, h = Plush["imageSize"](picture)
    return picture, w, h
end

function novelTextSize(text, font)
    local handle = novelFonts[font][1]
    if text == "" or handle == not
        return 0, 0
    end
    local w, h = Font["textSize"](text, handle)
    return w or 0, h or 0
end

@@ The same, remembered: for the short words of menus.
function novelTextWidth(text, font)
    local key = font + ":" + text
    if novelWidths[key] == not
        novelWidths[key] = novelTextSize(text, font)
    end
    return novelWidths[key]
end

@@ The text with line breaks, so that no line is wider than `width`, and the number of its lines.
function novelWrap(text, font, width)
    local handle = novelFonts[font][1]
    local wrapped = text
    if handle != not
        wrapped = Font["wrapText"](text, handle, width) or text
    end
    return wrapped, #novelSplit(wrapped, "\n")
end

@@ From the top of a line to the top of the next.
function novelLineHeight(font)
    if novelWidths["high " + font] == not
        local w, one = novelTextSize("Àg", font)
        local w, two = novelTextSize("Àg\nÀg", font)
        novelWidths["high " + font] = math["max"](two - one, 1)
    end
    return novelWidths["high " + font]
end

function novelBlit(picture, x, y)
    if picture != not
        Plush["blitImage"](VESPER_FRAMEBUFFER, picture, x, y, true, 1, 0)
    end
end

NOVEL_PANEL = "local qx = abs(x + 0.5 - w / 2) - w / 2 + radius\nlocal qy = abs(y + 0.5 - h / 2) - h / 2 + radius\nlocal ux = max(qx, 0)\nlocal uy = max(qy, 0)\nlocal depth = radius - sqrt(ux * ux + uy * uy) - min(max(qx, qy), 0)\nlocal t = y / h\nlocal line = clamp(depth - inset + 0.5, 0, 1) * clamp(inset + thick - depth + 0.5, 0, 1)\nr = mix(mix(tr, br, t), mix(lr, mr, t), line)\ng = mix(mix(tg, bg, t), mix(lg, mg, t), line)\nb = mix(mix(tb, bb, t), mix(lb, mb, t), line)\na = clamp(depth + 0.5, 0, 1) * strong"
novelPanels = {}

@@ A new picture of a panel with round corners.
function novelMakePanel(w, h, kind)
    if novelPanelShader == not
        novelPanelShader = Plush["compileShader"](NOVEL_PANEL)
    end
    local look = novelLook["panels"][kind]
    local top = look["top"]
    local below = look["bottom"]
    local rim = look["rim"]
    local rimBelow = look["rimBelow"]
    local strong = look["strong"]
    if kind == "box" and settings["box"] == 1
        strong = strong - 0.22
    elseif kind == "box" and settings["box"] == 3
        strong = 1
        top = below
    end
    local panel = Plush["createImage"](w, h, 0, 0, 0, 0)
    Plush["shader"](panel, novelPanelShader, {w = w, h = h, radius = look["radius"], inset = look["inset"], thick = look["thick"], strong = strong, tr = top[1] / 255, tg = top[2] / 255, tb = top[3] / 255, br = below[1] / 255, bg = below[2] / 255, bb = below[3] / 255, lr = rim[1] / 255, lg = rim[2] / 255, lb = rim[3] / 255, mr = rimBelow[1] / 255, mg = rimBelow[2] / 255, mb = rimBelow[3] / 255}, 1, true)
    return panel
end

@@ The same, kept: menus share a few sizes.
function novelPanel(w, h, kind)
    local key = w + "x" + h + kind
    if novelPanels[key] == not
        novelPanels[key] = novelMakePanel(w, h, kind)
    end
    return novelPanels[key]
end

function novelDropPanels()
    for key, panel in pairs(novelPanels)
        Plush["killImage"](panel)
    end
    novelPanels = {}
end

@@ A new picture of what stands in the frame.
function novelFrameCopy()
    local copy = Plush["createImage"](VESPER_SCREEN_X, VESPER_SCREEN_Y, 0, 0, 0, 255)
    Plush["blitImage"](copy, VESPER_FRAMEBUFFER, 0, 0, false, 1, 0)
    return copy
end

@@ Darkens a picture of the stage.
function novelDim(picture, strength)
    local veil = Plush["createImage"](VESPER_SCREEN_X, VESPER_SCREEN_Y, 4, 6, 14, strength)
    Plush["blitImage"](picture, veil, 0, 0, true, 1, 0)
    Plush["killImage"](veil)
end

@@ A picture by its path under the package; the stand-in, and a note to the player, where it is missing. A picture
@@ that may be missing gives nothing then.
function novelLoadPicture(folder, name)
    local path = append + "/" + folder + "/" + name
    if not novelIsThere(path)
        novelTellMissing("The picture " + name + " is missing.")
        path = nobmp
    end
    if not novelIsThere(path)
        return Plush["createImage"](64, 64, 58, 62, 84, 255)
    end
    local ok, picture = pcall(novelReadPicture, path)
    if not ok
        novelTellMissing("The picture " + name + " is damaged.")
        return Plush["createImage"](64, 64, 58, 62, 84, 255)
    end
    return picture
end

function novelReadPicture(path)
    local picture = Plush["loadPNG"](path)
    return picture
end
