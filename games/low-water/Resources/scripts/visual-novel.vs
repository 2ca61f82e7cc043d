@@ Low Water: one night in which a drowned village lies dry, and five lamps look for their windows.

VESPER_GAME_NAME = "Low Water"
libraryFolder = Vesper["getPath"]() + "../Libraries/novel/"
for i, part in ipairs(["textures", "sounds", "keys", "lettering", "notices", "items", "quads", "world", "sky", "view", "chart", "walk", "words", "book", "night", "lamps", "creatures", "acting", "saves", "hud", "title", "pause", "options", "tide", "frames"])
    runFile(append + "/game/" + part + ".vs")
end
for i, part in ipairs(["village", "church", "vaults"])
    runFile(append + "/places/" + part + ".vs")
end

hasWindow = false
if Metal
    hasWindow = Metal["spawnWindow"](VESPER_GAME_NAME, VESPER_SCREEN_X, VESPER_SCREEN_Y)
end
if not hasWindow
    closeFonts()
    print(VESPER_GAME_NAME + " cannot open a window here.")
    error("no window")
end
Metal["setScaling"]("smooth")
playGame()
Audio["clear"]()
closeFonts()
Metal["killWindow"]()
