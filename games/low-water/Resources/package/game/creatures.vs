@@ Herons, eels and moths; their minds are written in Lua.

Lua["runFile"](append + "/minds/creatures.lua")
mothX = not
mothY = not
creaturesSeen = []

function hatchCreatures(seed)
    Lua["setVar"]("hatching", seed)
    Lua["runScript"]("hatch(hatching)", "creatures")
end

@@ Moths keep to the nearest lit window.
function chooseMothLight()
    mothX = not
    mothY = not
    local best = 160 * 160
    for name, home in pairs(homes)
        if home["light"] != not and squaredTo(home["lightX"], home["lightY"]) < best
            best = squaredTo(home["lightX"], home["lightY"])
            mothX = home["lightX"]
            mothY = home["lightY"]
        end
    end
end

function stepCreatures()
    if place["name"] != "village"
        creaturesSeen = []
        return not
    end
    chooseMothLight()
    tellLua()
    creaturesSeen = Lua["runScript"]("return stir()", "creatures")
    for one in creaturesSeen
        if one["startled"]
            playSound("flutter")
        end
    end
end

function showCreatures()
    for one in creaturesSeen
        local kind = one["kind"]
        if kind == "heron" and one["flies"]
            push(sprites, facing(one["x"], one["y"], one["z"], 16, 10, texture("heron-flies")))
        elseif kind == "heron"
            push(sprites, facing(one["x"], one["y"], one["z"], 8, 12, texture("heron")))
        elseif kind == "moth"
            push(sprites, facing(one["x"], one["y"], one["z"], 0.9, 0.9, texture("moth")))
        else
            push(sprites, lyingEel(one))
        end
    end
end

@@ Flat under the water, along its way.
function lyingEel(eel)
    local c = math["cos"](eel["way"])
    local s = math["sin"](eel["way"])
    local x = eel["x"]
    local y = eel["y"]
    local z = eel["z"]
    return quad([x + c * 5 + s * 2.4, y + s * 5 - c * 2.4, z], [x - c * 5 + s * 2.4, y - s * 5 - c * 2.4, z], [x - c * 5 - s * 2.4, y - s * 5 + c * 2.4, z], [x + c * 5 - s * 2.4, y + s * 5 + c * 2.4, z], texture("eel"))
end
