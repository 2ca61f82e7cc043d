@@ The keeper in three views of three steps each, and the lights.

keeperColours = {o: "0c0a1c", r: "7c3044", R: "a84850", d: "4c2038", f: "e8b890", s: "a06c48", e: "1c1020", b: "3a2830", k: "4a3428", y: "ffb840", Y: "fff0b0", h: "5c3a24"}

sideView = [
    "....oooo......",
    "...oRRRRo.....",
    "..orRRRRRo....",
    "..orrddddo....",
    "..orrdfefo....",
    "..orrdfffo....",
    "...orrssoo....",
    "..orRRRRohhhh.",
    "..orRRRRrf..k.",
    "..orRRRRrf.kkk",
    "..orrRRRoo.yYy",
    "..orrRRRo..yYy",
    "..orrRRRo..kyk",
    "..odrrRRo.....",
    ".oddrrrRo.....",
    ".oddrrrrRo...."
]
frontView = [
    "....oooo......",
    "...oRRRRo.....",
    "..orRRRRro....",
    "..orddddro....",
    "..odefefdo....",
    "..odffffdo....",
    "...orssroo....",
    "..orRRRRrohh..",
    ".orrRRRRrrfk..",
    ".orrRRRRrrkkk.",
    ".ofrRRRRroyYy.",
    "..orRRRRroyYy.",
    "..orRRRRrokyk.",
    "..odrRRrdo....",
    ".oddrRRrddo...",
    ".oddrrrrddo..."
]
backView = [
    "....oooo......",
    "...oRRRRo.....",
    "..orRRRRro....",
    "..orRRRrro....",
    "..orRRrrro....",
    "..odrrrrdo....",
    "...odrrdoo....",
    "..orRRRRrohh..",
    ".orrRRRRrrfk..",
    ".orrRRRrrrkkk.",
    ".orrRRRrrryYy.",
    "..orRRRrroyYy.",
    "..orRRrrrokyk.",
    "..odrRrrdo....",
    ".oddrRrrddo...",
    ".oddrrrrddo..."
]
sideFeet = [["..obbobbo.....", "..ooo.ooo....."], [".obbo..obbo...", ".ooo....ooo..."], ["...obbbo......", "...ooooo......"]]
plainFeet = [["..obbo.bbo....", "..ooo..ooo...."], ["..obbo.ooo....", "..ooo........."], ["..ooo.obbo....", ".......ooo...."]]

STEP_WIDE = 14
STEP_HIGH = 19

@@ Steps go off the ground by a row where the feet are apart.
function drawStep(image, column, row, body, feet, lift)
    local rows = []
    for i = 1, #body
        push(rows, body[i])
    end
    push(rows, feet[1])
    push(rows, feet[2])
    for i = 1, #rows
        local down = i - 1
        if lift == 1 and i < #rows - 1
            down -= 1
        end
        for j = 1, STEP_WIDE
            local ink = rows[i][j]
            if ink != "."
                local colour = colourOf(keeperColours[ink], 1)
                Plush["setPixel"](image, column * STEP_WIDE + j - 1, row * STEP_HIGH + down + 1, colour[1], colour[2], colour[3], 255)
                if lift == 1 and i == #rows - 2
                    Plush["setPixel"](image, column * STEP_WIDE + j - 1, row * STEP_HIGH + down + 2, colour[1], colour[2], colour[3], 255)
                end
            end
        end
    end
end

function saveKeeper(name)
    local image = Plush["createImage"](STEP_WIDE * 3, STEP_HIGH * 3, 0, 0, 0, 0)
    for step = 1, 3
        local lift = 0
        if step > 1
            lift = 1
        end
        drawStep(image, step - 1, 0, sideView, sideFeet[step], lift)
        drawStep(image, step - 1, 1, frontView, plainFeet[step], lift)
        drawStep(image, step - 1, 2, backView, plainFeet[step], lift)
    end
    Plush["saveImage"](folder + "/" + name, image)
end

@@ A round light: alpha falls off towards the rim, and the colour goes from `pale` in the middle to `rim`.
function saveGlow(name, size, pale, rim)
    local image = Plush["createImage"](size, size, 0, 0, 0, 0)
    local inner = colourOf(pale, 1)
    local outer = colourOf(rim, 1)
    local middle = size \ 2
    for y = 0, size - 1
        for x = 0, size - 1
            local far = math["sqrt"]((x - middle) * (x - middle) + (y - middle) * (y - middle)) / (middle + 0.7)
            if far < 1
                local near = math["min"](1, (1 - far) * (1 - far) * 1.3)
                local ink = []
                for i = 1, 3
                    ink[i] = outer[i] + (inner[i] - outer[i]) * near
                end
                Plush["setPixel"](image, x, y, ink[1], ink[2], ink[3], 255 * near)
            end
        end
    end
    Plush["saveImage"](folder + "/" + name, image)
end
