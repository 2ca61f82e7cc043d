@@ The settings chunk is a plain script.
vesperSettings = vesperContentsIfPresent(Vesper["getPath"]() + "../Resources/volatile/save-1.plush")
if vesperSettings
    vesperSettings = vesperLoadChunkOrError(vesperSettings, "save-1.plush")
    vesperSettings()
end

if Metal and Metal["forceUpdate"]
    vesperForceUpdate = Metal["forceUpdate"]
    function Metal["forceUpdate"]()
        Vesper["flushDebugLog"]()
        return vesperForceUpdate()
    end
end

append = Vesper["getPath"]() + "../Resources/package"
nobmp = append + "/ui/no.png"
blankpc = append + "/ui/blank.png"
VESPER_FRAMEBUFFER = Plush["createImage"](VESPER_SCREEN_X, VESPER_SCREEN_Y, 0, 0, 0, 0)
