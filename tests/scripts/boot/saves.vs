pagenum = 12
previousMode = VESPER_GAME_VISUAL_NOVEL
oldAudio = not
print(click)                                @@ expect: not
Vesper["saveGame"](3)
base = Vesper["getPath"]() + "../Resources/volatile/save"
text = Vesper["contents"](base + "6.plush")
print(Vesper["contents"](base + "7.plush") == toString(Vesper["checksum"](text)))      @@ expect: true
pagenum = 0
mode = 0
chunk = vesperLoadChunkOrError(text, "save")
chunk()
print(pagenum, loadOffset, oldAudio, saveslot, mode, latched)       @@ expect: 12\t0\t0\t3\t54\tfalse
ok, why = pcall(Vesper["saveGame"], "../none/" + 1)
print(ok)                                   @@ expect: false
print(Vesper["replaceFile"](base + "9.plush", "kept"), Vesper["contents"](base + "9.plush"))    @@ expect: true\tkept
print(Vesper["replaceFile"](Vesper["getPath"]() + "nowhere/save", "lost"))                      @@ expect: false
