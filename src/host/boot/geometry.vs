@@ Cubes, turns and light for tile scenes.

function vesperCubeFace(tl, tr, bl, br)
    return {topleft = tl, topright = tr, bottomleft = bl, bottomright = br, tl = tl, tr = tr, bl = bl, br = br, texture = 0}
end

@@ Six faces: the sides at far y, near y, far x, near x, then top and bottom.
function Plush["createCube"](x, y, width, height, verticaloffset)
    local h = width / 2
    local cx = x * width
    local cy = y * width
    local low = verticaloffset
    local high = verticaloffset + height
    local faces = []
    push(faces, vesperCubeFace({cx - h, cy + h, high}, {cx + h, cy + h, high}, {cx - h, cy + h, low}, {cx + h, cy + h, low}))
    push(faces, vesperCubeFace({cx + h, cy - h, high}, {cx - h, cy - h, high}, {cx + h, cy - h, low}, {cx - h, cy - h, low}))
    push(faces, vesperCubeFace({cx + h, cy + h, high}, {cx + h, cy - h, high}, {cx + h, cy + h, low}, {cx + h, cy - h, low}))
    push(faces, vesperCubeFace({cx - h, cy - h, high}, {cx - h, cy + h, high}, {cx - h, cy - h, low}, {cx - h, cy + h, low}))
    push(faces, vesperCubeFace({cx - h, cy - h, high}, {cx + h, cy - h, high}, {cx - h, cy + h, high}, {cx + h, cy + h, high}))
    push(faces, vesperCubeFace({cx - h, cy + h, low}, {cx + h, cy + h, low}, {cx - h, cy - h, low}, {cx + h, cy - h, low}))
    return faces
end

function Plush["translate"](quad, x, y, z)
    for index, face in ipairs(quad)
        for n, corner in ipairs({"tl", "tr", "bl", "br"})
            local point = face[corner]
            point[1] += x
            point[2] += y
            point[3] += z
        end
    end
end

@@ About X, then Y, then Z, each by its angle in degrees.
function Plush["rotate"](quad, sx, sy, sz, rotX, rotY, rotZ)
    local sinX = math["sin"](math["rad"](rotX))
    local cosX = math["cos"](math["rad"](rotX))
    local sinY = math["sin"](math["rad"](rotY))
    local cosY = math["cos"](math["rad"](rotY))
    local sinZ = math["sin"](math["rad"](rotZ))
    local cosZ = math["cos"](math["rad"](rotZ))
    for index, face in ipairs(quad)
        for n, corner in ipairs({"tl", "tr", "bl", "br"})
            local point = face[corner]
            local x = point[1] - sx
            local y = point[2] - sy
            local z = point[3] - sz
            y, z = y * cosX - z * sinX, y * sinX + z * cosX
            x, z = x * cosY + z * sinY, z * cosY - x * sinY
            x, y = x * cosZ - y * sinZ, x * sinZ + y * cosZ
            point[1] = sx + x
            point[2] = sy + y
            point[3] = sz + z
        end
    end
end

function Vesper["centreOn"](quadMap, x, y, z)
    Plush["translate"](quadMap, x * 16 - 8, y * 16 - 8, z)
    return quadMap
end

@@ Tiles are 16 units wide; only a 0 is free.
function Plush["checkWall"](x, y, map)
    local tileX = Vesper["round"]((x + 8) / 16, 0)
    local tileY = Vesper["round"]((y + 8) / 16, 0)
    if debuggerdeep
        vesperLogMap(map, tileX, tileY)
    end
    return map[tileX][tileY] != 0
end

function vesperLogMap(map, tileX, tileY)
    for mapX, column in ipairs(map)
        local row = ""
        for mapY, tile in ipairs(column)
            if mapX == tileX and mapY == tileY
                row += "X"
            else
                row += tile
            end
        end
        Vesper["logPush"](row)
    end
end

function vesperChannel(value)
    return math["floor"](Vesper["clamp"](value, 0, 255) + 0.5)
end

@@ The colour of a black body, 0 to 255 a channel.
function Plush["KsRGB"](kelvin, clamp)
    if clamp
        kelvin = Vesper["clamp"](kelvin, 1000, 40000)
    end
    local t = kelvin / 100
    local r = 255
    local g = 0
    local b = 255
    if t > 66
        r = 329.698727446 * (t - 60) ^ -0.1332047592
        g = 288.1221695283 * (t - 60) ^ -0.0755148492
    else
        g = 99.4708025861 * math["log"](t) - 161.1195681661
    end
    if t <= 19
        b = 0
    elseif t < 66
        b = 138.5177312231 * math["log"](t - 10) - 305.0447927307
    end
    return vesperChannel(r), vesperChannel(g), vesperChannel(b)
end
