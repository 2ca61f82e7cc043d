@@ What a night is made of, and how far it has come.

SIGNS = ["oar", "hive", "shuttle", "bell", "wheel"]
LAMPS = ["gold", "rose", "green", "violet", "blue"]
LAMP_HOMES = {gold = "oar", rose = "bell", green = "hive", violet = "wheel", blue = "shuttle"}
INKS = {gold = [255, 190, 96], rose = [255, 128, 116], green = [140, 240, 150], violet = [196, 140, 255], blue = [112, 170, 255]}
night = {}

function inkOf(lamp)
    return INKS[lamp]
end

function newNight(seed)
    finishLearning()
    night = {seed = seed, families = {}, years = {}, picks = {}, home = [], rung = false, told = {}}
    math["randomseed"](seed)
    local names = drawFamilies()
    for i, sign in ipairs(SIGNS)
        night["families"][sign] = names[i]
        night["years"][sign] = random(1480, 1790)
    end
    for i, lamp in ipairs(LAMPS)
        night["picks"][lamp] = random(0, 2)
    end
    night["stones"] = drawStones(7)
    prepareNight()
end

@@ Places as a night begins, or as a save left it.
function prepareNight()
    makeVaults(night["seed"])
    newCharts()
    darkenHomes()
    hatchCreatures(night["seed"])
end

function litCount()
    return #night["home"]
end

@@ How near the morning is.
function dawnNow()
    return litCount() * 0.07
end
