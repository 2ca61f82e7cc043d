@@ Keeps a night in the vaults, comes back to it, and spoils it.

function testNight()
    os["remove"](savePath())
    print(stateOfSave(), isThere(savePath()))
    Lua["setVar"]("settling", "rose")
    bringHome("gold", "oar")
    playerX = 280
    playerY = 540
    lampStates = []
    arriveAt("vaults", not)
    stepLamps()
    Lua["runScript"]("for i, lamp in ipairs(lamps) do if lamp.name == 'rose' then lamp.state = 'follows' lamp.joined = 1 end end", "test")
    stepLamps()
    lookAround()
    lanternLit = false
    print((keepNight() and stateOfSave()), contains(night["home"], "gold"))
    local families = night["families"]
    local stones = night["stones"]
    local seen = seenText("vaults")
    newNight(4242)
    loadNight()
    print("same names", night["families"]["oar"] == families["oar"] and night["families"]["wheel"] == families["wheel"], night["stones"][3] == stones[3])
    stepLamps()
    print(place["name"], night["home"][1], lampNamed("rose")["state"], lanternLit, seenText("vaults") == seen and homes["oar"]["light"] != not)
    local text = Vesper["contents"](savePath())
    Vesper["replaceFile"](savePath(), text + " ")
    print(stateOfSave())
    Vesper["replaceFile"](savePath(), "{\"place\": \"elsewhere\"}")
    print("another telling", loadNight())
end

runFile("night.vs")
