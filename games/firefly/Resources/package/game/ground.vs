@@ The glade: what stands where, and the ground as the lantern shows it.

@@ Row on which the thing at a pixel stands, 0 for bare ground; and 1 where nobody can walk.
depths = array()
blocked = array()
reserve(depths, WIDE * HIGH)
reserve(blocked, WIDE * HIGH)
if true
    local map = picture("glade-map.png")
    for y = 0, HIGH - 1
        for x = 0, WIDE - 1
            local depth, block = Plush["getPixel"](map, x, y)
            push(depths, depth)
            push(blocked, block)
        end
    end
    Plush["killImage"](map)
end

@@ Thresholds of an ordered dither, 0 to 15, four by four.
dither = [0, 8, 2, 10, 12, 4, 14, 6, 3, 11, 1, 9, 15, 7, 13, 5]

@@ The light: where its middle is, and how far it reaches.
lightX = 0
lightY = 0
lightReach = 0

@@ Puts the bare glade back into a box of the frame: lit near the lantern, night elsewhere, and a dithered rim
@@ between the two.
function drawGround(left, top, right, bottom)
    left = math["max"](left, 0)
    top = math["max"](top, 0)
    right = math["min"](right, WIDE - 1)
    bottom = math["min"](bottom, HIGH - 1)
    local full = lightReach * lightReach * 2 \ 5
    local rim = lightReach * lightReach - full
    for y = top, bottom
        local down = (y - lightY) * (y - lightY) * 2 - full
        local row = y % 4 * 4
        for x = left, right
            local source = night
            if ((x - lightX) * (x - lightX) + down) * 16 < rim * (16 - dither[row + x % 4 + 1])
                source = lit
            end
            local r, g, b = Plush["getPixel"](source, x, y)
            Plush["setPixel"](frame, x, y, r, g, b, 255)
        end
    end
end

@@ Moves the light and redraws what it touched before and touches now.
function moveLight(x, y, reach)
    local far = math["max"](reach, lightReach) + 1
    local flat = far * 3 \ 4
    local left = math["min"](x, lightX) - far
    local right = math["max"](x, lightX) + far
    local top = math["min"](y, lightY) - flat
    local bottom = math["max"](y, lightY) + flat
    lightX = x
    lightY = y
    lightReach = reach
    drawGround(left, top, right, bottom)
end

@@ Day comes one step of the dither at a time.
function drawDawn(step)
    for y = 0, HIGH - 1
        for x = 0, WIDE - 1
            if dither[y % 4 * 4 + x % 4 + 1] == step
                local r, g, b = Plush["getPixel"](dawn, x, y)
                Plush["setPixel"](frame, x, y, r, g, b, 255)
            end
        end
    end
end

function isBlocked(x, y)
    if x < 4 or x > WIDE - 5 or y < 74 or y > HIGH - 3
        return true
    end
    return blocked[y * WIDE + x + 1] > 0
end
