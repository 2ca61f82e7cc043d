@@ Entries that fail their frame, as docs/render-queue.md tells them.
red = append + "/red.png"
picture = Plush["createImage"](4, 4, 255, 0, 0, 255)
Plush["saveImage"](red, picture)
nobmp = red
serif = [Font["loadFont"]("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf", 20), 0]
function killed()
    local image = Plush["createImage"](4, 4, 255, 0, 0, 255)
    Plush["killImage"](image)
    return image
end
function attempt(entry)
    renderQueue = [entry]
    local ok, why = pcall(Vesper["renderStack"])
    print(ok, why)
end

attempt({type = VESPER_IMAGE, layer = 1, text = red})                           @@ expect: false\tPlush.blitImage: x must be numeric
attempt({type = VESPER_IMAGE, layer = 1, text = red, x = 0, y = 0, scale = "a"})    @@ expect: false\tPlush.blitImage: scale must be numeric
attempt({type = VESPER_TEXT, layer = 1, text = "a", font = serif})               @@ expect: false\tUnsupported operation '-' between types
attempt({type = VESPER_TEXT, layer = 1, text = "a", font = serif, colour = [1, 2], x = 0, y = 0})      @@ expect: false\tFont.renderText: b must be numeric
attempt({type = VESPER_TEXT, layer = 1, text = "a", font = serif, surface = killed(), x = 0, y = 0})       @@ expect: true\tnot
attempt({type = VESPER_CHARACTER1, layer = 1, surface = killed(), w = 4, h = 4})     @@ expect: false\tPlush.blitImage: image must be a valid image

parallaxPoints = {}
attempt({type = VESPER_PARALLAX})                                               @@ expect: false\tUnsupported operation '*' between types

attempt({type = VESPER_WEATHER, layer = 1, text = red})                          @@ expect: false\tCannot compare not with int
function flake(speed)
    return {type = VESPER_WEATHER, layer = 1, text = red, x = 0, y = 9, w = 3, h = 3, fw = speed, font = 9, colour = 0, rotation = 0}
end
attempt(flake(0))                                                               @@ expect: false\trandom function requires a positive maximum value
attempt(flake(-3))                                                              @@ expect: false\tCannot compare not with not
weatherStart = -40
weatherEnd = 560
attempt(flake(-3))                                                              @@ expect: true\tnot
