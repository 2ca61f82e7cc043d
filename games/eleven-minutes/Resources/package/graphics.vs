@@ Fonts, colours and the stand-in for missing pictures.

pictureFolder = append + "/pictures/"
uiFolder = append + "/ui/"
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

@@ A font and how far it sits above its line. Any font is better than none.
function openFont(name, size, rise)
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
    return [font, rise]
end

function closeFonts()
    for i, font in ipairs(fonts)
        Font["killFont"](font)
    end
end

wordFont = openFont("GentiumBookPlus-Regular.ttf", 22, 0)
tellFont = openFont("GentiumBookPlus-Italic.ttf", 22, 0)
nameFont = openFont("Cardo104s.ttf", 23, 0)
itemFont = openFont("Cardo104s.ttf", 24, 0)
smallFont = openFont("GentiumBookPlus-Regular.ttf", 17, 0)
headFont = openFont("Cardo104s.ttf", 38, 0)
titleFont = openFont("Cardo104s.ttf", 62, 0)
runeFont = openFont("FreeMono.ttf", 46, 0)
mediumtestf = wordFont

paper = [240, 234, 220, 255]
dimPaper = [176, 176, 184, 255]
lampGold = [255, 206, 130, 255]
night = [10, 14, 28, 255]

if not isThere(nobmp)
    tellMissing("The stand-in picture is missing.")
    nobmp = volatileFolder + "no.png"
    standIn = Plush["createImage"](64, 64, 58, 62, 84, 255)
    Plush["saveImage"](nobmp, standIn)
    Plush["killImage"](standIn)
end

@@ A picture's path, or its stand-in's, in which case the player is told.
function picturePath(folder, name)
    if isThere(folder + name)
        return folder + name
    end
    tellMissing("The picture " + name + " is missing.")
    return nobmp
end
