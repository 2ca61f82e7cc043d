-- Minds of the five lamps. The game tells in `seen` what there is to see; `think` answers with where each lamp is
-- and what it did. Distances in units of the places, times in frames.

lamps = {}
trail = {}
still = 0

local NEAR = 64
local HEARD = 150
local GAP = 16

local function distance(lamp)
    local x = lamp.x - seen.x
    local y = lamp.y - seen.y
    return math.sqrt(x * x + y * y)
end

local function goTo(lamp, x, y, z, share)
    lamp.x = lamp.x + (x - lamp.x) * share
    lamp.y = lamp.y + (y - lamp.y) * share
    lamp.z = lamp.z + (z - lamp.z) * share
end

local function join(lamp)
    lamp.state = "follows"
    lamp.joined = joinedCount + 1
    joinedCount = joinedCount + 1
    lamp.did = "joins"
end

local tempers = {}

-- Comes to the bell.
function tempers.bold(lamp, far)
    goTo(lamp, lamp.homeX, lamp.homeY, 10, 0.05)
    if seen.rang and far < HEARD then join(lamp) end
end

-- Flies from one perch to the next when it is rung for from near; after the last it has had its game.
function tempers.playful(lamp, far)
    local perch = lamp.perches[lamp.perch]
    goTo(lamp, perch[1], perch[2], 14, 0.07)
    if seen.rang and far < NEAR then
        if lamp.perch == #lamp.perches then
            join(lamp)
        else
            lamp.perch = lamp.perch + 1
            lamp.did = "hops"
        end
    end
end

-- Comes to who has rung and stands still; whoever walks near it sends it over the water.
function tempers.shy(lamp, far)
    if seen.rang and far < HEARD then lamp.called = 260 end
    lamp.called = math.max(0, lamp.called - 1)
    if still < 24 then
        if far < 56 and lamp.fright == 0 then
            lamp.fright = 70
            lamp.perch = lamp.perch % #lamp.perches + 1
            lamp.did = "startled"
            lamp.called = 0
        end
    elseif lamp.called > 0 and still > 40 then
        local step = math.min(1, 0.9 / math.max(far, 1))
        goTo(lamp, seen.x, seen.y, 9, step)
        if far < 15 then join(lamp) end
        return
    end
    lamp.fright = math.max(0, lamp.fright - 1)
    local perch = lamp.perches[lamp.perch]
    goTo(lamp, perch[1], perch[2], 11, 0.03)
end

-- Wakes at the third stroke, if they come one upon the other.
function tempers.asleep(lamp, far)
    goTo(lamp, lamp.homeX, lamp.homeY, 4 + lamp.strokes * 2, 0.08)
    lamp.patience = math.max(0, lamp.patience - 1)
    if lamp.patience == 0 then lamp.strokes = 0 end
    if seen.rang and far < NEAR then
        lamp.strokes = lamp.strokes + 1
        lamp.patience = 110
        if lamp.strokes == 3 then
            join(lamp)
        else
            lamp.did = "stirs"
        end
    end
end

-- Will not come to a light brighter than its own.
function tempers.humble(lamp, far)
    if seen.lantern and far < 90 then
        goTo(lamp, lamp.homeX, lamp.homeY, 30, 0.05)
        if seen.rang then lamp.did = "shrinks" end
        return
    end
    goTo(lamp, lamp.homeX, lamp.homeY, 12, 0.04)
    if seen.rang and far < HEARD then join(lamp) end
end

-- A lamp for each of the list: name, temper, place, x, y, state, and perches for those who have some.
function begin(list)
    lamps = {}
    trail = {}
    joinedCount = 0
    for i, lamp in ipairs(list) do
        lamp.homeX = lamp.x
        lamp.homeY = lamp.y
        lamp.z = 10
        lamp.perch = 1
        lamp.called = 0
        lamp.fright = 0
        lamp.strokes = 0
        lamp.patience = 0
        lamp.met = lamp.state ~= "waits"
        if lamp.state == "follows" then
            joinedCount = joinedCount + 1
            lamp.joined = joinedCount
        end
        lamps[i] = lamp
    end
end

-- Those who follow go where the player went, one behind the other.
local function follow(lamp, place)
    local at = math.max(1, #trail - GAP * place + 1)
    local point = trail[at]
    if point == nil then point = {seen.x, seen.y} end
    goTo(lamp, point[1], point[2], seen.foot + 8 + math.sin(seen.frame * 0.07 + place * 2) * 0.9, 0.12)
end

local function keepTrail()
    if seen.moved > 0.05 then
        still = 0
    else
        still = still + 1
    end
    local last = trail[#trail]
    if last == nil or math.abs(last[1] - seen.x) + math.abs(last[2] - seen.y) > 1.2 then
        trail[#trail + 1] = {seen.x, seen.y}
    end
    if #trail > 400 then
        local kept = {}
        for i = #trail - 199, #trail do kept[#kept + 1] = trail[i] end
        trail = kept
    end
end

-- A place was left: who follows comes along.
function arrive(place, x, y)
    trail = {}
    for i, lamp in ipairs(lamps) do
        if lamp.state == "follows" then
            lamp.place = place
            lamp.x = x
            lamp.y = y
        end
    end
end

function settle(name)
    for i, lamp in ipairs(lamps) do
        if lamp.name == name then lamp.state = "home" end
    end
end

function think()
    keepTrail()
    local order = {}
    for i, lamp in ipairs(lamps) do
        lamp.did = nil
        if lamp.state == "follows" then order[#order + 1] = lamp end
    end
    table.sort(order, function(a, b) return a.joined < b.joined end)
    for i, lamp in ipairs(order) do follow(lamp, i) end
    local answer = {}
    for i, lamp in ipairs(lamps) do
        local far = distance(lamp)
        if lamp.state == "waits" and lamp.place == seen.place then
            tempers[lamp.temper](lamp, far)
            if not lamp.met and lamp.did == nil and far < NEAR then
                lamp.met = true
                lamp.did = "met"
            end
        end
        local bob = math.sin(seen.frame * 0.06 + i * 1.7) * 0.8
        answer[i] = {name = lamp.name, state = lamp.state, place = lamp.place, x = lamp.x, y = lamp.y, z = lamp.z + bob, far = far, did = lamp.did or ""}
    end
    return answer
end
