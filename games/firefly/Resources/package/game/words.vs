@@ Words out of the letters' dots, with a dark outline so that they read on anything.

FRONT = 255
goldRows = ["fffbe0", "fff3b8", "ffe890", "ffd870", "ffc458", "ffac48", "f09040"]
paleRows = ["e8f4e8", "e8f4e8", "e0f0e0", "d8ece0", "d0e8dc", "c8e0d8", "c0d8d4"]

function hexColour(text)
    local r = toNumber(string["sub"](text, 1, 2), 16)
    return [r, toNumber(string["sub"](text, 3, 4), 16), toNumber(string["sub"](text, 5, 6), 16)]
end

@@ A sprite of the words, each dot `size` pixels wide; `rows` has the colours of a letter's seven rows.
function makeWords(text, size, rows)
    local wide = #text * 6 * size - size + 2
    local high = 7 * size + 2
    local ink = []
    for i = 1, wide * high
        ink[i] = 0
    end
    for i = 1, #text
        local letter = letters[text[i]]
        if letter
            for dot = 1, #letter["x"]
                for inkY = 0, size - 1
                    for inkX = 0, size - 1
                        local row = letter["y"][dot] * size + inkY + 1
                        ink[row * wide + (i - 1) * 6 * size + letter["x"][dot] * size + inkX + 2] = letter["y"][dot] + 1
                    end
                end
            end
        end
    end
    return outlineInk(ink, wide, high, rows)
end

function outlineInk(ink, wide, high, rows)
    local sprite = {x = [], y = [], r = [], g = [], b = [], wide = wide, high = high}
    for y = 0, high - 1
        for x = 0, wide - 1
            local colour = not
            if ink[y * wide + x + 1] > 0
                colour = hexColour(rows[ink[y * wide + x + 1]])
            elseif touchesInk(ink, wide, high, x, y)
                colour = [8, 10, 26]
            end
            if colour
                push(sprite["x"], x)
                push(sprite["y"], y)
                push(sprite["r"], colour[1])
                push(sprite["g"], colour[2])
                push(sprite["b"], colour[3])
            end
        end
    end
    return sprite
end

function touchesInk(ink, wide, high, inkX, inkY)
    for y = math["max"](0, inkY - 1), math["min"](high - 1, inkY + 1)
        for x = math["max"](0, inkX - 1), math["min"](wide - 1, inkX + 1)
            if ink[y * wide + x + 1] > 0
                return true
            end
        end
    end
    return false
end

@@ Words keep their place until the stage is filled anew, so they are not marked as dirty.
function drawWords(words, left, top)
    local xs = words["x"]
    local ys = words["y"]
    local rs = words["r"]
    local gs = words["g"]
    local bs = words["b"]
    for i = 1, #xs
        setPixel(screen, left + xs[i], top + ys[i], rs[i], gs[i], bs[i], 255)
    end
end

function drawCentred(words, top)
    drawWords(words, (WIDE - words["wide"]) \ 2, top)
end
