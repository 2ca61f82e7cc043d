@@ Shows a picture in a window and prints what its user does, a line for each change, until it is asked to close.
@@ A corner of the picture is white, so that a screenshot tells where up is.
Metal["spawnWindow"]("Window check", 320, 240)
picture = Plush["createImage"](320, 240, 200, 40, 40, 255)
for x = 0, 39
    for y = 0, 29
        Plush["setPixel"](picture, x, y, 255, 255, 255, 255)
    end
end
Metal["clearBuffer"](0, 0, 120)
Metal["renderImage"](picture)

function describe()
    local text = "keys"
    for i, key in ipairs(["A", "1", "0", "UP", "RETURN", "SPACE", "BACK", "DELETE", "ESCAPE", "TAB", "SHIFT", "CONTROL", "ALT", "F5", "F10", "PAGE_UP", "HOME", "INSERT"])
        if Vesper["getVar"]("VESPER_KEY_" + key)
            text = text + " " + key
        end
    end
    text = text + ", mouse " + VESPER_MOUSE_X + " " + VESPER_MOUSE_Y + ", buttons"
    for i, button in ipairs([VESPER_MOUSE_1, VESPER_MOUSE_2, VESPER_MOUSE_3])
        if button
            text = text + " " + i
        end
    end
    shown = Metal["getWindow"]()
    width, height = Plush["imageSize"](shown)
    Plush["killImage"](shown)
    return text + ", pressed " + pressed + ", wheel " + turned + ", window " + width + " " + height
end

turned = 0
pressed = 0
log = io["open"](arguments[1], "w")
last = ""
while not Metal["checkClose"]()
    Metal["forceUpdate"]()
    Metal["updateInput"]()
    turned = turned + VESPER_WHEEL
    pressed = pressed + len(Metal["presses"]())
    now = describe()
    if now != last
        log["write"](now, "\n")
        last = now
    end
    Vesper["sleep"](10)
end
log["write"]("closed\n")
log["close"]()
