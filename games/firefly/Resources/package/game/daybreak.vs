@@ Night goes into twilight and twilight into dawn, pixel by pixel in the order of a fine dither.

@@ Where in a block of eight by eight the next pixel turns.
dawnX = []
dawnY = []

function orderDawn()
    for cell = 0, 63
        local x = 0
        local y = 0
        local rest = cell
        for half = 1, 3
            local size = 8 \ 2 ^ half
            local quarter = rest % 4
            rest = rest \ 4
            if quarter == 1 or quarter == 2
                x += math["floor"](size)
            end
            if quarter == 1 or quarter == 3
                y += math["floor"](size)
            end
        end
        push(dawnX, x)
        push(dawnY, y)
    end
end

function turnCell(cell, wanted)
    for y = dawnY[cell], HIGH - 1, 8
        for x = dawnX[cell], WIDE - 1, 8
            local p = y * WIDE + x + 1
            plane[p] = wanted
            local k = p + wanted
            setPixel(screen, x, y, red[k], green[k], blue[k], 255)
        end
    end
end

DAWN_FRAMES = 56

function breakDay(frame)
    if frame < 32
        turnCell(frame * 2 + 1, TWILIGHT_PLANE)
        turnCell(frame * 2 + 2, TWILIGHT_PLANE)
    end
    if frame >= 24 and frame < DAWN_FRAMES
        turnCell((frame - 24) * 2 + 1, DAWN_PLANE)
        turnCell((frame - 24) * 2 + 2, DAWN_PLANE)
    end
end

orderDawn()
