v = Vesper
spec = [$1F, 4]
mediumtestf = [$2F, 1]
print(v["resolveFontSpec"](spec) == spec, v["resolveFontSpec"]("spec") == spec, v["resolveFontSpec"]("[$3F, 7]")[2])    @@ expect: true\ttrue\t7
print(v["resolveFontSpec"]("nothing") == mediumtestf, v["resolveFontSpec"]("= broken") == mediumtestf)                 @@ expect: true\ttrue
mediumtestf = not
print(v["resolveFontSpec"](5), v["fontYOffset"](spec), v["fontYOffset"](not), v["fontYOffset"]([$1F]))                 @@ expect: not\t4\t0\t0
print(v["resolveColourSpec"]("cstrawberry")["value"], v["resolveColourSpec"]("{1, 2, 3, 4}")["value"])                 @@ expect: [255, 90, 120, 255]\t[1, 2, 3, 4]
print(v["resolveColourSpec"]([9, 9, 9, 9])["value"], v["resolveColourSpec"]()["value"])                                @@ expect: [9, 9, 9, 9]\t[255, 255, 255, 255]
Plush["saveImage"](append + "/a.png", Plush["createImage"](3, 2, 1, 2, 3, 4))
image, h, w = v["loadPNGWithFallback"]("missing.png", append + "/a.png")
print(h, w, Plush["checkImage"](image))                                     @@ expect: 2\t3\ttrue
ok, why = pcall(v["loadPNGWithFallback"], "missing.png", not)
print(ok, string["find"](why, "failed to load image: ", 1, true) != not)      @@ expect: false\ttrue
entry = {type = VESPER_IMAGE, surface = image, text = "", text2 = "né!", identifier = "id", x = 1, y = 2}
print(v["slideStateKey"](entry, 3))                                         @@ expect: 3:id:1:2
print(v["stepSlideText"](entry, 3), entry["text"])                          @@ expect: n\t3\t1\tné!
print(v["stepSlideText"](entry, 3), v["stepSlideText"](entry, 3))           @@ expect: né\t3\t2\tné!\t3\t3
entry["text"] = "other"
print(v["stepSlideText"](entry, 3))                                         @@ expect: o\t5\t1
weather = {type = VESPER_WEATHER, surface = Plush["createImage"](1, 1, 0, 0, 0, 0)}
renderQueue = [entry, weather]
v["pushButton"](0, 9, 0, 9, 1)
v["cleanup"]()
print(Plush["checkImage"](image), Plush["checkImage"](weather["surface"]), #renderQueue, v["checkButton"](5, 5), drawFrame)      @@ expect: false\ttrue\t0\t0\tfalse
