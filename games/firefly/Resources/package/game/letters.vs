@@ Text in the game's own letters, six dots a column, with a dark rim so that it reads on any ground.

letterOrder = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789/.!-"
letterDots = {}
if true
    local sheet = picture("letters.png")
    for i = 1, #letterOrder
        letterDots[letterOrder[i]] = cutSprite(sheet, (i - 1) % 16 * 6, (i - 1) \ 16 * 8, 6, 8)
    end
    Plush["killImage"](sheet)
end

function drawDots(text, left, top, scale, colour)
    local at = left
    for i = 1, #text
        if text[i] != " "
            for p in letterDots[text[i]]
                for dy = 0, scale - 1
                    for dx = 0, scale - 1
                        Plush["setPixel"](frame, at + p[1] * scale + dx, top + p[2] * scale + dy, colour[1], colour[2], colour[3], 255)
                    end
                end
            end
        end
        at += 6 * scale
    end
end

function drawText(text, left, top, scale, colour)
    for rim in [[-1, 0], [1, 0], [0, -1], [0, 1], [1, 1]]
        drawDots(text, left + rim[1], top + rim[2], scale, [12, 14, 36])
    end
    drawDots(text, left, top, scale, colour)
end

function drawCentred(text, top, scale, colour)
    drawText(text, (WIDE - (#text * 6 - 1) * scale) \ 2, top, scale, colour)
end

gold = [255, 206, 112]
cream = [244, 240, 214]
mist = [168, 190, 222]
