@@ Text that stands and text that slides. Ticks are counted instead of heard.
ink = {200, 30, 60, 255}
serif = [Font["loadFont"]("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf", 20), 3]
function Vesper["inked"]()
    local count = 0
    for y = 0, 60
        for x = 0, 240
            local r, g, b, a = Plush["getPixel"](VESPER_FRAMEBUFFER, x, y)
            if a > 0
                count += 1
            end
        end
    end
    return count
end
function wipe()
    Plush["killImage"](VESPER_FRAMEBUFFER)
    VESPER_FRAMEBUFFER = Plush["createImage"](VESPER_SCREEN_X, VESPER_SCREEN_Y, 0, 0, 0, 0)
end

surface, w, h = Vesper["buildTextSurface"]("Hi", "serif", ink)
print(Plush["imageSize"](surface), w, h)                                @@ expect: 21\t24\t21\t24
differs = 0
for y = 0, h - 1
    for x = 0, w - 1
        r, g, b = Plush["getPixel"](surface, x, y)
        if r != 200 or g != 30 or b != 60
            differs += 1
        end
    end
end
print(differs)                                                          @@ expect: 0
print(Vesper["buildTextSurface"]("Hi", serif[1], ink) != not, Vesper["buildTextSurface"]("", serif, ink))           @@ expect: true\tnot\t0\t0
print(Vesper["buildTextSurface"]("Hi", not, ink), Vesper["buildTextSurface"](5, serif, ink))        @@ expect: not\t0\t0\tnot\t0\t0

@@ Put in the middle once, raised by the font's offset once, an image from then on.
entry = {type = VESPER_TEXT, layer = 4, text = "Hi", font = serif, colour = "ink", x = 100, y = 20, fw = 60}
renderQueue = [entry]
Vesper["renderStack"]()
print(entry["type"] == VESPER_IMAGE, entry["x"], entry["y"], entry["w"], entry["fw"])      @@ expect: true\t119.500000\t17\t21\tnot
first = Vesper["inked"]()
wipe()
Vesper["renderStack"]()
print(entry["x"], entry["y"], Vesper["inked"]() == first and first > 20)             @@ expect: 119.500000\t17\ttrue

@@ Without a font there is nothing to see, and the entry waits.
entry = {type = VESPER_TEXT, layer = 4, text = "Hi", font = "nosuch", colour = ink, x = 5, y = 5, fw = 40}
renderQueue = [entry, {type = VESPER_TEXT_SLIDE_LEFT, layer = 4, text = "", text2 = "", font = "nosuch", x = 5, y = 5}]
Vesper["renderStack"]()
print(entry["type"] == VESPER_TEXT, entry["x"], entry["w"], entry["surface"], renderQueue[2]["type"] == VESPER_TEXT)      @@ expect: true\t25.000000\t0\tnot\ttrue

@@ One character a frame, a tick for each, and from the last one on it stands.
ticks = 0
function Audio["play"](track, loop, offset)
    ticks += 1
    ticked = track
end
click = "tick"
MIXER_SKIP_SLIDE = false
for i, kind in ipairs([VESPER_TEXT_SLIDE_RIGHT, VESPER_TEXT_SLIDE_LEFT])
    ticks = 0
    entry = {type = kind, layer = 4, identifier = "line", text = "aéo", font = serif, colour = ink, x = 100, y = 20}
    renderQueue = [entry]
    widths = []
    for frame = 1, 3
        wipe()
        Vesper["renderStack"]()
        push(widths, entry["w"])
    end
    sliding = Vesper["inked"]()
    print(widths[1] < widths[2] and widths[2] < widths[3], ticks, ticked, entry["type"] == VESPER_TEXT, VESPER_SLIDE_PROGRESS["1:line:100:20"])
    print(entry["x"] == 100 - (i - 1) * widths[3], entry["y"])
    wipe()
    Vesper["renderStack"]()
    print(entry["type"] == VESPER_IMAGE, entry["y"], Vesper["inked"]() == sliding, ticks)
end
@@ expect: true\t3\ttick\ttrue\tnot
@@ expect: true\t20
@@ expect: true\t17\ttrue\t3
@@ expect: true\t3\ttick\ttrue\tnot
@@ expect: true\t20
@@ expect: true\t17\ttrue\t3

@@ Another text in its place ticks from its first character on.
ticks = 0
entry = {type = VESPER_TEXT_SLIDE_RIGHT, layer = 4, identifier = "line", text = "abc", font = serif, colour = ink, x = 100, y = 20}
renderQueue = [entry]
Vesper["renderStack"]()
entry["text"] = "def"
Vesper["renderStack"]()
Vesper["renderStack"]()
print(ticks, entry["text2"])                                            @@ expect: 3\tde

@@ A game may show the rest at once: that is silent. So is everything while slides are to be.
ticks = 0
entry = {type = VESPER_TEXT_SLIDE_RIGHT, layer = 4, identifier = "line", text = "aéo", font = serif, colour = ink, x = 100, y = 20}
renderQueue = [entry]
VESPER_SLIDE_TEXT["1:line:100:20"] = "aéo"
VESPER_SLIDE_PROGRESS["1:line:100:20"] = 3
Vesper["renderStack"]()
print(ticks, entry["type"] == VESPER_TEXT)                              @@ expect: 0\ttrue
MIXER_SKIP_SLIDE = true
entry["type"] = VESPER_TEXT_SLIDE_RIGHT
Vesper["renderStack"]()
print(ticks, entry["text2"])                                            @@ expect: 0\ta
Font["killFont"](serif[1])
