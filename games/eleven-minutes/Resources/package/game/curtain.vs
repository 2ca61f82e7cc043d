@@ Dissolves: the frame as it was, over the frame as it is, ever thinner.

curtainLeft = 0
curtainLength = 1
thinner = Plush["compileShader"]("a = level")

function dropCurtain()
    if curtain != not
        Plush["killImage"](curtain)
    end
    curtain = not
    curtainLeft = 0
end

@@ A box that stays up keeps its place: words that dissolve into words cannot be read.
function dissolve(length, aroundBox)
    dropCurtain()
    curtainAroundBox = aroundBox == true
    curtain = Plush["createImage"](VESPER_SCREEN_X, VESPER_SCREEN_Y, 0, 0, 0, 255)
    Plush["blitImage"](curtain, VESPER_FRAMEBUFFER, 0, 0, false, 1, 0)
    curtainLength = length
    curtainLeft = length
end

function blitCurtain(x, y, w, h)
    Plush["blitImageRect"](VESPER_FRAMEBUFFER, curtain, x, y, w, h, x, y, true, 1)
end

function drawCurtain()
    if curtainLeft == 0
        return not
    end
    local share = curtainLeft / curtainLength
    Plush["shader"](curtain, thinner, {level = share * share * (3 - 2 * share)}, 1, true)
    if curtainAroundBox
        local below = BOX_Y + BOX_HIGH
        blitCurtain(0, 0, VESPER_SCREEN_X, BOX_Y)
        blitCurtain(0, BOX_Y, BOX_X, BOX_HIGH)
        blitCurtain(BOX_X + BOX_WIDE, BOX_Y, VESPER_SCREEN_X - BOX_X - BOX_WIDE, BOX_HIGH)
        blitCurtain(0, below, VESPER_SCREEN_X, VESPER_SCREEN_Y - below)
    else
        blitCurtain(0, 0, VESPER_SCREEN_X, VESPER_SCREEN_Y)
    end
    curtainLeft -= 1
    if curtainLeft == 0
        dropCurtain()
    end
end
