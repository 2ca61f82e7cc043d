@@ Whether some steps from a spot lead on.

function walks(name, x, y, turn, steps)
    standAt(x, y, turn)
    local c = math["cos"](turn) * 1.5
    local s = math["sin"](turn) * 1.5
    for i = 1, steps
        tryStep(c, s)
        settleEye()
    end
    local far = math["sqrt"](squaredTo(x, y))
    return far > steps * 1.4
end

function testNight()
    print("house", walks("house", 240, 504, 3.1416, 20))
    print("bank", walks("bank", 336, 560, 0, 40))
    print("stream", walks("stream", 200, 284, -1.5708, 20))
    print("rail", walks("rail", 280, 256, 3.1416, 12))
    print("gravestone", walks("gravestone", 264, 90, -1.5708, 14))
    arriveAt("church", not)
    print("pillar", walks("pillar", 40, 92, -1.5708, 14))
    arriveAt("village", not)
    local crossed = walks("bridge", 288, 300, -1.5708, 60)
    print("bridge", crossed, playerY < 216)
    arriveAt("church", not)
    print("altar", walks("altar", 88, 64, -1.5708, 20))
end

runFile("night.vs")
