@@ What each lamp wants before it comes along.

function stand(x, y)
    playerX = x
    playerY = y
end

function ring(name, wait)
    rangNow = true
    frame += 1
    stepLamps()
    local did = lampNamed(name)["did"]
    for i = 1, wait
        movedNow = 0
        stepLamps()
    end
    return did
end

function state(name)
    return lampNamed(name)["state"]
end

function testNight()
    stand(280, 540)
    ring("gold", 1)
    print("gold", state("gold"))
    for i, perch in ipairs([[100, 484], [72, 520], [132, 452]])
        stand(perch[1] + 10, perch[2])
        ring("rose", 60)
    end
    local before = state("rose")
    stand(168, 460)
    ring("rose", 1)
    print("rose", before, state("rose"))
    stand(410, 296)
    movedNow = 1.7
    stepLamps()
    local did = lampNamed("green")["did"]
    ring("green", 200)
    print("green", did, state("green"))
    arriveAt("vaults", [vaultEnd[1], vaultEnd[2], 0])
    local states = []
    for i = 1, 3
        ring("violet", 20)
        push(states, state("violet"))
    end
    print("violet", states[1], states[2], states[3])
    arriveAt("church", not)
    stand(88, 60)
    ring("blue", 10)
    local lit = state("blue")
    lanternLit = false
    ring("blue", 10)
    print("blue", lit, state("blue"))
end

runFile("night.vs")
