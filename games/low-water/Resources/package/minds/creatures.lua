-- Herons on the pond, eels in the stream, moths about whatever shines. Each goes by a few rules of its own.

herons = {}
eels = {}
moths = {}

local PERCHES = {{420, 266}, {512, 298}, {446, 330}, {90, 262}, {380, 258}}

function hatch(seed)
    math.randomseed(seed)
    herons = {}
    eels = {}
    moths = {}
    for i = 1, 2 do
        local perch = PERCHES[i * 2 - 1]
        herons[i] = {perch = i * 2 - 1, x = perch[1], y = perch[2], z = -3, calm = 60, flight = 0}
    end
    for i = 1, 4 do
        eels[i] = {x = 60 + i * 95, y = 252, way = math.random(0, 628) / 100, turn = 0}
    end
    for i = 1, 5 do
        moths[i] = {angle = i * 1.3, reach = 3 + i * 0.6}
    end
end

local function farFrom(thing)
    local x = thing.x - seen.x
    local y = thing.y - seen.y
    return math.sqrt(x * x + y * y)
end

-- The perch farthest from the player that no other heron has.
local function choosePerch(heron)
    local best = heron.perch
    local most = 0
    for i, perch in ipairs(PERCHES) do
        local taken = false
        for j, other in ipairs(herons) do
            if other.perch == i then taken = true end
        end
        local far = math.abs(perch[1] - seen.x) + math.abs(perch[2] - seen.y)
        if not taken and far > most and far < 360 then
            best = i
            most = far
        end
    end
    return best
end

local function stirHeron(heron)
    if heron.flight > 0 then
        heron.flight = heron.flight - 1
        local perch = PERCHES[heron.perch]
        heron.x = heron.x + (perch[1] - heron.x) / (heron.flight + 1)
        heron.y = heron.y + (perch[2] - heron.y) / (heron.flight + 1)
        heron.z = -3 + 26 * math.sin(3.1416 * heron.flight / heron.long)
        return
    end
    if farFrom(heron) < 46 and seen.moved > 0.4 then
        heron.perch = choosePerch(heron)
        heron.long = 80
        heron.flight = 80
        heron.startled = true
    end
end

local function stirEel(eel)
    if math.random(1, 40) == 1 then eel.turn = math.random(-8, 8) / 100 end
    eel.way = eel.way + eel.turn
    local x = eel.x + math.cos(eel.way) * 0.5
    local y = eel.y + math.sin(eel.way) * 0.5
    if x < 44 or x > 520 or y < 246 or y > 268 then
        eel.way = eel.way + 0.2
        eel.turn = 0
    else
        eel.x = x
        eel.y = y
    end
end

function stir()
    local answer = {}
    for i, heron in ipairs(herons) do
        heron.startled = false
        stirHeron(heron)
        answer[#answer + 1] = {kind = "heron", x = heron.x, y = heron.y, z = heron.z, flies = heron.flight > 0, startled = heron.startled}
    end
    for i, eel in ipairs(eels) do
        stirEel(eel)
        answer[#answer + 1] = {kind = "eel", x = eel.x, y = eel.y, z = -5.5, way = eel.way}
    end
    if seen.lightX ~= nil then
        for i, moth in ipairs(moths) do
            local t = seen.frame * 0.05 + moth.angle
            answer[#answer + 1] = {kind = "moth", x = seen.lightX + math.cos(t) * moth.reach, y = seen.lightY + math.sin(t * 1.3) * moth.reach, z = 9 + math.sin(t * 2.1) * 2.6}
        end
    end
    return answer
end
