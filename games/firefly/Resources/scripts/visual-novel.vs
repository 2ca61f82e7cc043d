@@ Firefly Glade: a keeper walks a moonlit glade and gathers the fireflies until it dawns.

gameFolder = append + "/game/"
runFile(gameFolder + "keys.vs")
runFile(gameFolder + "sounds.vs")
runFile(gameFolder + "stage.vs")
runFile(gameFolder + "lantern.vs")
runFile(gameFolder + "daybreak.vs")
runFile(gameFolder + "words.vs")
runFile(gameFolder + "keeper.vs")
runFile(gameFolder + "fireflies.vs")
runFile(gameFolder + "rounds.vs")

hasWindow = false
if Metal
    hasWindow = Metal["spawnWindow"]("Firefly Glade", 960, 544)
end
if not hasWindow
    print("Firefly Glade cannot open a window here.")
    error("no window")
end
playNights()
if MIXER_ENABLED
    Audio["clear"]()
end
Metal["killWindow"]()
