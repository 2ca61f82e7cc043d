@@ Faces of the scene.

function quad(tl, tr, br, bl, number)
    return {tl = tl, tr = tr, br = br, bl = bl, texture = number}
end

@@ Upright, between two points of the ground.
function upright(ax, ay, bx, by, z, high, number)
    return quad([ax, ay, z + high], [bx, by, z + high], [bx, by, z], [ax, ay, z], number)
end

@@ Flat, its upper left corner first as seen from above with y downwards.
function flat(ax, ay, bx, by, z, number)
    return quad([ax, ay, z], [bx, ay, z], [bx, by, z], [ax, by, z], number)
end

@@ How far pictures stand off their walls, so that the two never mix.
PROUD = 0.15

@@ A picture on the face of a wall tile, its middle `along` units from the left as one looks at it.
function onWall(side, tileX, tileY, along, z, wide, high, number)
    local left = along - wide / 2
    local right = along + wide / 2
    local x = tileX * 16
    local y = tileY * 16
    if side == "south"
        return upright(x + left, y + 16 + PROUD, x + right, y + 16 + PROUD, z, high, number)
    elseif side == "north"
        return upright(x + 16 - left, y - PROUD, x + 16 - right, y - PROUD, z, high, number)
    elseif side == "east"
        return upright(x + 16 + PROUD, y + 16 - left, x + 16 + PROUD, y + 16 - right, z, high, number)
    end
    return upright(x - PROUD, y + left, x - PROUD, y + right, z, high, number)
end

@@ The point of the ground some units before such a picture.
function beforeWall(side, tileX, tileY, along, units)
    local x = tileX * 16
    local y = tileY * 16
    if side == "south"
        return x + along, y + 16 + units
    elseif side == "north"
        return x + 16 - along, y - units
    elseif side == "east"
        return x + 16 + units, y + 16 - along
    end
    return x - units, y + along
end

@@ A picture that faces the player, by the middle of its foot.
function facing(x, y, z, wide, high, number)
    local across = -math["sin"](playerTurn) * wide / 2
    local along = math["cos"](playerTurn) * wide / 2
    return upright(x - across, y - along, x + across, y + along, z, high, number)
end
