@@ The lantern's light on the ground: an ellipse of four strengths, dithered into each other. The pattern
@@ belongs to the glade, so it does not crawl when the light moves.

bayer = [0, 8, 2, 10, 12, 4, 14, 6, 3, 11, 1, 9, 15, 7, 13, 5]

@@ Strengths around the middle in sixteenths of a step, by rows. A rim of dark wider than a stride puts out
@@ what the light leaves behind.
lightHalfWide = 0
lightHalfHigh = 0
lightStrength = []

function shapeLight(radius)
    lightHalfWide = radius + 4
    lightHalfHigh = radius * 2 \ 3 + 4
    lightStrength = []
    for dy = -lightHalfHigh, lightHalfHigh
        for dx = -lightHalfWide, lightHalfWide
            local across = dx / radius
            local down = dy * 1.5 / radius
            local near = 1 - math["sqrt"](across * across + down * down)
            push(lightStrength, math["floor"](math["max"](0, math["min"](48, near * 66))))
        end
    end
end

@@ What stands nearer than the row `base` has its dark side towards us and stays in the night.
function castLight(middleX, middleY, base)
    local firstX = math["max"](0, middleX - lightHalfWide)
    local lastX = math["min"](WIDE - 1, middleX + lightHalfWide)
    for y = math["max"](0, middleY - lightHalfHigh), math["min"](HIGH - 1, middleY + lightHalfHigh)
        local p = y * WIDE + firstX
        local i = (y - middleY + lightHalfHigh) * (2 * lightHalfWide + 1) + firstX - middleX + lightHalfWide
        local pattern = y % 4 * 4 + 1
        for x = firstX, lastX
            p += 1
            i += 1
            local wanted = NIGHT_PLANE
            if lightStrength[i] > 0 and depth[p] <= base
                wanted = lightPlanes[(lightStrength[i] + bayer[pattern + x % 4]) \ 16 + 1]
            end
            if plane[p] != wanted
                plane[p] = wanted
                local k = p + wanted
                setPixel(screen, x, y, red[k], green[k], blue[k], 255)
            end
        end
    end
end
