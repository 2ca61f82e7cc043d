@@ A night for a test: `testNight` is called in its first frame, and the game ends behind it.

framesToDraw = []
realUpdate = Metal["updateInput"]

function Metal["updateInput"]()
    realUpdate()
    if frame == 2
        closeTitle()
        newNight(17)
        tideAge = 0
        endEbb()
        testNight()
        playing = false
    end
end

function lampNamed(name)
    for lamp in lampStates
        if lamp["name"] == name
            return lamp
        end
    end
end

runFile(Vesper["getPath"]() + "../Resources/scripts/visual-novel.vs")
