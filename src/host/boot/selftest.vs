@@ The self-test of a development tree, the settings chunk, and the log's place in the window's update.

if not VESPERBOOT_ENABLED
    vesperSelftest = vesperContentsIfPresent(Vesper["getPath"]() + "../Resources/scripts/vesperscript-selftest.vs")
    if vesperSelftest and vesperSelftest != ""
        Vesper["runScript"](vesperSelftest)
    end
end

framebufferScale = 0.5
skipwarning = false
renderQueue = {}
parallaxPoints = {}
VESPER_SLIDE_PROGRESS = {}
VESPER_SLIDE_TEXT = {}
