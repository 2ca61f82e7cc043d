@@ The title, the card of an ending, and the credits: screens without the story's box.

novelAge = 0

function novelShowTitle()
    novelStopHurry()
    novelDissolve(14, false)
    novelDropBox()
    novelAt = not
    novelScene = {place = novelGame["place"] or "", cast = ["", "", "", ""], music = novelScene["music"]}
    if novelPlaces[novelScene["place"]] != not
        novelScene["music"] = novelGame["music"] or novelPlaces[novelScene["place"]]["music"] or novelScene["music"]
    end
    novelSetStage(not)
    novelCamera = NOVEL_CAMERA_DOWN
    novelAge = 0
    novelShowAlone("title")
end

function novelPutLines(lines, x, y, align)
    for i, line in ipairs(lines)
        local w, h = novelPutText(novelTranslated("card " + line["text"], line["text"]), line["font"] or "words", line["ink"] or "paper", x, line["y"] or y, align)
        y += math["floor"](h * 0.86)
    end
    return y
end

@@ "Continue" is there when there is something to go on with, and comes first then.
function novelOpeners["title"]()
    local y = novelPutLines(novelGame["title"], 64, 30, "left")
    local list = []
    if novelNewest() != not
        push(list, {say = novelSay("Continue"), act = novelContinue})
    end
    push(list, {say = novelSay("New game"), act = novelBegin})
    push(list, {say = novelSay("Load"), act = novelLayLoading})
    push(list, {say = novelSay("Settings"), act = novelLayOptions})
    if novelGame["credits"] != not
        push(list, {say = novelSay("Credits"), act = novelOpenCredits})
    end
    push(list, {say = novelSay("Quit"), act = novelQuit})
    local step = math["min"](50, (532 - y) \ #list)
    novelAddColumn(list, 64, 528 - #list * step, novelWidthFor([novelSay("Continue"), novelSay("Settings")], 260), step)
    if novelAge == 0
        novelGuardItems(NOVEL_GUARD)
    end
    novelFocusOn(1)
end

@@ The camera breathes with the place.
function novelSteppers["title"]()
    novelStepWeather()
    novelAge += 1
    if not settings["lessMotion"] and novelPlaces[novelPlace] != not and novelPlaces[novelPlace]["factors"] != not
        local camera = NOVEL_CAMERA_DOWN + math["floor"](30 - 30 * math["cos"](novelAge * 0.018))
        if camera != novelCamera
            novelCamera = camera
            novelForgetStill()
        end
    end
    if novelPressed["menu"]
        novelAskToQuit()
    else
        novelStepItems()
    end
end

function novelContinue(item)
    local slot = novelNewest()
    if slot == not or not novelOpen(slot)
        novelShowAgain()
    end
end

@@ The card at the end of a telling.
function novelOpenEnding(name)
    novelDissolve(24, false)
    novelEnding = name
    local place = novelEndings[name]["place"] or novelPlace
    novelScene = {place = place, cast = ["", "", "", ""], music = novelScene["music"]}
    novelSetStage(not)
    novelCamera = NOVEL_CAMERA_DOWN
    novelAge = 0
    novelDropBox()
    novelShowAlone("ending")
end

function novelOpeners["ending"]()
    local ending = novelEndings[novelEnding]
    novelPutVeil()
    novelPutText(novelTranslated("ending " + novelEnding, ending["title"]), "head", "gold", VESPER_SCREEN_X \ 2, 170, "middle")
    local line = novelWrap(novelTranslated("ending " + novelEnding + " line", ending["line"] or ""), "tell", 800)
    novelPutText(line, "tell", "paper", VESPER_SCREEN_X \ 2, 236, "middle")
    novelPutText(novelSay("Enter, or a click"), "small", "dim", VESPER_SCREEN_X \ 2, 470, "middle")
end

function novelPutVeil()
    novelPut(Plush["createImage"](VESPER_SCREEN_X, VESPER_SCREEN_Y, 4, 6, 14, 130), 0, 0)
end

function novelSteppers["ending"]()
    novelStepWeather()
    novelAge += 1
    if novelAge > 20 and (novelPressed["go"] or novelPressed["click"] or novelPressed["menu"])
        if novelGame["credits"] != not
            novelOpenCredits()
        else
            novelShowTitle()
        end
    end
end

function novelOpenCredits(item)
    novelDissolve(20, false)
    novelScene = {place = novelGame["creditsPlace"] or novelPlace, cast = ["", "", "", ""], music = novelScene["music"]}
    novelSetStage(not)
    novelRestCamera()
    novelAt = not
    novelAge = 0
    novelShowAlone("credits")
end

function novelOpeners["credits"]()
    novelPutVeil()
    novelPutLines(novelGame["credits"], VESPER_SCREEN_X \ 2, 60, "middle")
    novelPutText(novelSay("Enter, or a click"), "small", "dim", VESPER_SCREEN_X \ 2, 470, "middle")
end

function novelSteppers["credits"]()
    novelStepWeather()
    novelAge += 1
    if novelAge > 15 and (novelPressed["go"] or novelPressed["click"] or novelPressed["menu"])
        novelShowTitle()
    end
end
