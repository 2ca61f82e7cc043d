@@ The picture in the window. Every pixel of the glade stands in one plane; what moves is drawn over it and
@@ taken away again before the next frame.

screen = Plush["createImage"](WIDE, HIGH, 0, 0, 0, 255)
plane = []

@@ Rectangles drawn over since the last frame.
dirtyLeft = []
dirtyTop = []
dirtyRight = []
dirtyBottom = []

function restore(left, top, right, bottom)
    local firstX = math["max"](0, left)
    local lastX = math["min"](WIDE - 1, right)
    for y = math["max"](0, top), math["min"](HIGH - 1, bottom)
        local p = y * WIDE + firstX
        for x = firstX, lastX
            p += 1
            local k = p + plane[p]
            setPixel(screen, x, y, red[k], green[k], blue[k], 255)
        end
    end
end

function fillStage(wanted)
    for i = 1, PIXELS
        plane[i] = wanted
    end
    restore(0, 0, WIDE - 1, HIGH - 1)
end

function markDirty(left, top, wide, high)
    push(dirtyLeft, left)
    push(dirtyTop, top)
    push(dirtyRight, left + wide - 1)
    push(dirtyBottom, top + high - 1)
end

function restoreDirty()
    for i = 1, #dirtyLeft
        restore(dirtyLeft[i], dirtyTop[i], dirtyRight[i], dirtyBottom[i])
    end
    dirtyLeft = []
    dirtyTop = []
    dirtyRight = []
    dirtyBottom = []
end

@@ Opaque pixels. `base` is the row it stands on: whatever stands nearer hides it.
function drawSprite(sprite, left, top, base)
    local xs = sprite["x"]
    local ys = sprite["y"]
    local rs = sprite["r"]
    local gs = sprite["g"]
    local bs = sprite["b"]
    for i = 1, #xs
        local x = left + xs[i]
        local y = top + ys[i]
        if x >= 0 and x < WIDE and y >= 0 and y < HIGH
            if depth[y * WIDE + x + 1] <= base
                setPixel(screen, x, y, rs[i], gs[i], bs[i], 255)
            end
        end
    end
    markDirty(left, top, sprite["wide"], sprite["high"])
end

@@ Soft pixels over what is there; a strength of 1 takes the sprite's alpha as it is.
function drawSoft(sprite, left, top, base, strength)
    local xs = sprite["x"]
    local ys = sprite["y"]
    local rs = sprite["r"]
    local gs = sprite["g"]
    local bs = sprite["b"]
    local alphas = sprite["a"]
    for i = 1, #xs
        local x = left + xs[i]
        local y = top + ys[i]
        if x >= 0 and x < WIDE and y >= 0 and y < HIGH
            if depth[y * WIDE + x + 1] <= base
                local share = alphas[i] * strength
                local r, g, b = getPixel(screen, x, y)
                setPixel(screen, x, y, r + (rs[i] - r) * share, g + (gs[i] - g) * share, b + (bs[i] - b) * share, 255)
            end
        end
    end
    markDirty(left, top, sprite["wide"], sprite["high"])
end
