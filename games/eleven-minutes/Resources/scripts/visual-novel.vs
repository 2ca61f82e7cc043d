@@ Eleven Minutes Dark: a clock-mender, a lighthouse that has begun to sleep, and whoever folds the leaves.

VESPER_GAME_NAME = "Eleven Minutes Dark"
gameFolder = append + "/game/"
for i, part in ipairs(["notices", "lettering", "pictures", "sounds", "memory", "saves", "settings", "keys", "items", "stage", "pages", "box", "curtain", "title", "pause", "slots", "options", "endings", "frames"])
    runFile(gameFolder + part + ".vs")
end
storyFolder = append + "/story/"
for i, part in ipairs(["people", "places", "1-lighthouse", "2-library", "3-grove", "4-night", "5-endings"])
    runFile(storyFolder + part + ".vs")
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
playGame()
Audio["clear"]()
closeFonts()
Metal["killWindow"]()
