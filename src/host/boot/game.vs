@@ From here on it is the game's. What its set-up raises ends the start as it is; what the game itself raises
@@ goes the same way once it has been caught.

runFile(Vesper["getPath"]() + "../Resources/package/graphics.vs")

vesperFinished, vesperReason = pcall(runFile, Vesper["getPath"]() + "../Resources/scripts/" + VESPER_SCRIPT)
if not vesperFinished
    error(vesperReason)
end
