@@ Tells what the game found missing, then walks a little without it.

function testNight()
    playSound("handbell")
    playPeal()
    novelPlayMusic("lake")
    for text in missing
        print(text)
    end
    drawFrame()
    print(Plush["checkImage"](view))
end

runFile("night.vs")
