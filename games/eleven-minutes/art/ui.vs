@@ What falls from the sky, and what stands in for missing pictures.

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
    for i, lift in ipairs([1.0, 0.3, -0.45])
        local bird = canvas(44, 34)
        paintBird(bird, 22, 17, 38, lift, "b4bce4", "e0905c")
        fill(bird, ellipse(31, 16, 4, 3), flat("c6cdf0"))
        saveCut(bird, "bird" + i + ".png")
    end
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
