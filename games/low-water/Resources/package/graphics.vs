@@ Fonts and colours.

volatileFolder = Vesper["getPath"]() + "../Resources/volatile/"

@@ What is missing is told on the screen once the game runs.
missing = []
fonts = []

function tellMissing(text)
    if not contains(missing, text)
        push(missing, text)
    end
end

function isThere(path)
    local file = io["open"](path, "r")
    if file
        file["close"](file)
        return true
    end
    return false
end

@@ Any font is better than none.
function openFont(name, size)
    local font = Font["loadFont"](append + "/fonts/" + name, size)
    if font == not
        tellMissing("The font " + name + " is missing.")
        for i, other in ipairs(["GentiumBookPlus-Regular.ttf", "Cardo104s.ttf", "GentiumBookPlus-Italic.ttf"])
            if font == not
                font = Font["loadFont"](append + "/fonts/" + other, size)
            end
        end
    end
    push(fonts, font)
    return [font, 0]
end

function closeFonts()
    for i, font in ipairs(fonts)
        Font["killFont"](font)
    end
end

wordFont = openFont("GentiumBookPlus-Regular.ttf", 22)
tellFont = openFont("GentiumBookPlus-Italic.ttf", 22)
itemFont = openFont("Cardo104s.ttf", 26)
smallFont = openFont("GentiumBookPlus-Regular.ttf", 17)
headFont = openFont("Cardo104s.ttf", 40)
titleFont = openFont("Cardo104s.ttf", 84)
mediumtestf = wordFont

paper = [238, 232, 214, 255]
dimPaper = [168, 178, 182, 255]
lampGold = [255, 206, 130, 255]
