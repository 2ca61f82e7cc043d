@@ The library for novels. A game runs this file, tells its people, places and scenes, and calls Novel["play"].
@@ docs/novels.md is for authors; each part here says what it holds at its top.

Novel = {}
@@ Set by whoever plays without waiting for frames.
fastForward = fastForward or false
novelFolder = Vesper["getPath"]() + "../Libraries/novel/"
for novelPart in ["text", "po", "story", "reader", "find", "translation", "settings", "saves", "thumbnails", "notices", "input", "sound", "drawing", "stage", "weather", "box", "items", "screens", "reading", "slots", "options", "history", "cards", "aloud", "loop", "live"]
    runFile(novelFolder + novelPart + ".vs")
end
