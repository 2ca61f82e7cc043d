@@ Sprites as lists of their own pixels: x, y, red, green, blue, alpha.

function cutSprite(image, left, top, wide, high)
    local pixels = array()
    for y = 0, high - 1
        for x = 0, wide - 1
            local r, g, b, a = Plush["getPixel"](image, left + x, top + y)
            if a > 0
                push(pixels, [x, y, r, g, b, a])
            end
        end
    end
    return pixels
end

function mirrored(pixels, wide)
    local turned = array()
    for p in pixels
        push(turned, [wide - 1 - p[1], p[2], p[3], p[4], p[5], p[6]])
    end
    return turned
end

@@ Solid pixels, hidden behind whatever stands nearer than the given row.
function drawSolid(pixels, left, top, feet)
    for p in pixels
        local x = left + p[1]
        local y = top + p[2]
        if x >= 0 and y >= 0 and x < WIDE and y < HIGH
            if depths[y * WIDE + x + 1] <= feet
                Plush["setPixel"](frame, x, y, p[3], p[4], p[5], 255)
            end
        end
    end
end

@@ Light laid over the frame, weighed by its alpha and by a strength of up to 16.
function drawGlow(pixels, left, top, feet, strength)
    for p in pixels
        local x = left + p[1]
        local y = top + p[2]
        if x >= 0 and y >= 0 and x < WIDE and y < HIGH
            if depths[y * WIDE + x + 1] <= feet
                local alpha = p[6] * strength \ 16
                local r, g, b = Plush["getPixel"](frame, x, y)
                Plush["setPixel"](frame, x, y, r + (p[3] - r) * alpha \ 255, g + (p[4] - g) * alpha \ 255, b + (p[5] - b) * alpha \ 255, 255)
            end
        end
    end
end

@@ keeperSteps[view][step]: to the right, to the left, towards us, away.
KEEPER_WIDE = 14
KEEPER_HIGH = 19
keeperSteps = [array(), array(), array(), array()]
if true
    local sheet = picture("keeper.png")
    for step = 0, 2
        local side = cutSprite(sheet, step * KEEPER_WIDE, 0, KEEPER_WIDE, KEEPER_HIGH)
        push(keeperSteps[1], side)
        push(keeperSteps[2], mirrored(side, KEEPER_WIDE))
        push(keeperSteps[3], cutSprite(sheet, step * KEEPER_WIDE, KEEPER_HIGH, KEEPER_WIDE, KEEPER_HIGH))
        push(keeperSteps[4], cutSprite(sheet, step * KEEPER_WIDE, KEEPER_HIGH * 2, KEEPER_WIDE, KEEPER_HIGH))
    end
    Plush["killImage"](sheet)
    local light = picture("glow.png")
    glow = cutSprite(light, 0, 0, 9, 9)
    Plush["killImage"](light)
    light = picture("spark.png")
    spark = cutSprite(light, 0, 0, 5, 5)
    Plush["killImage"](light)
end
