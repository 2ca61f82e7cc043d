@@ Pictures of the scene by name; a picture with a -wet twin mirrors as much as that one says.

TEXTURES = ["cobbles1", "cobbles2", "mud1", "mud2", "grass", "bed", "bank", "planks", "water", "lake", "still", "black-water", "flags", "lime", "timber", "church", "tower", "nave", "brick", "moss-brick1", "moss-brick2", "arch", "slate", "gable", "vault-roof", "beams", "pane-dark", "pane-gold", "pane-rose", "pane-green", "pane-blue", "pane-violet", "lamp-gold", "lamp-rose", "lamp-green", "lamp-blue", "lamp-violet", "door-red", "door-green", "door-blue", "door-ochre", "door-plum", "gate", "hatch", "glass", "tree1", "tree2", "tree3", "reeds", "grave", "sign-wheel", "sign-bell", "sign-hive", "sign-oar", "sign-shuttle", "heron", "heron-flies", "eel", "moth", "wheel", "lectern", "rope", "rail", "worms"]
WET = ["cobbles1", "cobbles2", "mud1", "mud2", "water", "lake", "still", "black-water", "flags"]

textures = [not]
textureNumbers = {}

function loadTexture(name)
    local path = append + "/textures/" + name + ".png"
    if isThere(path)
        local image = Plush["loadPNG"](path)
        return image
    end
    tellMissing("The picture " + name + " is missing.")
    return Plush["createImage"](8, 8, 90, 96, 100, 255)
end

function loadTextures()
    for i, name in ipairs(TEXTURES)
        push(textures, loadTexture(name))
        textureNumbers[name] = i
    end
    for i, name in ipairs(WET)
        local wet = loadTexture(name + "-wet")
        Plush["insertReflection"](textures[textureNumbers[name] + 1], wet)
        Plush["killImage"](wet)
    end
end

@@ The number by which the scene knows it.
function texture(name)
    return textureNumbers[name]
end

loadTextures()
