@@ Panels, the hint, what falls from the sky, and what stands in for missing pictures.

@@ A box with round corners.
function roundBox(x, y, w, h, r)
    local points = []
    local middles = [x + w - r, y + r, x + w - r, y + h - r, x + r, y + h - r, x + r, y + r]
    for corner = 0, 3
        for i = 0, 6
            local angle = (corner - 1 + i / 6) * 1.5707963
            push(points, middles[corner * 2 + 1] + math["cos"](angle) * r)
            push(points, middles[corner * 2 + 2] + math["sin"](angle) * r)
        end
    end
    return points
end

function paintPanels()
    local box = canvas(840, 132)
    fill(box, roundBox(0, 0, 840, 132, 16), ladder([[0, "1c2444"], [131, "0a0e20"]]) + "a = a * 0.9\n")
    fill(box, roundBox(7, 7, 826, 118, 11), ladder([[7, "c89a68"], [125, "4a4a68"]]) + "a = a * 0.75\n")
    fill(box, roundBox(8.2, 8.2, 823.6, 115.6, 10), ladder([[8, "161d3a"], [124, "0a0e20"]]))
    saveCut(box, "box.png")
    for i, size in ipairs([260, 440])
        local names = ["item", "choice"]
        paintItemPanel(names[i] + ".png", size, ["232b4c", "10152c"], "6c7494", 0.86)
        paintItemPanel(names[i] + "-lit.png", size, ["7c4a34", "3a2030"], "ffd08a", 0.95)
    end
    local plate = canvas(196, 36)
    fill(plate, roundBox(0, 0, 196, 36, 12), ladder([[0, "c89a68"], [36, "6c5c68"]]))
    fill(plate, roundBox(1.2, 1.2, 193.6, 33.6, 11), ladder([[0, "2a2440"], [36, "141a34"]]))
    saveCut(plate, "plate.png")
    local hint = canvas(20, 14)
    fill(hint, [2, 2, 18, 2, 10, 12], grade(0, 2, "ffe2a8", 0, 12, "e08a48"))
    saveCut(hint, "hint.png")
end

function paintItemPanel(name, wide, hexes, rim, strong)
    local panel = canvas(wide, 44)
    fill(panel, roundBox(0, 0, wide, 44, 14), flat(rim) + "a = a * " + number(strong) + "\n")
    fill(panel, roundBox(1.4, 1.4, wide - 2.8, 41.2, 12.8), grade(0, 0, hexes[1], 0, 44, hexes[2]))
    saveCut(panel, name)
end

@@ A quiet card for what is not there, and nothing at all for a portrait.
function paintStandIns()
    local card = canvas(96, 96)
    wash(card, grade(0, 0, "343c5c", 96, 96, "1c2238"))
    fill(card, stroke(curve([24, 76, 44, 52, 74, 22], false, 8), 2, 1.4), flat("c8b490"))
    fill(card, curve([36, 62, 38, 40, 58, 24, 78, 18, 72, 38, 58, 54], true, 7), flat("8f96b8") + "a = a * 0.8\n")
    saveWhole(card, "no.png")
    saveCut(canvas(2, 2), "blank.png")
    local font = Font["loadFont"]("/usr/share/fonts/truetype/gentiumplus/GentiumBookPlus-Regular.ttf", 17)
    local words = {image = Font["renderText"]("The fonts are missing, so this story has no words. ./play brings them.", font, 240, 234, 220, 255)}
    Font["killFont"](font)
    saveWhole(words, "no-fonts.png")
end

function paintWeather()
    local drop = canvas(3, 44)
    part(drop, 0, 0, 3, 44, flat("dcecf0") + "a = (py / 44) * (py / 44) * 0.85 * (1 - abs(px - 1) * 0.55)\n")
    saveCut(drop, "rain.png")
    local down = canvas(12, 12)
    glow(down, 6, 6, 5.5, 5.5, "fff0d0", 0.5, 1.2)
    glow(down, 6, 6, 2, 2, "ffffff", 0.8, 1)
    saveCut(down, "down.png")
    local hexes = [["f4c060", "b8641c"], ["e08838", "8a3418"], ["c85c2c", "6a2014"]]
    for i = 1, 3
        local leaf = canvas(30, 30)
        fill(leaf, curve([3, 25, 5, 13, 13, 5, 26, 4, 25, 16, 17, 24], true, 7), grade(4, 6, hexes[i][1], 26, 26, hexes[i][2]))
        fill(leaf, stroke([1, 28, 13, 17, 26, 4], 1.6, 0.6), flat(hexes[i][2]))
        for n = 0, 2
            fill(leaf, stroke([9 + n * 5, 20 - n * 5, 8 + n * 6, 12 - n * 4], 0.9, 0.4), flat(hexes[i][2]))
            fill(leaf, stroke([9 + n * 5, 20 - n * 5, 17 + n * 3, 20 - n * 4], 0.9, 0.4), flat(hexes[i][2]))
        end
        saveCut(leaf, "leaf" + i + ".png")
    end
end
