@@ Paints every picture of the game.
@@     vesper run games/firefly/art/make_art.vs [FOLDER]
@@ The same pictures come out every time, byte for byte.

folder = arguments[1] or "games/firefly/Resources/package/images"

runFile("canvas.vs")
runFile("scene.vs")
runFile("trees.vs")
runFile("undergrowth.vs")
runFile("keeper.vs")
runFile("letters.vs")

math["randomseed"](20417)
prepareNoise()
paintSky()
paintHills()
paintMist()
paintMeadow()
paintPond()
paintTufts()
paintStones()
paintTrees()
paintReeds()
paintMushrooms()
paintBrambles()

saveScene("glade-night.png", NIGHT)
saveScene("glade-lit.png", LIT)
saveScene("glade-dawn.png", DAWN)
saveMap("glade-map.png")
saveKeeper("keeper.png")
saveGlow("glow.png", 11, "fcffdc", "a8f04c")
saveGlow("spark.png", 5, "fcffdc", "d8f060")
saveGlow("lantern.png", 15, "fff0b4", "ff9c30")
saveGlow("shadow.png", 9, "040810", "040810")
saveLetters("letters.png")
