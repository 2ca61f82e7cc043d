@@ For authors: the story told anew while it is read, and begun anywhere. The tool calls what is here.

novelTelling = false

@@ What would bring the reader back; nothing outside the story.
function novelBookmark()
    if novelAt == not or not novelIsReading() or #novelPath == 0
        return not
    end
    return novelGameRecord()
end

@@ From here on scenes are given once more.
function novelTellBegin()
    novelUntold = {scenes = novelScenes, entries = novelEntries, marks = novelMarks, lines = novelLines, prints = novelPrints, people = novelPeople, places = novelPlaces, endings = novelEndings, game = novelGame, bookmark = novelBookmark()}
    novelScenes = []
    novelEntries = {}
    novelMarks = {}
    novelLines = {}
    novelPrints = {}
    novelTelling = true
end

@@ Until here. Where that failed the story is what it was before.
function novelTellEnd(whole)
    local old = novelUntold
    novelTelling = false
    novelUntold = not
    if not whole
        novelScenes = old["scenes"]
        novelEntries = old["entries"]
        novelMarks = old["marks"]
        novelLines = old["lines"]
        novelPrints = old["prints"]
        novelPeople = old["people"]
        novelPlaces = old["places"]
        novelEndings = old["endings"]
        novelGame = old["game"]
        return not
    end
    novelLookAgain()
    if old["bookmark"] != not
        novelResume(old["bookmark"])
        novelDropCurtain()
    elseif novelScreen == "title"
        novelShowTitle()
    end
end

@@ After a picture or the look has changed.
function novelLookAgain()
    novelOpenFonts()
    novelDropPanels()
    novelDropBar()
    if novelPlace != "" and #novelStack == 0
        local camera = novelCamera
        novelLeavePlace()
        novelSetStage(novelSpeaker)
        novelCamera = camera
        novelForgetStill()
    end
    novelDirty = true
end

@@ Begins at a mark or a scene, with nothing remembered. False where there is none of that name.
function novelStartAt(name)
    if novelTarget(name) == not
        return false
    end
    novelVars = {}
    novelPath = []
    novelScene = {place = "", cast = ["", "", "", ""], music = ""}
    novelStopHurry()
    novelBox = not
    if not novelGoTo(novelTarget(name))
        return false
    end
    novelPresent(2)
    return true
end
